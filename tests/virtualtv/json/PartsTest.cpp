// SPDX-License-Identifier: MIT
// The parts of a JSON text, found without parsing their values.
#include "json/Parts.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "json/Read.h"

namespace virtualtv::json {
namespace {

using Members = std::vector<std::pair<std::string, std::string>>;

/// Names and values of the parts; items have empty names. Copies the text to the end of a buffer, so that the sanitizer
/// reports a read beyond it.
Members partsOf(std::string_view text) {
  const std::vector<char> bytes(text.begin(), text.end());
  Members members;
  Parts parts({bytes.data(), bytes.size()});
  while (parts.next()) members.emplace_back(parts.isObject() ? parts.name() : "", parts.value());
  EXPECT_FALSE(parts.next()) << "behind the last one";
  return members;
}

TEST(JsonParts, AreTheItemsOfAnArray) {
  EXPECT_EQ(partsOf("[]"), Members());
  EXPECT_EQ(partsOf(" [ ] "), Members());
  EXPECT_EQ(partsOf("[1]"), Members({{"", "1"}}));
  EXPECT_EQ(
      partsOf("\t[ -1.5e3 ,true,\"a,]\\\"\\\\\" , [1, [\"]\"]] ,{\"b\" : \"}\"}\n] "),
      Members({{"", "-1.5e3"}, {"", "true"}, {"", R"("a,]\"\\")"}, {"", R"([1, ["]"]])"}, {"", R"({"b" : "}"})"}}));
}

TEST(JsonParts, AreTheMembersOfAnObject) {
  EXPECT_EQ(partsOf("{}"), Members());
  EXPECT_EQ(partsOf(" { \"a\" : 1 , \"b\":{\"c\":[ ]},\"\":null } "),
            Members({{"a", "1"}, {"b", R"({"c":[ ]})"}, {"", "null"}}));
  EXPECT_EQ(partsOf(R"({"\u0061\"}": 2, "a": 3, "a": 4})"), Members({{"a\"}", "2"}, {"a", "3"}, {"a", "4"}}));
}

TEST(JsonParts, AreNoneOfOtherValues) {
  for (const std::string_view text : {"1", " \"[1]\" ", "null", "true"}) {
    EXPECT_EQ(partsOf(text), Members()) << text;
    EXPECT_FALSE(Parts(text).isArray() || Parts(text).isObject()) << text;
  }
  EXPECT_TRUE(Parts(" [1]").isArray());
  EXPECT_TRUE(Parts("\n{}").isObject());
}

TEST(JsonParts, SayWhatTheyAreAsTexts) {
  EXPECT_EQ(textOf("\"\""), "");
  EXPECT_EQ(textOf("\"caf\xC3\xA9\""), "caf\xC3\xA9");
  EXPECT_EQ(textOf(R"("\"\\\u00e9\u0000b")"), std::string("\"\\\xC3\xA9\0b", 6));
  for (const std::string_view value : {"1", "null", "[\"a\"]", ""}) EXPECT_EQ(textOf(value), std::nullopt) << value;
}

TEST(JsonParts, OfATextThatIsToBeReadHaveNoNumbersBeyondADouble) {
  const std::string long300(300, '1');
  for (const std::string& text :
       {std::string("[1e308]"), std::string("[-1E-400]"), long300, "0." + long300 + long300}) {
    EXPECT_NO_THROW(check(text, {})) << text;
  }
  for (const std::string& text :
       {std::string("[1e309]"), std::string("{\"a\":[-1E+400]}"), long300 + long300, "[" + long300 + long300 + ".0]"}) {
    EXPECT_THROW(check(text, {}), NotJson) << text;
  }
}

}  // namespace
}  // namespace virtualtv::json
