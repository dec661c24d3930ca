// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "set/Tv.h"

namespace fuzz {

/// What a set keeps, a line each by its name: "service 3", "key db/a", "state main.source".
using Kept = std::map<std::string, std::string>;

/// What a set says that it keeps.
Kept keptBy(virtualtv::Tv& tv);

/// What the database of a state directory holds by SQLite alone, without any of the set's code. Nothing when SQLite
/// finds damage in it, or when it is no database of a set.
std::optional<Kept> plainlyKeptIn(const std::filesystem::path& folder);

}  // namespace fuzz
