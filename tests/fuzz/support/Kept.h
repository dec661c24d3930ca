// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "set/Tv.h"

namespace fuzz {

/// What a set persists, one line for each name: "service 3", "key db/a", "state main.source".
using Kept = std::map<std::string, std::string>;

/// What a set reports as persisted.
Kept keptBy(virtualtv::Tv& tv);

/// The content of a state directory's database, read by SQLite alone, without any code of the set. Null when SQLite
/// finds damage, or when the file is not the database of a set.
std::optional<Kept> plainlyKeptIn(const std::filesystem::path& folder);

}  // namespace fuzz
