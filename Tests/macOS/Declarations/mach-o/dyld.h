#pragma once
#include <stdint.h>
/// Page: man dyld(3).
#ifdef __cplusplus
extern "C" {
#endif
/// 0 and the path, links and all; -1 and the size to make room for.
int _NSGetExecutablePath(char* _Nullable buffer, uint32_t* _Nonnull size);
#ifdef __cplusplus
}
#endif
