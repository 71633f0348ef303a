#pragma once
#include_next <fcntl.h>
/// Page: man fcntl(2).
#define F_FULLFSYNC 51
