// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace virtualtv::import {

/// Iterates over the lines of a list. A line ends with a line feed. Carriage returns, blanks and tabs before it are not
/// part of the line. A byte order mark before the first line is skipped.
class LineReader {
 public:
  /// @param content  outlives the lines, which are views of it.
  explicit LineReader(std::string_view content);

  /// Moves to the next line; false when there is none.
  bool next();

  std::string_view line() const;
  int number() const;          ///< counted from 1
  std::size_t offset() const;  ///< offset of the line in the list, in bytes
  bool isComment() const;      ///< the first non-blank character is a #

 private:
  const char* start_;
  std::string_view rest_;
  std::string_view line_;
  int number_ = 0;
};

}  // namespace virtualtv::import
