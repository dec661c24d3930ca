// SPDX-License-Identifier: MIT
// Compares the module's iconv with that of the C library here, for all encodings that the module has.
#include "iconv/Conversion.h"

#include <gtest/gtest.h>
#include <iconv.h>

#include <cerrno>
#include <cstddef>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "iconv/Tables.h"

namespace wasm {
namespace {

/// The result of a call.
struct Outcome {
  int error = 0;
  std::size_t read = 0;
  std::string written;

  bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << "error " << outcome.error << ", read " << outcome.read << ", written "
             << testing::PrintToString(outcome.written);
}

/// A conversion by both implementations.
class Pair {
 public:
  Pair(const std::string& to, const std::string& from)
      : library_(iconv_open(to.c_str(), from.c_str())), ours_(Conversion::open(to, from)) {}
  Pair(const Pair&) = delete;
  Pair& operator=(const Pair&) = delete;
  ~Pair() { iconv_close(library_); }

  bool isThere() const { return ours_ && library_ != reinterpret_cast<iconv_t>(-1); }

  void reset() {
    iconv(library_, nullptr, nullptr, nullptr, nullptr);
    ours_->reset();
  }
  /// Continues the conversion in both.
  std::pair<Outcome, Outcome> step(std::string_view bytes, std::size_t room) {
    return {libraryOutcome(bytes, room), ourOutcome(bytes, room)};
  }
  /// Converts a text from the initial state. True when both give the same result.
  testing::AssertionResult agree(std::string_view bytes, std::size_t room) {
    reset();
    const auto [library, ours] = step(bytes, room);
    if (library == ours) return testing::AssertionSuccess();
    return testing::AssertionFailure() << testing::PrintToString(std::string(bytes)) << " into " << room
                                       << " bytes: " << ours << "; the library: " << library;
  }

 private:
  Outcome libraryOutcome(std::string_view bytes, std::size_t room) {
    std::string in(bytes);
    std::string out(room, '\0');
    char* from = in.data();
    char* to = out.data();
    std::size_t left = in.size();
    std::size_t space = room;
    const bool failed = iconv(library_, &from, &left, &to, &space) == static_cast<std::size_t>(-1);
    Outcome outcome{failed ? errno : 0, in.size() - left, out.substr(0, room - space)};
    EXPECT_EQ(from, in.data() + outcome.read);
    return outcome;
  }
  Outcome ourOutcome(std::string_view bytes, std::size_t room) {
    std::string out(room, '\0');
    const char* from = bytes.data();
    char* to = out.data();
    std::size_t left = bytes.size();
    std::size_t space = room;
    const int error = ours_->convert(from, left, to, space);
    EXPECT_EQ(from, bytes.data() + bytes.size() - left);
    EXPECT_EQ(to, out.data() + room - space);
    return {error, bytes.size() - left, out.substr(0, room - space)};
  }

  iconv_t library_;
  std::unique_ptr<Conversion> ours_;
};

constexpr std::size_t ample = 64;

std::vector<std::string> allNames() {
  std::vector<std::string> names{"UTF-8",           "UTF8",       "UTF-16BE",   "ISO-10646/UTF8",
                                 "ISO-10646/UTF-8", "ISO-IR-193", "OSF05010001"};
  for (const Name* name = tableNames.first; name != tableNames.first + tableNames.count; ++name) {
    names.emplace_back(name->name);
  }
  return names;
}

/// A name of each encoding, with or without a table.
std::vector<std::string> namesOfTables() {
  std::vector<std::string> names{"UTF-8", "UTF-16BE"};
  std::set<const Table*> seen;
  for (const Name* name = tableNames.first; name != tableNames.first + tableNames.count; ++name) {
    if (seen.insert(name->table).second) names.emplace_back(name->name);
  }
  return names;
}

/// A text in which bytes that can begin or continue a character are more likely than by chance.
std::string someBytes(std::minstd_rand& random) {
  std::string bytes(random() % 12, '\0');
  for (char& byte : bytes) {
    constexpr std::string_view likely("A\x80\xA1\xBF\xC1\xC3\xD8\xDC\xE2\xED\xF0\xF4\x00\xFF", 14);
    byte = random() % 2 == 0 ? likely[random() % likely.size()] : static_cast<char>(random() % 256);
  }
  return bytes;
}

// The names by which the importers and the plug-in open conversions.
TEST(Conversion, HasTheEncodingsOfBroadcastsAndLists) {
  for (const char* name :
       {"ISO-8859-1",  "ISO-8859-2",  "ISO-8859-3",   "ISO-8859-4",  "ISO-8859-5",  "ISO-8859-6",
        "ISO-8859-7",  "ISO-8859-8",  "ISO-8859-9",   "ISO-8859-10", "ISO-8859-11", "ISO-8859-13",
        "ISO-8859-14", "ISO-8859-15", "ISO-8859-16",  "UTF-16BE",    "EUC-KR",      "GB2312",
        "UTF-8",       "ISO_6937",    "windows-1252", "koi8-r//",    "CP1251",      "ISO-10646/UTF8/"}) {
    EXPECT_TRUE(Pair("UTF-16LE", name).isThere()) << name;
  }
  EXPECT_TRUE(Pair("UTF-16", "UCS-2BE").isThere());
  EXPECT_TRUE(Pair("UTF-8", "UCS-2BE").isThere());
}

TEST(Conversion, HasNoOthers) {
  for (const char* name : {"", "ISO-8859-12", "no-such", "UTF-7", "EBCDIC-US"}) {
    EXPECT_EQ(Conversion::open("UTF-16LE", name), nullptr) << name;
  }
  EXPECT_EQ(Conversion::open("KOI8-R", "UTF-8"), nullptr);
}

TEST(Conversion, ReadsEachByteByEachNameAsTheLibraryDoes) {
  for (const std::string& name : allNames()) {
    Pair pair("UTF-16LE", name);
    ASSERT_TRUE(pair.isThere()) << name;
    for (int byte = 0; byte < 0x100; ++byte) {
      ASSERT_TRUE(pair.agree(std::string(1, static_cast<char>(byte)), ample)) << name;
    }
  }
}

TEST(Conversion, ReadsEachPairOfBytesAsTheLibraryDoes) {
  for (const std::string& name : namesOfTables()) {
    Pair pair("UTF-16LE", name);
    for (unsigned number = 0; number < 0x10000; ++number) {
      const std::string two{static_cast<char>(number >> 8U), static_cast<char>(number & 0xFFU)};
      ASSERT_TRUE(pair.agree(two, ample)) << name;
    }
  }
}

TEST(Conversion, ReadsUtf8OfUpToSixBytesAsTheLibraryDoes) {
  Pair pair("UTF-16LE", "UTF-8");
  constexpr std::string_view seconds("\x00\x41\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xFF", 11);
  for (unsigned lead = 0xC0; lead < 0x100; ++lead) {
    for (const char second : seconds) {
      for (const char third : seconds) {
        for (const char fourth : seconds) {
          const std::string bytes{static_cast<char>(lead), second, third, fourth, '\x80', '\x80'};
          for (std::size_t size = 1; size <= bytes.size(); ++size) {
            ASSERT_TRUE(pair.agree(std::string_view(bytes).substr(0, size), ample));
          }
        }
      }
    }
  }
}

TEST(Conversion, ReadsEachUtf16CharacterAndBrokenPairsAsTheLibraryDoes) {
  Pair pair("UTF-16LE", "UTF-16BE");
  for (unsigned high = 0xD7F0; high < 0xE010; ++high) {
    for (const unsigned low : {0U, 0x41U, 0xD7FFU, 0xD800U, 0xDBFFU, 0xDC00U, 0xDFFFU, 0xE000U, 0xFFFFU}) {
      const std::string bytes{static_cast<char>(high >> 8U), static_cast<char>(high & 0xFFU),
                              static_cast<char>(low >> 8U), static_cast<char>(low & 0xFFU)};
      ASSERT_TRUE(pair.agree(bytes, ample));
      ASSERT_TRUE(pair.agree(bytes.substr(0, 3), ample));
    }
  }
}

TEST(Conversion, WritesEachUnitAsTheLibraryDoes) {
  for (const char* name : {"UTF-8", "UTF-16"}) {
    Pair pair(name, "UCS-2BE");
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
      const std::string bytes{static_cast<char>(unit >> 8U), static_cast<char>(unit & 0xFFU), '\0'};
      for (std::size_t room = 0; room < 6; ++room) {
        ASSERT_TRUE(pair.agree(std::string_view(bytes).substr(0, 2), room)) << name;
      }
      ASSERT_TRUE(pair.agree(bytes, ample)) << name;
    }
  }
}

/// Converts random texts in pieces, with little room for output, continuing where the previous call stopped.
void convertInPieces(Pair& pair, std::minstd_rand& random) {
  pair.reset();
  std::string bytes = someBytes(random);
  for (int call = 0; call < 10; ++call) {
    const std::string_view piece = std::string_view(bytes).substr(0, random() % (bytes.size() + 1));
    const std::size_t room = random() % 10;
    const auto [library, ours] = pair.step(piece, room);
    ASSERT_EQ(library, ours) << testing::PrintToString(std::string(piece)) << " into " << room;
    bytes.erase(0, ours.read);
    if (ours.error == EILSEQ) bytes.erase(0, 1);
  }
}

TEST(Conversion, GoesOnAsTheLibraryDoesWhereTextsComeInPieces) {
  std::minstd_rand random;
  std::vector<std::pair<std::string, std::string>> conversions{{"UTF-8", "UCS-2BE"}, {"UTF-16", "UCS-2BE"}};
  for (const std::string& name : allNames()) conversions.emplace_back("UTF-16LE", name);
  for (const auto& [to, from] : conversions) {
    Pair pair(to, from);
    for (int text = 0; text < 300; ++text) ASSERT_NO_FATAL_FAILURE(convertInPieces(pair, random)) << from;
  }
}

}  // namespace
}  // namespace wasm
