#pragma once
#include_next <sys/stat.h>
/// Page: man stat(2). The times have other names there.
#define st_mtimespec st_mtim
#define st_ctimespec st_ctim
