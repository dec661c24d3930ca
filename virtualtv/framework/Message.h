// SPDX-License-Identifier: MIT
#pragma once

#include <cstdarg>
#include <cstddef>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace virtualtv::framework {

/// A log message, stored as the format and arguments of a printf call. Its text is made on demand, since most messages
/// are never read.
///
/// Supports all printf conversions except positional arguments and wide characters. "%n" writes nothing.
class Message {
 public:
  Message() = default;
  /// Copies everything that the text needs. @param list  the arguments after `va_start`, one for each conversion; stays
  /// unchanged.
  Message(const char* format, va_list list);

  const std::string& format() const;
  /// Approximate memory use outside of the object, in bytes.
  std::size_t bytes() const;

  /// The text as printf writes it, of any length.
  std::string text() const;

  /// The same with `*` for values that differ from run to run. These are identified by the format: "%p", and the number
  /// after "LINE=[", "pid = ", "sigStrength is " or the error banner's second name.
  std::string masked() const;

 private:
  using Argument = std::variant<int, long, long long, std::size_t, double, long double, const void*, std::string>;

  struct Format;
  struct Content;

  static std::shared_ptr<const Format> formatAt(const char* written);
  std::string rendered(bool masks) const;
  static const std::shared_ptr<const Content>& empty();

  std::shared_ptr<const Content> content_ = empty();  ///< shared with copies
};

}  // namespace virtualtv::framework
