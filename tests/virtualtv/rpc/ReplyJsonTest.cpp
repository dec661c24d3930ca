// SPDX-License-Identifier: MIT
// The answer of an engine to a command, as a JSON value and as text.
#include "rpc/ReplyJson.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "framework/Reply.h"
#include "json/Write.h"

namespace virtualtv::rpc {
namespace {

using framework::Reply;

std::string ascii(std::string text) {
  return framework::encode({Reply::Kind::ascii, 0, std::move(text), {}});
}

std::string unicode(std::u16string units) {
  return framework::encode({Reply::Kind::unicode, 0, {}, std::move(units)});
}

std::string textOf(bool accepted, const std::string& encoded) {
  std::string text;
  appendResult(text, accepted, encoded);
  return text;
}

TEST(ReplyJson, IsTheSameAsValueAndAsText) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"", R"({"accepted":true,"kind":"empty"})"},
      {"no reply", R"({"accepted":true,"kind":"empty"})"},
      {framework::encode({Reply::Kind::integer, -7, {}, {}}), R"({"accepted":true,"kind":"int","value":-7})"},
      {ascii(""), R"({"accepted":true,"kind":"ascii","value":""})"},
      {ascii("a\"\\\n\x01 \xC3\xA9"),
       "{\"accepted\":true,\"kind\":\"ascii\",\"value\":\"a\\\"\\\\\\n\\u0001 \xC3\xA9\"}"},
      {ascii("a\xFF"), "{\"accepted\":true,\"bytes\":\"Yf8=\",\"kind\":\"ascii\",\"value\":\"a\xEF\xBF\xBD\"}"},
      {unicode(u"\u00e9\""), "{\"accepted\":true,\"kind\":\"unicode\",\"value\":\"\xC3\xA9\\\"\"}"},
      {unicode({u'a', char16_t{0xD800}}),
       "{\"accepted\":true,\"kind\":\"unicode\",\"units\":[97,55296],\"value\":\"a\xEF\xBF\xBD\"}"},
  };
  for (const auto& [encoded, text] : cases) {
    EXPECT_EQ(textOf(true, encoded), text);
    EXPECT_EQ(virtualtv::json::write(resultOf(true, encoded)), text);
  }
  EXPECT_EQ(textOf(false, ""), R"({"accepted":false,"kind":"empty"})");
}

TEST(ReplyJson, IsCutBetweenCharacters) {
  const auto cut = [](const std::string& encoded, std::size_t longest) {
    const Json::Value result = resultOf(true, encoded, longest);
    return result["value"].asString() + " of " + result["length"].asString();
  };
  EXPECT_EQ(cut(ascii("abcd"), 4), "abcd of ");
  EXPECT_EQ(cut(ascii("abcde"), 4), "abcd of 5");
  EXPECT_EQ(cut(ascii("a\xC3\xA9z"), 2), "a of 4");
  EXPECT_EQ(cut(unicode(u"abc"), 6), "abc of ");
  EXPECT_EQ(cut(unicode(u"abcd"), 6), "abc of 4");
}

}  // namespace
}  // namespace virtualtv::rpc
