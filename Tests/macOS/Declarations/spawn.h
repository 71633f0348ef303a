#pragma once
#include_next <spawn.h>
/// Pages: man posix_spawnattr_setflags(3), posix_spawn_file_actions_addinherit_np(3). The values
/// differ from this machine's; here only the names count.
#ifndef POSIX_SPAWN_SETSID
#define POSIX_SPAWN_SETSID 0x0400
#endif
#ifndef POSIX_SPAWN_CLOEXEC_DEFAULT
#define POSIX_SPAWN_CLOEXEC_DEFAULT 0x4000
#endif
#ifdef __cplusplus
extern "C" {
#endif
int posix_spawn_file_actions_addinherit_np(posix_spawn_file_actions_t* actions, int descriptor);
#ifdef __cplusplus
}
#endif
