// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The encoding of a reply in the framework's return string: its kind, then its value.
namespace virtualtv::framework {

struct Reply {
  enum class Kind { integer, ascii, unicode };
  Kind kind{};
  int number = 0;
  std::string text;      ///< text of an ascii reply, any bytes
  std::u16string units;  ///< text of a unicode reply, any units

  bool operator==(const Reply&) const = default;
};

std::string encode(const Reply& reply);

/// The same for one kind of reply. Overwrites `encoded`, reusing its memory.
void encodeInteger(std::string& encoded, int number);
void encodeAscii(std::string& encoded, std::string_view text);
void encodeUnicode(std::string& encoded, std::u16string_view units);

/// Decodes a reply. Returns nothing when `encoded` holds none (the return string was not written).
std::optional<Reply> decode(std::string_view encoded);
/// A view of the text of an ascii reply; nothing for another kind, or for no reply.
std::optional<std::string_view> asciiIn(std::string_view encoded);

/// A reply as a transcript shows it, in one or more lines with line breaks between them: `int 1`, `unicode "TEXT"`, and
/// `ascii TEXT` where the text is one printable line. Other texts are shown as a block: `ascii |`, then its lines with
/// `| ` before each (`|` alone for an empty line). A `\` ends the last line when no line break follows it. `\xNN`
/// stands for bytes that can't be shown, and for a backslash that would be read as one of these escapes.
std::string show(const Reply& reply);

/// The reply's value alone: digits, the text's bytes, the units as UTF-8.
std::string bare(const Reply& reply);

/// The result of a command as a transcript shows it: the reply, with `refused` in front when the engine refused, or
/// `empty` without a reply. @param encoded  the return string; empty when it was not written.
std::string showAnswer(bool accepted, std::string_view encoded);

}  // namespace virtualtv::framework
