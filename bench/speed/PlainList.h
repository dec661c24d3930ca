// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class IServiceNavigation;

namespace bench {

/// Does what "GetFullChannelList" does in the plain way: members by name, values copied. The same calls to the set, the
/// same log. @return the document. @throws std::runtime_error when the set has no list.
std::string plainChannelList(IServiceNavigation& navigation);

}  // namespace bench
