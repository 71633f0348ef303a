#pragma once
#include_next <spawn.h>
/// Page: posix_spawnattr_setflags(3) of macOS. The values differ from this machine's; here only
/// the names count.
#ifndef POSIX_SPAWN_SETSID
#define POSIX_SPAWN_SETSID 0x0400
#endif
#ifndef POSIX_SPAWN_CLOEXEC_DEFAULT
#define POSIX_SPAWN_CLOEXEC_DEFAULT 0x4000
#endif
