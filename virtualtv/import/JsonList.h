// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// Finds a JSON document whose first member is `services`. @return the offset of its start, in bytes.
std::optional<std::size_t> findJson(std::string_view content);

/// Reads `{"services": [...]}` with all data of each service. See `Format`. Problems have paths instead of lines, as in
/// `services[3].numbers.major`.
void readJson(std::string_view content, ListBuilder& list, Problems& problems);

}  // namespace virtualtv::import
