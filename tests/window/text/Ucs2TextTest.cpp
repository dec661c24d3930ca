// Conversion of the set's texts to what applications and documents want.
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
constexpr std::size_t margin = 64;  // behind the room, to be left alone

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

/// The bytes of UTF-16 with its byte-order mark, in the order of this machine.
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
  /// Converts into an untouched buffer. @return what was written at its start; fails the test when anything is
  /// written behind the first untouched byte or behind the room.
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

TEST_F(TextTest, Utf16StartsWithAByteOrderMarkAndHasNoTerminator) {
  EXPECT_EQ(convert(toUtf16, u"News 24"), utf16(u"News 24"));
  EXPECT_EQ(convert(toUtf16, u"Новости 日本 é"), utf16(u"Новости 日本 é"));
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(TextTest, Utf8HasNeitherMarkNorTerminator) {
  EXPECT_EQ(convert(toUtf8, u"News 24"), "News 24");
  EXPECT_EQ(convert(toUtf8, u"Новости 日本 é"), "Новости 日本 é");
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(TextTest, EveryUnitOutsideTheSurrogatesConverts) {
  const std::vector<std::pair<char16_t, std::string>> units{
      {0x0001, "\x01"},         {0x007F, "\x7F"},         {0x0080, "\xC2\x80"},
      {0x07FF, "\xDF\xBF"},     {0x0800, "\xE0\xA0\x80"}, {0xD7FF, "\xED\x9F\xBF"},
      {0xE000, "\xEE\x80\x80"}, {0xFEFF, "\xEF\xBB\xBF"}, {0xFFFD, "\xEF\xBF\xBD"}};
  for (const auto& [unit, utf8] : units) {
    SCOPED_TRACE(static_cast<int>(unit));
    EXPECT_EQ(convert(toUtf8, std::u16string(1, unit)), utf8);
    EXPECT_EQ(convert(toUtf16, std::u16string(1, unit)), utf16(std::u16string(1, unit)));
  }
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(TextTest, AnInputOfNoBytesLeavesTheOutputAsItWas) {
  for (const Conversion& conversion : {toUtf16, toUtf8}) {
    EXPECT_EQ(convert(conversion, std::string()), "") << conversion.name;
  }
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(TextTest, ATextThatJustFitsIsWhole) {
  const std::u16string units(255, u'a');
  EXPECT_EQ(convert(toUtf16, units), utf16(units));
  EXPECT_EQ(convert(toUtf8, std::u16string(514, u'a')), std::string(514, 'a'));
  EXPECT_EQ(convert(toUtf8, std::u16string(257, u'é')), repeated("é", 257));
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(TextTest, ATextLongerThanTheRoomIsCutWhereTheRoomEnds) {
  EXPECT_EQ(convert(toUtf16, std::u16string(256, u'a')), utf16(std::u16string(255, u'a')));
  EXPECT_EQ(convert(toUtf16, std::u16string(2000, u'a')), utf16(std::u16string(255, u'a')));
  EXPECT_EQ(convert(toUtf8, std::u16string(515, u'a')), std::string(514, 'a'));
  EXPECT_EQ(convert(toUtf8, std::u16string(258, u'é')), repeated("é", 257));
  EXPECT_EQ(logs(), Lines(4, failed(E2BIG)));
}

TEST_F(TextTest, ACharacterThatDoesNotFitWholeIsLeftOut) {
  EXPECT_EQ(convert(toUtf8, std::u16string(172, u'日')), repeated("日", 171));
  EXPECT_EQ(logs(), Lines{failed(E2BIG)});
}

TEST_F(TextTest, ASurrogateEndsTheTextWithWhatStandsBeforeIt) {
  for (const char16_t surrogate : {u'\xD800', u'\xDBFF', u'\xDC00', u'\xDFFF'}) {
    SCOPED_TRACE(static_cast<int>(surrogate));
    std::u16string units = u"ab";
    units += surrogate;
    units += u"cd";
    EXPECT_EQ(convert(toUtf16, units), utf16(u"ab"));
    EXPECT_EQ(convert(toUtf8, units), "ab");
    EXPECT_EQ(logs(), Lines(2, failed(EILSEQ)));
  }
}

TEST_F(TextTest, APairOfSurrogatesIsNoCharacterInUcs2) {
  EXPECT_EQ(convert(toUtf8, u"ab😀"), "ab");
  EXPECT_EQ(convert(toUtf16, u"ab😀"), utf16(u"ab"));
  EXPECT_EQ(logs(), Lines(2, failed(EILSEQ)));
}

TEST_F(TextTest, HalfAUnitAtTheEndIsAFailure) {
  EXPECT_EQ(convert(toUtf8, bigEndian(u"ab") + '\0'), "ab");
  EXPECT_EQ(logs(), Lines{failed(EINVAL)});
}

TEST_F(TextTest, AFailedConversionTellsTheErrorAndKeepsTheOutput) {
  for (const Conversion& conversion : {toUtf16, toUtf8}) {
    SCOPED_TRACE(conversion.name);
    converter::Watch watch;
    watch.use.failConvert = EBADF;
    EXPECT_EQ(convert(conversion, u"News"), "");
    EXPECT_EQ(logs(), Lines{failed(EBADF)});
  }
}

TEST_F(TextTest, AConverterThatDoesNotOpenLeavesTheOutputUntouchedAndIsOpenedByTheNextCall) {
  for (const Conversion& conversion : {toUtf16, toUtf8}) {
    SCOPED_TRACE(conversion.name);
    converter::Watch watch;
    converter::onNewThread([&] {
      watch.use.failOpen = EMFILE;
      EXPECT_EQ(convert(conversion, u"News"), "");
      EXPECT_EQ(logs(), Lines{"3 Iconv open failed"});
      EXPECT_EQ(watch.use.rooms, std::vector<std::size_t>{});
      watch.use.failOpen = 0;
      EXPECT_NE(convert(conversion, u"News"), "");
      EXPECT_EQ(logs(), Lines{});
    });
    EXPECT_EQ(watch.use.opened, Lines(2, conversion.opening));
    EXPECT_EQ(watch.use.closed, 1);
  }
}

TEST_F(TextTest, AThreadOpensAConverterOnceAndClosesItAtItsEnd) {
  for (const Conversion& conversion : {toUtf16, toUtf8}) {
    SCOPED_TRACE(conversion.name);
    const converter::Watch watch;
    converter::onNewThread([&] {
      convert(conversion, u"News");
      convert(conversion, u"Radio");
      EXPECT_EQ(watch.use.closed, 0);
    });
    EXPECT_EQ(watch.use.opened, Lines{conversion.opening});
    EXPECT_EQ(watch.use.rooms, std::vector<std::size_t>(2, conversion.room));
    EXPECT_EQ(watch.use.resets, 2);
    EXPECT_EQ(watch.use.closed, 1);
  }
}

TEST_F(TextTest, ATextIsConvertedAsIfThereHadBeenNoneBefore) {
  const std::vector<std::pair<std::string, int>> texts{{"", 0},
                                                       {bigEndian(u"News"), 0},
                                                       {bigEndian(u"ab\xD800zz"), EILSEQ},
                                                       {bigEndian(u"\xDC00"), EILSEQ},
                                                       {bigEndian(std::u16string(2000, u'日')), E2BIG},
                                                       {bigEndian(u"ab") + '\0', EINVAL},
                                                       {"\x4E", EINVAL}};
  for (const auto& [before, error] : texts) {
    SCOPED_TRACE(before);
    const Lines told = error == 0 ? Lines{} : Lines{failed(error)};
    for (const std::u16string text : {u"Новости 24", u"日本"}) {
      convert(toUtf16, before);
      EXPECT_EQ(logs(), told);
      EXPECT_EQ(convert(toUtf16, text), utf16(text));
      convert(toUtf8, before);
      EXPECT_EQ(logs(), told);
      EXPECT_EQ(convert(toUtf8, text), text == u"日本" ? "日本" : "Новости 24");
      EXPECT_EQ(logs(), Lines{});
    }
  }
}

TEST_F(TextTest, AConverterThatFailedConvertsTheNextText) {
  for (const Conversion& conversion : {toUtf16, toUtf8}) {
    SCOPED_TRACE(conversion.name);
    const std::string expected = convert(conversion, u"News");
    converter::Watch watch;
    watch.use.failConvert = EBADF;
    convert(conversion, u"Radio");
    watch.use.failConvert = 0;
    EXPECT_EQ(convert(conversion, u"News"), expected);
    EXPECT_EQ(logs(), Lines{failed(EBADF)});
  }
}

TEST_F(TextTest, AFailureIsToldInTheNameOfTheConversion) {
  virtualtv::framework::LogLine told;
  const auto listening = virtualtv::framework::listenToLog(3, [&](const auto& line) { told = line; });
  for (const Conversion& conversion : {toUtf16, toUtf8}) {
    convert(conversion, u"\xD800");
    EXPECT_EQ(told.function, conversion.name);
  }
}

}  // namespace
