// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// Finds the first line after a section head that sets a key typical of libdvbv5 channel files. @return the offset of
/// the line, in bytes.
std::optional<std::size_t> findDvbv5(std::string_view content);

/// Reads a libdvbv5 channel file. See `Format`.
void readDvbv5(std::string_view content, ListBuilder& list, Problems& problems);

}  // namespace virtualtv::import
