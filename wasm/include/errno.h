// SPDX-License-Identifier: MIT
/* The C library's own header, with Linux's numbers for the errors of text conversions, since the plug-in logs them. */
#pragma once

#include_next <errno.h>

#undef E2BIG
#undef EILSEQ
#undef EINVAL
#define E2BIG 7
#define EILSEQ 84
#define EINVAL 22
