// SPDX-License-Identifier: MIT
// The command table, row by row: each row has all its cases, and they are true.
#include <gtest/gtest.h>

#include "window/cases/Files.h"
#include "window/cases/Walker.h"

namespace cases {
namespace {

using virtualtv::catalogue;

std::size_t rows() {
  std::size_t count = 0;
  kel::CommandTable(count);
  return count;
}

const kel::Command& rowAt(std::size_t at) {
  std::size_t count = 0;
  return kel::CommandTable(count)[at];
}

std::string lined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

class CommandCases : public ::testing::TestWithParam<std::size_t> {};

TEST_P(CommandCases, AreAllThereAndTrue) {
  Walker walker(catalogue(), results());
  EXPECT_EQ(lined(walker.walk(rowAt(GetParam()), all())), "")
      << "The cases are in tests/window/cases/*.txt, the numbers in tests/window/cases/results.tsv.";
}

INSTANTIATE_TEST_SUITE_P(Of, CommandCases, ::testing::Range(std::size_t{0}, rows()),
                         [](const auto& row) { return std::string(rowAt(row.param).name); });

TEST(AllCases, AreOfCommandsInTheTable) {
  EXPECT_EQ(lined(Walker(catalogue(), results()).strays(all())), "");
}

}  // namespace
}  // namespace cases
