#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// Finds the start of a JSON document whose first member is `services`. @return where it starts, in bytes.
std::optional<std::size_t> findJson(std::string_view content);

/// Reads `{"services": [...]}` with all that a set keeps of each service. See `Format`. Problems have no lines but
/// paths, as in `services[3].numbers.major`.
void readJson(std::string_view content, ServiceList& list, Problems& problems);

}  // namespace virtualtv::import
