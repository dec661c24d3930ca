#pragma once

#include <cstddef>
#include <string_view>

namespace virtualtv::import {

/// Walks through the lines of a list. A line ends with a line feed; carriage returns, blanks and tabs before it do not
/// belong to the line. A byte order mark in front of the first line is left out.
class Lines {
 public:
  /// @param content  must outlive the lines, which are views of it.
  explicit Lines(std::string_view content);

  /// Goes to the next line; false when there is none.
  bool next();

  std::string_view line() const;
  int number() const;          ///< counted from 1
  std::size_t offset() const;  ///< bytes of the list in front of the line
  bool isComment() const;      ///< its first character that is no blank is a #

 private:
  const char* start_;
  std::string_view rest_;
  std::string_view line_;
  int number_ = 0;
};

}  // namespace virtualtv::import
