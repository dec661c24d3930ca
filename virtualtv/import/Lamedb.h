// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// Finds the first line of a lamedb. @return its offset, in bytes.
std::optional<std::size_t> findLamedb(std::string_view content);

/// Reads an Enigma2 lamedb of version 3, 4 or 5, with the bouquets that `joinedLists` appends to it. See `Format`.
void readLamedb(std::string_view content, ListBuilder& list, Problems& problems);

}  // namespace virtualtv::import
