#pragma once

#include <optional>
#include <string>
#include <string_view>

/// How a reply travels in the framework's return string: its kind, then its value.
namespace virtualtv::framework {

struct Reply {
  enum class Kind { integer, ascii, unicode };
  Kind kind{};
  int number = 0;
  std::string text;      ///< of an ascii reply, any bytes
  std::u16string units;  ///< of a unicode reply, any units

  bool operator==(const Reply&) const = default;
};

std::string encode(const Reply& reply);

/// Nothing when `encoded` holds no reply (a return string that nobody wrote).
std::optional<Reply> decode(std::string_view encoded);

/// A reply as a transcript shows it, in one or more lines with a line break after each but the last:
/// `int 1`, `ascii TEXT`, `ascii |` with the lines behind it, `unicode "TEXT"`.
std::string show(const Reply& reply);

}  // namespace virtualtv::framework
