/* Extras of the stand-in body library, for tests only: a real library has
 * none of these. */
#ifndef ZEB_STANDIN_H
#define ZEB_STANDIN_H

#include "zeb.h"

#ifdef __cplusplus
extern "C" {
#endif

/* How often ZEB_Terminate has been called since the library was loaded. */
ZEB_API int ZEB_StandinTerminateCount(void);

#ifdef __cplusplus
}
#endif

#endif
