// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "text/Numbers.h"

namespace support {

/// A number as written, clamped to its range.
inline std::string within(const virtualtv::text::Range& range, const std::string& number) {
  if (virtualtv::text::numberIn(number, range)) return number;
  return number.front() == '-' ? std::to_string(range.least) : std::to_string(range.most);
}

}  // namespace support
