// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <iconv.h>

#include "import/Charset.h"

#include "virtualtv/import/Lists.h"

namespace {
bool hasConverters = true;
}

// The linker's `--wrap` directs calls of `iconv_open` to `__wrap_iconv_open`; `__real_iconv_open` is the C library's
// function.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {
iconv_t __real_iconv_open(const char* to, const char* from);
iconv_t __wrap_iconv_open(const char* to, const char* from);

iconv_t __wrap_iconv_open(const char* to, const char* from) {
  if (hasConverters) return __real_iconv_open(to, from);
  return reinterpret_cast<iconv_t>(-1);  // NOLINT(performance-no-int-to-ptr)
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace import_tests {
namespace {

/// Decodes a name of these bytes. A VDR list and a libdvbv5 list must give the same result.
std::u16string decoded(const std::string& bytes) {
  VdrLine line;
  line.name = bytes;
  std::u16string text = name(vdr(line));
  EXPECT_EQ(name(dvbv5(section(bytes))), text);
  return text;
}

TEST(Name, IsUtf8WhereItIsValid) {
  EXPECT_EQ(decoded("Österreich"), u"Österreich");
  EXPECT_EQ(decoded("Первый канал"), u"Первый канал");
  EXPECT_EQ(decoded("中央电视台"), u"中央电视台");
  EXPECT_EQ(decoded("€uro"), u"€uro");
}

TEST(Name, HasSurrogatePairsForCharactersBeyondTheBasicPlane) {
  EXPECT_EQ(decoded("TV \U0001F4FA"), (std::u16string{u'T', u'V', u' ', 0xD83D, 0xDCFA}));
  EXPECT_EQ(decoded("\xF4\x8F\xBF\xBD"), (std::u16string{0xDBFF, 0xDFFD}));
}

TEST(Name, IsIso8859WhereItIsNoUtf8) {
  EXPECT_EQ(decoded("\xD6sterreich"), u"Österreich");
  EXPECT_EQ(decoded("\xDC"
                    "ber M\xFCnchen"),
            u"Über München");
  EXPECT_EQ(decoded("\xC9"
                    "cole fran\xE7"
                    "aise"),
            u"École française");
  EXPECT_EQ(decoded("\xCBL \xD6L"), u"ËL ÖL");  // only part of it is valid ISO 6937
  EXPECT_EQ(decoded("Caf\xE9 \xA4"), u"Café €");
  EXPECT_EQ(decoded("\xC0\x80"), u"À");  // not an overlong encoding of NUL
}

TEST(Name, IsIso6937WhereItsAccentsMakeSense) {
  EXPECT_EQ(decoded("\xC8Osterreich"), u"Österreich");
  EXPECT_EQ(decoded("T\xC2"
                    "el\xC2"
                    "e"),
            u"Télé");
  EXPECT_EQ(decoded("\xCFSport \xCF"
                    "c"),
            u"Šport č");
  EXPECT_EQ(decoded("\xC8"
                    "Ahnlich f\xFB"),
            u"Ähnlich fß");
  EXPECT_EQ(decoded("Kan\xC1"
                    "al \xA4"),
            u"Kanàl €");
}

TEST(Name, IsOfTheTableThatItsFirstByteTells) {
  EXPECT_EQ(decoded("\x01\xBF\xD5\xE0\xD2\xEB\xD9"), u"Первый");  // 8859-5
  EXPECT_EQ(decoded("\x02\xC7\xE4"), u"\u0627\u0644");            // 8859-6
  EXPECT_EQ(decoded("\x03\xC5\xD1\xD4"), u"ΕΡΤ");                 // 8859-7
  EXPECT_EQ(decoded("\x04\xE0\xE1"), u"\u05D0\u05D1");            // 8859-8
  EXPECT_EQ(decoded("\x05T\xDCRK\xDD\xFE"), u"TÜRKİş");           // 8859-9
  EXPECT_EQ(decoded("\x06\xBD"), u"―");                           // 8859-10
  EXPECT_EQ(decoded("\x07\xA1"), u"\u0E01");                      // 8859-11
  EXPECT_EQ(decoded("\x09\xD0"), u"Š");                           // 8859-13
  EXPECT_EQ(decoded("\x0B\xA4"), u"€");                           // 8859-15
}

TEST(Name, IsOfTheTableThatThreeBytesTell) {
  EXPECT_EQ(decoded(std::string("\x10\x00\x01\xE9", 4)), u"é");
  EXPECT_EQ(decoded(std::string("\x10\x00\x02\xB9l\xB1sk", 8)), u"šląsk");
  EXPECT_EQ(decoded(std::string("\x10\x00\x05\xBF", 4)), u"П");
  EXPECT_EQ(decoded(std::string("\x10\x00\x0F\xA4", 4)), u"€");
  EXPECT_EQ(decoded(std::string("\x10\x00\x10\xAA", 4)), u"Ș");
}

TEST(Name, IsOfPairsOfBytesBehindTheirMark) {
  EXPECT_EQ(decoded(std::string("\x11\x04\x1F\x04\x35", 5)), u"Пе");
  EXPECT_EQ(decoded(std::string("\x14\x4E\x2D", 3)), u"中");
  EXPECT_EQ(decoded(std::string("\x11\xD8\x3D\xDC\xFA", 5)), u"\U0001F4FA");
}

TEST(Name, IsOfAnEastAsianTableBehindItsMark) {
  EXPECT_EQ(decoded("\x12\xC7\xD1\xB1\xB9"), u"한국");
  EXPECT_EQ(decoded("\x13\xD6\xD0\xD1\xEB"), u"中央");
}

TEST(Name, IsUtf8BehindItsMark) {
  EXPECT_EQ(decoded("\x15Österreich"), u"Österreich");
}

TEST(Name, HasAReplacementForWhatCannotBeRead) {
  EXPECT_EQ(decoded("\x15"
                    "A\xFF"
                    "B"),
            u"A\uFFFDB");
  EXPECT_EQ(decoded("\x03"
                    "A\xAE"
                    "B\xFF"),
            u"A\uFFFDB\uFFFD");
  EXPECT_EQ(decoded(std::string("\x11\x04\x1F\xD8\x3D", 5)), u"П\uFFFD");  // half a pair
  EXPECT_EQ(decoded(std::string("\x11\x04\x1F\x04", 4)), u"П\uFFFD");      // half a unit
  EXPECT_EQ(decoded(std::string("\x11\xDC\x3D\x04\x1F", 5)), u"\uFFFDП");
}

TEST(Name, IsReadAsItStandsBehindAByteThatIsNoMark) {
  EXPECT_EQ(decoded("\x08"
                    "A"),
            u"A");
  EXPECT_EQ(decoded("\x1F"
                    "A"),
            u"A");
  EXPECT_EQ(decoded(std::string("\x10\x00\x0C\xE9", 4)), u"é");
  EXPECT_EQ(name(vdr({.name = "\x10"})), u"Service 12003");
}

TEST(Name, HasNoControlCharacters) {
  EXPECT_EQ(decoded("\x86"
                    "Das\x87 Erste"),
            u"Das Erste");                           // emphasis
  EXPECT_EQ(decoded("Radio\x8AOne"), u"Radio One");  // line break
  EXPECT_EQ(decoded("News\t24"), u"News 24");
  EXPECT_EQ(decoded("A\x7F"
                    "B\x1B[1m"),
            u"AB[1m");
  EXPECT_EQ(decoded(std::string("A\0B", 3)), u"AB");
  EXPECT_EQ(decoded("A\rB"), u"AB");
  EXPECT_EQ(decoded("\xEE\x82\x86"
                    "A\xEE\x82\x87"),
            u"A");  // emphasis in tables of two-byte characters
  EXPECT_EQ(decoded("\xC2\x9B"
                    "A"),
            u"A");
}

TEST(Name, KeepsItsAsciiWhereTheSystemHasNoConverters) {
  hasConverters = false;
  const std::u16string latin = name(vdr({.name = "Caf\xE9 1"}));
  const std::u16string greek = name(vdr({.name = "\x03 ERT \xC5"}));
  const std::u16string plain = name(vdr({.name = "News"}));
  hasConverters = true;
  EXPECT_EQ(latin, u"Caf\uFFFD 1");
  EXPECT_EQ(greek, u"ERT \uFFFD");
  EXPECT_EQ(plain, u"News");
}

/// The same for a list whose encoding is given.
std::u16string decodedFrom(const std::string& encoding, const std::string& bytes) {
  VdrLine line;
  line.name = bytes;
  std::u16string text = name(only(readVdr(line.text(), encoding)));
  EXPECT_EQ(name(only(readDvbv5(section(bytes), encoding))), text);
  return text;
}

std::string refusalOf(const std::string& encoding) {
  try {
    readVdr("", encoding);
  } catch (const std::invalid_argument& refusal) {
    return refusal.what();
  }
  return "";
}

TEST(NameInAGivenEncoding, IsReadInIt) {
  EXPECT_EQ(decodedFrom("ISO-8859-2", "\xA9l\xE1gr"), u"Šlágr");
  EXPECT_EQ(decodedFrom("cp1251", "\xCF\xE5\xF0\xE2\xFB\xE9"), u"Первый");
  EXPECT_EQ(decodedFrom("ISO_6937", "L\xC4NDER"), u"LÑDER");
  EXPECT_EQ(decodedFrom("CP932", "\x93\xFA\x96\x7B"), u"日本");
  EXPECT_EQ(decodedFrom("latin1", "Ö"), u"Ã") << "also where it would be valid UTF-8";
  EXPECT_EQ(decodedFrom("UTF-8", "A\xFF"), u"A\uFFFD");
  EXPECT_EQ(decodedFrom("ISO-2022-JP", "\x1B$BF|K\\\x1B(B"), u"日本") << "it is of ASCII bytes alone";
}

TEST(NameInAGivenEncoding, IsOfTheTableThatItsFirstByteTellsAllTheSame) {
  EXPECT_EQ(decodedFrom("ISO-8859-2", "\x01\xBF\xD5"), u"Пе");
  EXPECT_EQ(decodedFrom("ISO-8859-2", "\x15Ö"), u"Ö");
}

TEST(NameInAGivenEncoding, AppliesToGroups) {
  EXPECT_EQ(only(readVdr(":\xA9port\n" + VdrLine{}.text(), "ISO-8859-2")).group, "Šport");
}

TEST(NameInAGivenEncoding, IsRefusedWhereItIsNoneThatNamesCanBeIn) {
  EXPECT_EQ(refusalOf("latin-99"), "there is no encoding 'latin-99'; 'iconv -l' lists those that there are");
  EXPECT_EQ(refusalOf("x\ny"), "there is no encoding 'x\ny'; 'iconv -l' lists those that there are");
  for (const char* wide : {"UTF-16", "UCS-4LE", "EBCDIC-US", "UTF-7", "UTF-7-IMAP", "SHIFT_JIS", "ISO646-DE"}) {
    EXPECT_EQ(refusalOf(wide), std::string("a list can't be in the encoding '") + wide +
                                   "', in which not every ASCII character is the byte itself");
  }
  EXPECT_EQ(refusalOf("UTF-8"), "");
  EXPECT_THROW(virtualtv::import::requireEncoding(""), std::invalid_argument);
}

TEST(NameInAGivenEncoding, IsRefusedWhereTheEncodingHasNoNameOfTheList) {
  for (const std::string name : {"ASCII//TRANSLIT", "UTF-8//IGNORE", "//IGNORE", "//", "///", "UTF-8 ", " UTF-8",
                                 "UT F-8", "UTF-8!", "UTF-8//TRANSLIT//"}) {
    EXPECT_EQ(refusalOf(name), "there is no encoding '" + name + "'; 'iconv -l' lists those that there are");
  }
  for (const char* name : {"ISO-8859-1//", "ISO_8859-1:1987", "utf8"}) EXPECT_EQ(refusalOf(name), "");
}

TEST(Name, MayBeLong) {
  EXPECT_EQ(decoded(std::string(100'000, 'x')), std::u16string(100'000, u'x'));
  std::string umlauts;
  for (int at = 0; at < 100'000; ++at) umlauts += "\xFC";
  EXPECT_EQ(decoded(umlauts), std::u16string(100'000, u'ü'));
}

}  // namespace
}  // namespace import_tests
