#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// Finds the first line, behind the head of a section, that sets one of the keys which tell a libdvbv5 channel file
/// from others. @return where it starts, in bytes.
std::optional<std::size_t> findDvbv5(std::string_view content);

/// Reads a libdvbv5 channel file. See `Format`.
void readDvbv5(std::string_view content, ServiceList& list, Problems& problems);

}  // namespace virtualtv::import
