// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace virtualtv::net {

/// Takes over the listening sockets that the parent process passed, as described in the environment. Removes that
/// description from the environment.
std::vector<int> takeInheritedSockets();

}  // namespace virtualtv::net
