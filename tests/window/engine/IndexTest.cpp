// SPDX-License-Identifier: MIT
// The index that finds a command's row, tested on small tables.
#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Window/Src/CommandIndex.h"

namespace {

struct Row {
  std::string_view name;
};

TEST(CommandIndex, FindsTheRowOfEachName) {
  const Row rows[] = {{"GetChannel_Major"}, {"Show"}, {"SetSource"}, {""}, {"Seven77"}, {"Eight888"}};
  const kel::CommandIndex index(rows);
  for (std::size_t row = 0; row < std::size(rows); ++row) EXPECT_EQ(index.Find(rows[row].name), row) << rows[row].name;
  for (const char* other : {"GetChannel_Minor", "Sho", "show", "Seven777", "Eight88", "SetSource "}) {
    EXPECT_EQ(index.Find(other), std::size(rows)) << other;
  }
}

TEST(CommandIndex, FindsTheFirstRowOfTheSameNames) {
  const Row rows[] = {{"Show"}, {"SetSource"}, {"Show"}, {"SetSource"}};
  const kel::CommandIndex index(rows);
  EXPECT_EQ(index.Find("Show"), 0U);
  EXPECT_EQ(index.Find("SetSource"), 1U);
}

TEST(CommandIndex, TellsManyNamesApart) {
  static constexpr std::size_t count = 64;
  char names[count][10] = {};
  Row rows[count] = {};
  for (std::size_t row = 0; row < count; ++row) {
    names[row][0] = 'N';
    names[row][1] = static_cast<char>('0' + row / 8);
    names[row][2] = static_cast<char>('0' + row % 8);
    rows[row].name = names[row];
  }
  const kel::CommandIndex<count> index(rows);
  for (std::size_t row = 0; row < count; ++row) EXPECT_EQ(index.Find(rows[row].name), row) << rows[row].name;
}

TEST(CommandIndex, TellsNamesApartThatDifferInOneBit) {
  for (const std::size_t size : {1U, 7U, 8U, 16U}) {
    for (const char byte : {'\0', '\xff'}) {
      const std::string name(size, byte);
      for (std::size_t bit = 0; bit < 8 * size; ++bit) {
        std::string other = name;
        other[bit / 8] = static_cast<char>(other[bit / 8] ^ 1 << bit % 8);
        const Row rows[] = {{name}, {other}};
        const kel::CommandIndex index(rows);
        EXPECT_EQ(index.Find(name), 0U) << size << ", " << bit;
        EXPECT_EQ(index.Find(other), 1U) << size << ", " << bit;
      }
    }
  }
}

TEST(CommandIndex, RefusesNamesThatBeginAndEndAlike) {
  const Row rows[] = {{"GetCurrentChannel"}, {"GetCurrentxCurrentChannel"}};
  try {
    const kel::CommandIndex index(rows);
    ADD_FAILURE() << "no exception";
  } catch (const std::logic_error& error) {
    EXPECT_STREQ(error.what(), "two names begin and end with the same eight bytes");
  }
}

}  // namespace
