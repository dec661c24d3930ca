#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "services/Service.h"

namespace virtualtv::import {

enum class Format { vdr, dvbv5 };

/// A line that could not be read, and why, in words for a person.
struct Problem {
  int line = 0;  ///< counted from 1
  std::string reason;
};

/// What a channel list brings. A list with problems still brings every service that could be read.
struct Result {
  Format format{};
  std::vector<Service> services;  ///< in the list's order; each has at least a service id, an antenna mode, a name
  std::vector<Problem> problems;
};

/// Name of a format as `--format` takes it: "vdr", "dvbv5".
std::string_view name(Format format);
std::optional<Format> formatNamed(std::string_view name);

/// Tells the format of a list from its text; nothing when it is none that is known.
std::optional<Format> recognise(std::string_view content);

/// Reads a list. Never throws but for lack of memory; `content` may be any bytes.
Result read(std::string_view content, Format format);

}  // namespace virtualtv::import
