// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "virtualtv/broadcast/Broadcast.h"

/// Reads services with a third-party library, for comparison. Only for tests with intact captures: the library reads
/// past the ends of damaged descriptors.
namespace broadcast_tests {

/// Describes a service on one line: ids, names, scrambling, number, and streams with their languages.
std::string decodedLine(const virtualtv::broadcast::FoundService& service);

/// The lines of all services that the library finds in packets of 188 bytes, in order.
std::vector<std::string> decoded(const Blob& bytes);

}  // namespace broadcast_tests
