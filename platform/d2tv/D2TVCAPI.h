#pragma once

extern "C" {

/// Switches the secondary TV stack to the ISP source. @return 1 on success.
int D2TVCAPI_setSourceISP(void);
}
