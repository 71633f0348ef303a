#pragma once
#include_next <spawn.h>
/// Pages: man posix_spawnattr_setflags(3), posix_spawn_file_actions_addinherit_np(3).
#define POSIX_SPAWN_CLOEXEC_DEFAULT 0x4000
#ifdef __cplusplus
extern "C" {
#endif
int posix_spawn_file_actions_addinherit_np(posix_spawn_file_actions_t* actions, int descriptor);
#ifdef __cplusplus
}
#endif
