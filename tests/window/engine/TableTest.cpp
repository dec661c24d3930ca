// SPDX-License-Identifier: MIT
// The command table: the commands that it has, and the order in which their names are compared.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Window/Src/Commands.h"
#include "support/Commands.h"

namespace {

using Names = std::vector<std::string>;

const Names order = engine::names();

Names table() {
  std::size_t count = 0;
  const kel::Command* const rows = kel::CommandTable(count);
  Names names;
  for (std::size_t at = 0; at < count; ++at) names.emplace_back(rows[at].name);
  return names;
}

TEST(CommandTable, HoldsTheCommandsInTheOrderOfComparison) {
  EXPECT_EQ(table(), order) << "tests/support/Commands.h lists the commands of Window/Src/Commands.cpp";
}

TEST(CommandTable, HoldsAsManyParametersAsTheLongestFormOfACommandHas) {
  std::map<std::string, std::size_t> longest;
  for (const engine::Command& command : engine::everyCommand()) {
    longest[command.name] = std::max(longest[command.name], command.parameters.size());
  }
  for (const std::string& name : order) {
    const kel::Command* const row = kel::FindCommand(name);
    ASSERT_NE(row, nullptr) << name;
    const auto& parameters = row->parameters;
    const auto* const end = std::find_if(parameters.begin(), parameters.end(), [](const kel::Parameter& parameter) {
      return parameter.parse == kel::Parse::none;
    });
    EXPECT_EQ(longest[name], std::distance(parameters.begin(), end)) << name << " in tests/support/Commands.h";
  }
}

TEST(CommandTable, FindsEachRowByItsName) {
  std::size_t count = 0;
  const kel::Command* const rows = kel::CommandTable(count);
  for (std::size_t at = 0; at < count; ++at) EXPECT_EQ(kel::FindCommand(rows[at].name), &rows[at]) << rows[at].name;
}

/// Expects that a name has no row. The name is at the end of its memory block, so that a sanitizer reports a read
/// beyond it.
void expectNone(std::string_view name) {
  const std::vector<char> block(name.begin(), name.end());
  EXPECT_EQ(kel::FindCommand({block.data(), block.size()}), nullptr) << name;
}

TEST(CommandTable, HasNoRowForANameThatDiffersFromOneInAnyByte) {
  const std::set<std::string> names(order.begin(), order.end());
  const auto expectNoneButOwn = [&](const std::string& name) {
    if (names.count(name) == 0) expectNone(name);
  };
  for (const std::string& name : order) {
    for (std::size_t at = 0; at < name.size(); ++at) {
      std::string other = name;
      for (const unsigned bit : {1U, 0x20U, 0x80U}) {
        other[at] = static_cast<char>(static_cast<unsigned char>(name[at]) ^ bit);
        expectNoneButOwn(other);
      }
      expectNoneButOwn(name.substr(0, at));
      expectNoneButOwn(name.substr(at + 1));
      expectNoneButOwn(name.substr(0, at) + name.substr(at + 1));
      expectNoneButOwn(name.substr(0, at) + 'x' + name.substr(at));
    }
    for (const std::string& more : Names{" ", "x", std::string(1, '\0'), "_Major"}) expectNoneButOwn(name + more);
  }
}

TEST(CommandTable, HasNoRowForNamesOfAnyLengthThatAreNone) {
  for (std::size_t length = 0; length <= 80; ++length) {
    expectNone(std::string(length, 'a'));
    expectNone(std::string(length, '\0'));
  }
}

}  // namespace
