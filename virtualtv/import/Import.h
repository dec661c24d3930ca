// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "services/Service.h"

namespace virtualtv::import {

/// A part of a list that was not read, or not exactly as written.
struct Problem {
  std::optional<int> line;  ///< counted from 1; nothing when the list has no lines
  std::string at;           ///< the place in words, as in "line 17"
  std::string reason;       ///< in words for a person, one line
  bool remark = false;      ///< true: nothing was lost, but something was interpreted differently from what the list
                            ///< says
};

/// The problem of a line of a list.
Problem unreadable(int line, std::string reason);
Problem remark(int line, std::string reason);

/// The problems of a list. Counts all of them and stores the first hundred.
class Problems {
 public:
  static constexpr std::size_t mostKept = 100;

  void add(Problem problem);

  const std::vector<Problem>& kept() const { return kept_; }
  std::size_t count() const { return count_; }
  /// The number of problems that are not remarks.
  std::size_t unread() const { return unread_; }

 private:
  std::vector<Problem> kept_;
  std::size_t count_ = 0;
  std::size_t unread_ = 0;
};

/// The result of reading a channel list. It has every service that could be read, even if there are problems.
struct Result {
  std::vector<Service> services;  ///< in the list's order; each has at least a service id, an antenna mode, a name
  Problems problems;
};

class ListBuilder;
struct Writing;

/// A format of channel lists.
struct Format {
  std::string_view name;   ///< value for `--format`
  std::string_view title;  ///< name for people
  char16_t colon;          ///< the character that replaces a colon in names
  /// The offset, in bytes, of the first line of a list that is typical of this format; nothing when there is none.
  std::optional<std::size_t> (*recognise)(std::string_view content);
  /// Reads a list, which may hold any bytes, into services and problems.
  void (*read)(std::string_view content, ListBuilder& list, Problems& problems);
  const Writing* writing = nullptr;  ///< how to write the format; null for a read-only format
};

/// All formats.
std::span<const Format> formats();

/// True for a format that can be written.
inline bool isWritten(const Format& format) {
  return format.writing != nullptr;
}

/// The format with this name; null when there is none.
const Format* formatNamed(std::string_view name);

/// Recognises the format of a list; null when it is unknown. The first line that is typical of a format decides.
const Format* recognise(std::string_view content);

/// Reads a list. `content` may hold any bytes. @param encoding  iconv's name of the encoding of names that do not
/// specify it; empty to judge it from all names. @throws std::invalid_argument when there is no such encoding, see
/// `requireEncoding`.
Result read(std::string_view content, const Format& format, const std::string& encoding = "");

}  // namespace virtualtv::import
