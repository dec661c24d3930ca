// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// Finds the first line that looks like a service in a zap file. Its fields may still be invalid. @return its offset,
/// in bytes.
std::optional<std::size_t> findZap(std::string_view content);

/// Reads a zap file for any antenna. See `Format`.
void readZap(std::string_view content, ListBuilder& list, Problems& problems);

}  // namespace virtualtv::import
