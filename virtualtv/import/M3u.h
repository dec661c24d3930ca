// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "import/Import.h"

namespace virtualtv::import {

/// Finds the first line typical of an M3U list: its head, or a line about a service. @return its offset, in bytes.
std::optional<std::size_t> findM3u(std::string_view content);

/// Reads an M3U list. See `Format`.
void readM3u(std::string_view content, ListBuilder& list, Problems& problems);

/// The line before the address of a service: `#EXTINF:LENGTH NAME="VALUE" ...,TITLE`. Views of the line.
struct ExtInf {
  std::string_view attributes;  ///< all of them
  std::string_view title;

  /// The value of an attribute, whose name is matched case-insensitively; empty if it is missing.
  std::string_view attribute(std::string_view name) const;
};

inline constexpr std::string_view extInf = "#EXTINF:";
inline constexpr std::string_view extGroup = "#EXTGRP:";

/// A view of `NAME="VALUE"` among attributes, with the name in any case; empty when it is missing.
std::string_view assignmentOf(std::string_view attributes, std::string_view name);

/// Splits a line that starts with `extInf`.
ExtInf readExtInf(std::string_view line);

}  // namespace virtualtv::import
