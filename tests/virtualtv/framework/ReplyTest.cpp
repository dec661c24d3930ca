// SPDX-License-Identifier: MIT
#include "framework/Reply.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "text/Units.h"

namespace virtualtv::framework {
namespace {

using Kind = Reply::Kind;

Reply integer(int number) {
  return {Kind::integer, number, {}, {}};
}
Reply ascii(std::string text) {
  return {Kind::ascii, 0, std::move(text), {}};
}
Reply unicode(std::u16string units) {
  return {Kind::unicode, 0, {}, std::move(units)};
}

/// Decodes the escapes in one line of a block.
std::string unescaped(std::string_view line) {
  std::string text;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line.substr(at, 2) == "\\x") {
      text += static_cast<char>(std::strtol(std::string(line.substr(at + 2, 2)).c_str(), nullptr, 16));
      at += 3;
    } else {
      text += line[at];
    }
  }
  return text;
}

/// Decodes an ascii reply from its form in a transcript, following the description of `show`.
std::string readAscii(std::string_view shown) {
  if (shown == "ascii") return "";
  if (!shown.starts_with("ascii |\n")) return std::string(shown.substr(6));
  shown.remove_prefix(8);
  std::string text;
  while (true) {
    const std::size_t end = shown.find('\n');
    std::string_view line = shown.substr(0, end);
    EXPECT_TRUE(line.starts_with('|'));
    line.remove_prefix(std::min<std::size_t>(line.size(), 2));
    const bool last = end == std::string_view::npos;
    const bool open = last && line.ends_with('\\');
    if (open) line.remove_suffix(1);
    text += unescaped(line);
    if (!open) text += '\n';
    if (last) return text;
    shown.remove_prefix(end + 1);
  }
}

TEST(Reply, KeepsItsKindAndValueInTheReturnString) {
  for (const Reply& reply : {integer(0), integer(-1), integer(2147483647), integer(-2147483647 - 1), ascii(""),
                             ascii("1"), ascii("i:1"), unicode(u""), unicode(u"1"), unicode(u"News 24")}) {
    EXPECT_EQ(decode(encode(reply)), reply) << show(reply);
  }
}

TEST(Reply, KeepsEveryByteOfAnAsciiReply) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(decode(encode(ascii(all))), ascii(all));
}

TEST(Reply, KeepsEveryUnitOfAUnicodeReply) {
  std::u16string all;
  for (unsigned unit = 0; unit < 0x10000; ++unit) all += static_cast<char16_t>(unit);
  EXPECT_EQ(decode(encode(unicode(all))), unicode(all));
}

TEST(Reply, IsNoneInAReturnStringThatNobodyEncoded) {
  for (const char* other : {"", "i", "i:", "i:x", "i:1x", "i:99999999999", "u:a", "x:1", "hello"}) {
    EXPECT_FALSE(decode(other)) << other;
  }
}

TEST(ReplyShown, NumbersAndPrintableLinesStandBehindTheirKind) {
  EXPECT_EQ(show(integer(-3)), "int -3");
  EXPECT_EQ(show(ascii("a\\b \"c\" ü")), "ascii a\\b \"c\" ü");
  EXPECT_EQ(show(ascii("")), "ascii");
  EXPECT_EQ(show(unicode(u"News 24")), "unicode \"News 24\"");
  EXPECT_EQ(show(unicode(u"")), "unicode \"\"");
}

TEST(ReplyShown, TextsOfSeveralLinesAreABlock) {
  EXPECT_EQ(show(ascii("{\n\n   \"a\" : 1\n}\n")), "ascii |\n| {\n|\n|    \"a\" : 1\n| }");
  EXPECT_EQ(show(ascii("a\nb")), "ascii |\n| a\n| b\\");
  EXPECT_EQ(show(ascii("\n")), "ascii |\n|");
}

TEST(ReplyShown, ATextThatWouldReadAsABlockOrLoseItsEndIsABlock) {
  EXPECT_EQ(show(ascii("|")), "ascii |\n| |\\");
  EXPECT_EQ(show(ascii("a ")), "ascii |\n| a \\");
}

TEST(ReplyShown, BytesThatCantBeShownAreEscapedAndBackslashesStayReadable) {
  EXPECT_EQ(show(ascii("a\x1b\xff")), "ascii |\n| a\\x1B\\xFF\\");
  EXPECT_EQ(show(ascii("\"\\u00e9\"\n")), "ascii |\n| \"\\u00e9\"");
  EXPECT_EQ(show(ascii("\\x41\n\\\n")), "ascii |\n| \\x5Cx41\n| \\x5C");
}

TEST(ReplyShown, EveryAsciiTextReadsBackAsItWas) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  for (const std::string& text :
       {std::string("x"), std::string("\\"), std::string("a\\\n"), std::string("a\\"), std::string("\\x5C"),
        std::string("\\\\x\n"), std::string("a\n\n"), std::string("\n\n"), std::string(" "), std::string(" a"),
        std::string("é\xc3"), all, all + "\n"}) {
    EXPECT_EQ(readAscii(show(ascii(text))), text) << show(ascii(text));
  }
}

TEST(ReplyShown, EveryUnitReadsBackAsItWas) {
  for (unsigned unit = 0; unit < 0x10000; ++unit) {
    const std::u16string units{u'a', static_cast<char16_t>(unit), u'"'};
    const std::string shown = show(unicode(units));
    std::string_view rest = std::string_view(shown).substr(8);
    ASSERT_EQ(text::parseQuoted(rest), units) << shown;
    ASSERT_EQ(shown.find('\n'), std::string::npos);
  }
}

TEST(ReplyInPlace, IsTheTextOfAnAsciiReply) {
  EXPECT_EQ(asciiIn(encode(ascii("a\n\xff"))), "a\n\xff");
  EXPECT_EQ(asciiIn(encode(ascii(""))), "");
  for (const std::string& other : {encode(integer(1)), encode(unicode(u"a")), std::string(), std::string("a")}) {
    EXPECT_EQ(asciiIn(other), std::nullopt);
  }
}

TEST(ReplyBare, IsTheValueAlone) {
  EXPECT_EQ(bare(integer(-3)), "-3");
  EXPECT_EQ(bare(ascii("a\\b\n\xff")), "a\\b\n\xff");
  EXPECT_EQ(bare(unicode(u"\u00e9 \"")), "é \"");
}

TEST(AnswerShown, SaysWhenTheEngineRefusedOrWroteNothing) {
  EXPECT_EQ(showAnswer(true, encode(integer(1))), "int 1");
  EXPECT_EQ(showAnswer(true, ""), "empty");
  EXPECT_EQ(showAnswer(false, ""), "refused");
  EXPECT_EQ(showAnswer(false, encode(integer(-1))), "refused int -1");
  EXPECT_EQ(showAnswer(false, encode(ascii("a\n"))), "refused ascii |\n| a");
  EXPECT_EQ(showAnswer(true, "bare\n"), "undecodable bare\\x0A");
}

}  // namespace
}  // namespace virtualtv::framework
