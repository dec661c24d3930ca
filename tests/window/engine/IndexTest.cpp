// The index that finds a command's row, on tables of its own.
#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>

#include "Window/Src/CommandIndex.h"

namespace {

struct Row {
  const char* name;
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

TEST(CommandIndex, RefusesNamesThatBeginAndEndAlike) {
  const Row rows[] = {{"GetCurrentChannel"}, {"GetCurrentxCurrentChannel"}};
  EXPECT_THROW(kel::CommandIndex<2>{rows}, std::logic_error);
}

}  // namespace
