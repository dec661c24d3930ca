// SPDX-License-Identifier: MIT
#pragma once

namespace virtualtv::shell {

/// A channel list of two services, with an invalid line between them.
inline constexpr const char* smallList =
    "One;Net:474000:B8C23D12G4M64T8Y0:T:27500:101:102=eng@4:0:0:1:1:1:0\n"
    "no channel\n"
    "Two;Net:474000:B8C23D12G4M64T8Y0:T:27500:201:202=deu@4:0:0:2:1:1:0\n";

}  // namespace virtualtv::shell
