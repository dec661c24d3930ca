#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "services/Service.h"

namespace virtualtv::import {

/// A piece of a list that was not read, or not as it stands.
struct Problem {
  std::optional<int> line;  ///< counted from 1; nothing where a list has no lines
  std::string at;           ///< the place in words, as in "line 17"
  std::string reason;       ///< in words for a person, one line
  bool remark = false;      ///< true: nothing was lost, but something was read differently from what it says
};

/// The problem of a line of a list.
Problem unreadable(int line, std::string reason);
Problem remark(int line, std::string reason);

/// The problems of a list. All are counted, the first hundred are kept.
class Problems {
 public:
  static constexpr std::size_t mostKept = 100;

  void add(Problem problem);

  const std::vector<Problem>& kept() const { return kept_; }
  std::size_t count() const { return count_; }
  /// How many of all are no remarks.
  std::size_t unread() const { return unread_; }

 private:
  std::vector<Problem> kept_;
  std::size_t count_ = 0;
  std::size_t unread_ = 0;
};

/// What a channel list brings. A list with problems still brings every service that could be read.
struct Result {
  std::vector<Service> services;  ///< in the list's order; each has at least a service id, an antenna mode, a name
  Problems problems;
};

class ServiceList;
struct Writing;

/// A format of channel lists.
struct Format {
  std::string_view name;   ///< as `--format` takes it
  std::string_view title;  ///< what a person calls it
  char16_t colon;          ///< what stands for a colon in names
  /// Where in a list the first line stands that only this format has, in bytes; nothing when it has none.
  std::optional<std::size_t> (*recognise)(std::string_view content);
  /// Reads a list, which may be any bytes, into services and problems.
  void (*read)(std::string_view content, ServiceList& list, Problems& problems);
  const Writing* writing = nullptr;  ///< how it is written; null where it is only read
};

/// All formats.
std::span<const Format> formats();

/// True for a format that lists can be written in.
inline bool isWritten(const Format& format) {
  return format.writing != nullptr;
}

/// Null when there is none of that name.
const Format* formatNamed(std::string_view name);

/// Tells the format of a list from its text; null when it is none that is known. The first line that decides counts.
const Format* recognise(std::string_view content);

/// Reads a list. `content` may be any bytes.
/// @param encoding  that of names that do not tell theirs, as iconv calls it; empty to judge it by all of them.
/// @throws std::invalid_argument when there is no such encoding, see `requireEncoding`.
Result read(std::string_view content, const Format& format, const std::string& encoding = "");

}  // namespace virtualtv::import
