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

/// The same for one kind of reply, in place of what `encoded` holds, whose memory is used again.
void encodeInteger(std::string& encoded, int number);
void encodeAscii(std::string& encoded, std::string_view text);
void encodeUnicode(std::string& encoded, std::u16string_view units);

/// Nothing when `encoded` holds no reply (a return string that nobody wrote).
std::optional<Reply> decode(std::string_view encoded);
/// The text of an ascii reply, where it stands; nothing for another one, or none.
std::optional<std::string_view> asciiIn(std::string_view encoded);

/// A reply as a transcript shows it, in one or more lines with a line break after each but the last:
/// `int 1`, `unicode "TEXT"`, and `ascii TEXT` where the text is one printable line. Other texts are shown as a block:
/// `ascii |`, then its lines with `| ` before each (`|` alone for an empty one), `\` at the end of the last one where
/// no line break follows it, and `\xNN` for bytes that can't be shown and for a backslash that would mean one of these.
std::string show(const Reply& reply);

/// The reply's value alone: digits, the text's bytes, the units as UTF-8.
std::string bare(const Reply& reply);

/// What an engine made of a command, as a transcript shows it: its reply, `refused` before it when it refused, `empty`
/// when it wrote none. @param encoded  the return string, empty when nobody wrote it.
std::string showAnswer(bool accepted, std::string_view encoded);

}  // namespace virtualtv::framework
