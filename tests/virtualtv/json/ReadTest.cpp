// SPDX-License-Identifier: MIT
// JSON texts: which ones are accepted, and what the errors say about the others.
#include "json/Read.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace virtualtv::json {
namespace {

/// The error for a text, "" when it is accepted.
std::string refusalOf(std::string_view text, const Limits& limits = {}, SameNames sameNames = SameNames::lastCounts) {
  // Copy the text to the end of a buffer, so that the sanitizer reports a read beyond it.
  const std::vector<char> bytes(text.begin(), text.end());
  try {
    read({bytes.data(), bytes.size()}, limits, sameNames);
    return "";
  } catch (const NotJson& error) {
    return error.what();
  }
}

std::string nested(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

TEST(JsonRead, TakesWhatIsJson) {
  for (const std::string_view text : {"0", "-0", "-12.50e+3", "1E9", "1e-2", "true", " false\t", "\r\nnull\n", "\"\"",
                                      "[]", "[ ]", "{}", "{ }", R"( [1 , [ ] , {"a" : {} , "" : "b"} ] )",
                                      R"("\"\\\/\b\f\n\r\t\u00e9\u0000\uD83D\ude00")", "\"\x7f\xC3\xA9\""}) {
    EXPECT_EQ(refusalOf(text), "") << text;
  }
}

TEST(JsonRead, ReadsTexts) {
  EXPECT_EQ(read(R"("\u00e9\ud83d\ude00")").asString(), "\xC3\xA9\xF0\x9F\x98\x80");
  EXPECT_EQ(read(R"("a\u0000b")").asString(), std::string("a\0b", 3));
}

TEST(JsonRead, SaysWhereAndWhatIsWrong) {
  const std::vector<std::pair<std::string_view, std::string>> cases{
      {"", "line 1, column 1: a value is wanted, not the end"},
      {" \n ", "line 2, column 2: a value is wanted, not the end"},
      {"hello", "line 1, column 1: a value is wanted"},
      {"True", "line 1, column 1: a value is wanted"},
      {"nul", "line 1, column 1: a value is wanted"},
      {"NaN", "line 1, column 1: a value is wanted"},
      {"'a'", "line 1, column 1: a value is wanted"},
      {"1 2", "line 1, column 3: nothing more is wanted behind the value"},
      {"truely", "line 1, column 5: nothing more is wanted behind the value"},
      {"01", "line 1, column 2: nothing more is wanted behind the value"},
      {"-", "line 1, column 2: a digit is wanted"},
      {"-Infinity", "line 1, column 2: a digit is wanted"},
      {"1.", "line 1, column 3: a digit is wanted"},
      {".5", "line 1, column 1: a value is wanted"},
      {"+1", "line 1, column 1: a value is wanted"},
      {"1e", "line 1, column 3: a digit is wanted"},
      {"1e+", "line 1, column 4: a digit is wanted"},
      {"[1,]", "line 1, column 4: a value is wanted"},
      {"[,1]", "line 1, column 2: a value is wanted"},
      {"[1 2]", "line 1, column 4: a comma or ] is wanted"},
      {"[1", "line 1, column 3: a comma or ] is wanted"},
      {"[", "line 1, column 2: a value is wanted, not the end"},
      {"[1}", "line 1, column 3: a comma or ] is wanted"},
      {"{\"a\":1,}", "line 1, column 8: a name between double quotes is wanted"},
      {"{\"a\" 1}", "line 1, column 6: a colon is wanted behind the name"},
      {"{a:1}", "line 1, column 2: a name between double quotes is wanted"},
      {"{", "line 1, column 2: a name between double quotes is wanted"},
      {"{\"a\":1", "line 1, column 7: a comma or } is wanted"},
      {"\"a", "line 1, column 3: a text has no end"},
      {"\"a\nb\"", "line 1, column 3: a control character in a text; it is written with a backslash"},
      {"\"\\", "line 1, column 3: there is no such escape"},
      {R"("\x")", "line 1, column 3: there is no such escape"},
      {R"("\u12")", "line 1, column 6: four hexadecimal digits are wanted"},
      {R"("\ud800")", "line 1, column 2: half of a surrogate pair alone is no character"},
      {R"("\ud800\u0041")", "line 1, column 2: half of a surrogate pair alone is no character"},
      {R"("\udc00\ud800")", "line 1, column 2: half of a surrogate pair alone is no character"},
      {R"("\ud800\)", "line 1, column 2: half of a surrogate pair alone is no character"},
      {"/* a */1", "line 1, column 1: JSON has no comments"},
      {"1 // a", "line 1, column 3: JSON has no comments"},
      {"[1/**/]", "line 1, column 3: JSON has no comments"},
      {"{/**/}", "line 1, column 2: JSON has no comments"},
      {"\xEF\xBB\xBF"
       "1",
       "line 1, column 1: a value is wanted"},
      {"\"\xFF\"", "line 1, column 2: not UTF-8"},
      {"\"0123456789\xC3\xA9 01234567\xFF 0123456789\"", "line 1, column 23: not UTF-8"},
      {"[1,\n\"\xC3\xA9\xC3\"]", "line 2, column 4: not UTF-8"},
      {"\"a\x80\"", "line 1, column 3: not UTF-8"},
      {"\"\xED\xA0\x80\"", "line 1, column 2: not UTF-8"},
      {"1e999", "line 1, column 1: '1e999' is not a number"},
  };
  for (const auto& [text, said] : cases) EXPECT_EQ(refusalOf(text), said) << text;
}

TEST(JsonRead, TakesNoZeroBytes) {
  using std::literals::string_view_literals::operator""sv;
  EXPECT_EQ(refusalOf("\0"sv), "line 1, column 1: a value is wanted");
  EXPECT_EQ(refusalOf("1\0"sv), "line 1, column 2: nothing more is wanted behind the value");
  EXPECT_EQ(refusalOf("{}\0\"\\"sv), "line 1, column 3: nothing more is wanted behind the value");
  EXPECT_EQ(refusalOf("[1,\0]"sv), "line 1, column 4: a value is wanted");
  EXPECT_EQ(refusalOf("\"\0\""sv), "line 1, column 2: a control character in a text; it is written with a backslash");
}

TEST(JsonRead, HasLimits) {
  EXPECT_EQ(refusalOf(nested(100)), "");
  EXPECT_EQ(refusalOf(nested(101)), "line 1, column 101: nested deeper than 100");
  EXPECT_EQ(refusalOf(std::string(1'000'000, '[')), "line 1, column 101: nested deeper than 100");
  EXPECT_EQ(refusalOf(R"({"a":{"b":{}}})", {.depth = 2}), "line 1, column 11: nested deeper than 2");
  EXPECT_EQ(refusalOf("[[],[],[]]", {.depth = 2, .values = 4}), "") << "beside each other";
  EXPECT_EQ(refusalOf("[1,2,{\"a\":3}]", {.values = 5}), "");
  EXPECT_EQ(refusalOf("[1,2,{\"a\":3}]", {.values = 4}), "line 1, column 11: more than 4 values");
}

TEST(JsonRead, RefusesTwoMembersOfOneNameWhereItIsTold) {
  EXPECT_EQ(read(R"({"a": 1, "a": 2})")["a"].asInt(), 2);
  EXPECT_EQ(refusalOf("{\"a\": 1,\n \"a\": 2}", {}, SameNames::refused), "line 2, column 2: Duplicate key: 'a'");
}

TEST(JsonRead, TakesNoPartOfAText) {
  const std::string text = R"({"a": [1, -2.5e3, true, null], "b": "\u00e9\ud83d\ude00", "c": {"d": []}})";
  ASSERT_EQ(refusalOf(text), "");
  for (std::size_t size = 0; size < text.size(); ++size) EXPECT_NE(refusalOf(text.substr(0, size)), "") << size;
}

}  // namespace
}  // namespace virtualtv::json
