#ifndef WORDITER_EXPORT_H
#define WORDITER_EXPORT_H

// The library is built with hidden visibility; only what carries this macro
// is part of its interface.
#if defined(_WIN32)
#if defined(WORDITER_BUILDING)
#define WORDITER_EXPORT __declspec(dllexport)
#else
#define WORDITER_EXPORT __declspec(dllimport)
#endif
#else
#define WORDITER_EXPORT __attribute__((visibility("default")))
#endif

#endif
