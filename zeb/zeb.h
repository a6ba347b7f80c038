/* The body library: how many bodies an HX DB file holds, and a description
 * of each. Every call names the file again; there is no open or close. */
#ifndef ZEB_H
#define ZEB_H

#if defined(_WIN32) && defined(ZEB_BUILDING)
#define ZEB_API __declspec(dllexport)
#elif defined(_WIN32)
#define ZEB_API __declspec(dllimport)
#else
#define ZEB_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The number of bodies in a database file; 0 for anything that is not one. */
ZEB_API int ZEB_BodyCount(const char* file);

/* Writes a NUL-terminated description of body index (1 to the count) into
 * info, a buffer of 1024 bytes. Out of range: an empty string. */
ZEB_API int ZEB_GetBodyInfo(const char* file, int index, char* info);

/* Releases whatever the library holds. */
ZEB_API void ZEB_Terminate(void);

#ifdef __cplusplus
}
#endif

#endif
