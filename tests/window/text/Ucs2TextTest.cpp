// SPDX-License-Identifier: MIT
// Conversion of the set's texts to the encodings of applications and of documents.
#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <vector>

#include "Window/Src/Ucs2Text.h"
#include "support/Converter.h"
#include "support/TvTest.h"

namespace {

using support::Lines;

constexpr char untouched = '\x55';
constexpr std::size_t margin = 64;  // behind the output's room; must stay untouched

using Buffer = std::array<char, 514 + margin>;

/// One of the two conversions.
struct Conversion {
  const char* name;
  const char* opening;
  std::size_t room;
  void (*run)(char* out, const char* in, std::size_t inBytes);
};

const Conversion toUtf16{"ucs2utf16", "UTF-16 from UCS-2BE", 512, kel::ucs2utf16};
const Conversion toUtf8{"ucs2utf8", "UTF-8 from UCS-2BE", 514, kel::ucs2utf8};

std::string bigEndian(std::u16string_view units) {
  std::string bytes;
  for (const char16_t unit : units) {
    bytes += static_cast<char>(unit >> 8U);
    bytes += static_cast<char>(unit & 0xFFU);
  }
  return bytes;
}

/// UTF-16 with its byte-order mark, as bytes in the order of this machine.
std::string utf16(std::u16string_view units) {
  std::u16string marked = u"\uFEFF";
  marked += units;
  return {reinterpret_cast<const char*>(marked.data()), marked.size() * sizeof(char16_t)};
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t at = 0; at < times; ++at) all += text;
  return all;
}

class TextTest : public support::TvTest {
 protected:
  /// Converts into a buffer of untouched bytes. @return the output. Fails the test when anything is written after the
  /// first untouched byte or beyond the room.
  std::string convert(const Conversion& conversion, const std::string& in) {
    Buffer buffer;
    buffer.fill(untouched);
    conversion.run(buffer.data(), in.data(), in.size());
    const auto end = std::find(buffer.begin(), buffer.end(), untouched);
    EXPECT_LE(static_cast<std::size_t>(end - buffer.begin()), conversion.room) << conversion.name;
    EXPECT_TRUE(std::all_of(end, buffer.end(), [](char byte) { return byte == untouched; })) << conversion.name;
    return {buffer.begin(), end};
  }
  std::string convert(const Conversion& conversion, std::u16string_view units) {
    return convert(conversion, bigEndian(units));
  }
};

std::string failed(int error) {
  return "3 iconv failed: " + std::to_string(error);
}

/// A text, and its output and error in either conversion.
struct Row {
  std::string in;
  std::u16string utf16;
  std::string utf8;
  int error16 = 0;
  int error8 = 0;
};

std::vector<Row> rows() {
  const auto whole = [](std::u16string_view units, const std::string& utf8) {
    return Row{bigEndian(units), std::u16string(units), utf8};
  };
  const auto cut = [](char16_t unit, std::size_t times, const std::string& utf8, int error8) {
    return Row{bigEndian(std::u16string(times, unit)), std::u16string(255, unit), utf8, E2BIG, error8};
  };
  const auto lone = [](char16_t surrogate) {
    return Row{bigEndian(std::u16string(u"ab") + surrogate + u"cd"), u"ab", "ab", EILSEQ, EILSEQ};
  };
  return {whole(u"News 24", "News 24"),
          whole(u"Новости 日本 é", "Новости 日本 é"),
          whole(u"\u0001", "\x01"),
          whole(u"\u007F", "\x7F"),
          whole(u"\u0080", "\xC2\x80"),
          whole(u"\u07FF", "\xDF\xBF"),
          whole(u"\u0800", "\xE0\xA0\x80"),
          whole(u"\uD7FF", "\xED\x9F\xBF"),
          whole(u"\uE000", "\xEE\x80\x80"),
          whole(u"\uFEFF", "\xEF\xBB\xBF"),
          whole(u"\uFFFD", "\xEF\xBF\xBD"),
          whole(std::u16string(255, u'a'), std::string(255, 'a')),
          cut(u'a', 514, std::string(514, 'a'), 0),
          cut(u'a', 515, std::string(514, 'a'), E2BIG),
          cut(u'a', 2000, std::string(514, 'a'), E2BIG),
          cut(u'é', 257, repeated("é", 257), 0),
          cut(u'é', 258, repeated("é", 257), E2BIG),
          cut(u'日', 256, repeated("日", 171), E2BIG),  // there is no room for all of the 172nd
          // Surrogates are not characters in UCS-2, neither alone nor in pairs.
          lone(0xD800),
          lone(0xDBFF),
          lone(0xDC00),
          lone(0xDFFF),
          {bigEndian(u"ab😀"), u"ab", "ab", EILSEQ, EILSEQ},
          // Half a unit at the end.
          {bigEndian(u"ab") + '\0', u"ab", "ab", EINVAL, EINVAL}};
}

Lines told(int error) {
  return error == 0 ? Lines{} : Lines{failed(error)};
}

TEST_F(TextTest, ATextComesToWhatFitsAndStandsBeforeItsFirstFault) {
  for (const Row& row : rows()) {
    SCOPED_TRACE(row.utf8);
    EXPECT_EQ(convert(toUtf8, row.in), row.utf8) << "without mark or terminator";
    EXPECT_EQ(logs(), told(row.error8));
    EXPECT_EQ(convert(toUtf16, row.in), utf16(row.utf16)) << "with a mark and without terminator";
    EXPECT_EQ(logs(), told(row.error16));
  }
}

TEST_F(TextTest, AnInputOfNoBytesLeavesTheOutputAsItWas) {
  for (const Conversion& conversion : {toUtf16, toUtf8}) EXPECT_EQ(convert(conversion, std::string()), "");
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(TextTest, AFailedConversionTellsTheErrorInItsNameAndKeepsTheOutput) {
  for (const Conversion& conversion : {toUtf16, toUtf8}) {
    SCOPED_TRACE(conversion.name);
    const std::string expected = convert(conversion, u"News");
    converter::Spy spy;
    spy.use.failConvert = EBADF;
    EXPECT_EQ(convert(conversion, u"Radio"), "");
    const std::vector<virtualtv::framework::LogLine> lines = messages();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].message.text(), "iconv failed: " + std::to_string(EBADF));
    EXPECT_EQ(lines[0].function.str(), conversion.name);
    spy.use.failConvert = 0;
    EXPECT_EQ(convert(conversion, u"News"), expected) << "and converts the next text";
  }
}

TEST_F(TextTest, AConverterThatDoesNotOpenLeavesTheOutputUntouchedAndIsOpenedByTheNextCall) {
  for (const Conversion& conversion : {toUtf16, toUtf8}) {
    SCOPED_TRACE(conversion.name);
    converter::Spy spy;
    converter::onNewThread([&] {
      spy.use.failOpen = EMFILE;
      EXPECT_EQ(convert(conversion, u"News"), "");
      EXPECT_EQ(logs(), Lines{"3 Iconv open failed"});
      EXPECT_EQ(spy.use.rooms, std::vector<std::size_t>{});
      spy.use.failOpen = 0;
      EXPECT_NE(convert(conversion, u"News"), "");
      EXPECT_EQ(logs(), Lines{});
    });
    EXPECT_EQ(spy.use.opened, Lines(2, conversion.opening));
    EXPECT_EQ(spy.use.closed, 1);
  }
}

TEST_F(TextTest, AThreadOpensAConverterOnceAndClosesItAtItsEnd) {
  for (const Conversion& conversion : {toUtf16, toUtf8}) {
    SCOPED_TRACE(conversion.name);
    const converter::Spy spy;
    converter::onNewThread([&] {
      convert(conversion, u"News");
      convert(conversion, u"Radio");
      EXPECT_EQ(spy.use.closed, 0);
    });
    EXPECT_EQ(spy.use.opened, Lines{conversion.opening});
    EXPECT_EQ(spy.use.rooms, std::vector<std::size_t>(2, conversion.room));
    EXPECT_EQ(spy.use.resets, 2);
    EXPECT_EQ(spy.use.closed, 1);
  }
}

TEST_F(TextTest, ATextIsConvertedAsIfThereHadBeenNoneBefore) {
  for (const Row& before : rows()) {
    SCOPED_TRACE(before.utf8);
    for (const std::u16string text : {u"Новости 24", u"日本"}) {
      convert(toUtf16, before.in);
      EXPECT_EQ(convert(toUtf16, text), utf16(text));
      convert(toUtf8, before.in);
      EXPECT_EQ(convert(toUtf8, text), text == u"日本" ? "日本" : "Новости 24");
    }
  }
}

}  // namespace
