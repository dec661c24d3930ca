#pragma once

#include <cstdarg>
#include <cstddef>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace virtualtv::framework {

/// A message as a call of printf: its format and its arguments. Its text is made when somebody wants to read it; most
/// messages are never read.
///
/// All conversions of printf are understood but for positional arguments and wide characters; "%n" writes nothing.
class Message {
 public:
  Message() = default;
  /// Copies all that the text takes. @param list  as `va_start` left them, one for each conversion; used up afterwards.
  Message(const char* format, va_list list);

  const std::string& format() const;
  /// What it takes of memory beside itself, about, in bytes.
  std::size_t bytes() const;

  /// What printf writes, of any length.
  std::string text() const;

  /// The same with `*` for what differs from run to run, which is known by its place in the format: "%p", and the
  /// number behind "LINE=[", "pid = ", "sigStrength is " or the error banner's second name.
  std::string masked() const;

 private:
  using Argument = std::variant<int, long, long long, std::size_t, double, long double, const void*, std::string>;

  struct Format;
  struct Content;

  static std::shared_ptr<const Format> formatAt(const char* written);
  std::string rendered(bool masks) const;
  static const std::shared_ptr<const Content>& empty();

  std::shared_ptr<const Content> content_ = empty();  ///< that its copies share
};

}  // namespace virtualtv::framework
