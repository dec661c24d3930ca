// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class IServiceNavigation;

namespace bench {

/// Does what "GetFullChannelList" does in the obvious way: members by name, values copied. It makes the same calls to
/// the set and logs the same lines. @return the document. @throws std::runtime_error when the set has no list.
std::string plainChannelList(IServiceNavigation& navigation);

}  // namespace bench
