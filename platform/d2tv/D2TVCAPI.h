// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// The C interface of the secondary TV stack.

extern "C" {

/// Switches the secondary TV stack to the ISP source. @return 1 on success.
int D2TVCAPI_setSourceISP(void);
}
