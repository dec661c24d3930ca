#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// Finds the first line that an M3U list alone has: its head, or what it says of a service. @return where it starts.
std::optional<std::size_t> findM3u(std::string_view content);

/// Reads an M3U list. See `Format`.
void readM3u(std::string_view content, ServiceList& list, Problems& problems);

/// What stands before the address of a service: `#EXTINF:LENGTH NAME="VALUE" ...,TITLE`. Views of the line.
struct ExtInf {
  std::string_view attributes;  ///< all of them
  std::string_view title;

  /// The value of an attribute, its name in any case; empty where it is missing.
  std::string_view attribute(std::string_view name) const;
};

inline constexpr std::string_view extInf = "#EXTINF:";
inline constexpr std::string_view extGroup = "#EXTGRP:";

/// `NAME="VALUE"` as it stands among attributes, the name in any case; a view of nothing where it is missing.
std::string_view assignmentOf(std::string_view attributes, std::string_view name);

/// Takes a line apart that starts with `extInf`.
ExtInf readExtInf(std::string_view line);

}  // namespace virtualtv::import
