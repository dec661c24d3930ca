// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "kel/ParamList.h"
#include "kel/StringToNumber.h"

namespace kel {
namespace {

TEST(StringToNumber, ReadsWholeDecimalNumbersWithinInt) {
  const std::pair<const char*, int> good[] = {{"0", 0},
                                              {"7", 7},
                                              {"-7", -7},
                                              {"+7", 7},
                                              {"007", 7},
                                              {"-0", 0},
                                              {"2147483647", 2147483647},
                                              {"-2147483648", -2147483647 - 1}};
  for (const auto& [text, value] : good) {
    int number = 99;
    EXPECT_TRUE(StringToNumber(text, number)) << text;
    EXPECT_EQ(number, value) << text;
  }
}

TEST(StringToNumber, LeavesTheTargetAsItWasWhenTheTextDoesNotParse) {
  const std::string bad[] = {"",
                             " ",
                             " 7",
                             "7 ",
                             "7a",
                             "a",
                             "0x7",
                             "1.0",
                             "-",
                             "+",
                             "+-7",
                             "-+7",
                             "++7",
                             "2147483648",
                             "-2147483649",
                             "1e2",
                             std::string("7\0", 2)};
  for (const std::string& text : bad) {
    int number = 99;
    EXPECT_FALSE(StringToNumber(text, number)) << text;
    EXPECT_EQ(number, 99) << text;
  }
}

TEST(ParamList, ReadsAsEmptyTextsBeyondItsEnd) {
  const ParamList list({"a", ""});
  EXPECT_EQ(list.Size(), 2U);
  EXPECT_EQ(list.At(0), "a");
  EXPECT_EQ(list.At(1), "");
  EXPECT_EQ(list.At(2), "");
  EXPECT_EQ(list.At(1000), "");
  EXPECT_EQ(ParamList().Size(), 0U);
  EXPECT_EQ(ParamList().At(0), "");
}

}  // namespace
}  // namespace kel
