// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// What the secondary TV stack offers to C.

extern "C" {

/// Switches the secondary TV stack to the ISP source. @return 1 on success.
int D2TVCAPI_setSourceISP(void);
}
