#pragma once
/// Page: man environ(7). For libraries, which have no `environ`.
#ifdef __cplusplus
extern "C" {
#endif
char*** _NSGetEnviron(void);
#ifdef __cplusplus
}
#endif
