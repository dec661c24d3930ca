// SPDX-License-Identifier: MIT
// Values as text.
#include "json/Write.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "json/Read.h"

namespace virtualtv::json {
namespace {

TEST(JsonWrite, IsOneLine) {
  for (const std::string_view text :
       {"null", "true", "false", "0", "-9223372036854775808", "18446744073709551615", "1.5", "[]", "{}", "\"\"",
        R"([1,[],{"a":{},"b":"c"}])", R"("\"\\\b\f\n\r\t\u0000\u001f/")", "\"\x7F\xC3\xA9\xF0\x9F\x98\x80\""}) {
    EXPECT_EQ(write(read(text)), text);
  }
}

TEST(JsonWrite, EscapesInLongTextsToo) {
  const std::string blank(1023, ' ');
  const std::string wide = blank + "\xC3\xA9\n" + blank + "\x1F" + blank;
  EXPECT_EQ(write(wide), "\"" + blank + "\xC3\xA9\\n" + blank + "\\u001f" + blank + "\"");
  EXPECT_EQ(read(write(wide)).asString(), wide);
  EXPECT_EQ(write(std::string(5000, '"')).size(), 10'002U);
}

TEST(JsonWrite, WritesObjectsMemberByMember) {
  std::string text = "a ";
  Object object(text);
  object.put("b", true);
  object.put("n", std::int64_t{-1});
  object.put("t", "x\"");
  object.put("v", read("[1]"));
  object.end();
  EXPECT_EQ(text, R"(a {"b":true,"n":-1,"t":"x\"","v":[1]})");
  text.clear();
  Object(text).end();
  EXPECT_EQ(text, "{}");
}

TEST(JsonWrite, KeepsZeroBytesInNames) {
  EXPECT_EQ(write(read(R"({"a\u0000b":1})")), R"({"a\u0000b":1})");
}

TEST(JsonWrite, Appends) {
  std::string text = "a ";
  append(text, read("[1]"));
  EXPECT_EQ(text, "a [1]");
}

}  // namespace
}  // namespace virtualtv::json
