// SPDX-License-Identifier: MIT
#include <fstream>
#include <iterator>
#include <string>

#include "set/Knobs.h"
#include "shell/DotCommands.h"
#include "shell/Help.h"
#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

/// The manual of the virtual TV.
std::string manual() {
  std::ifstream file(VIRTUAL_TV_PAGE);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// A text as the cell of a table.
std::string cell(std::string_view text) {
  std::string escaped;
  for (const char letter : text) escaped += letter == '|' ? std::string("\\|") : std::string(1, letter);
  return escaped;
}

std::string code(std::string_view text) {
  return text.empty() ? "" : "`" + cell(text) + "`";
}

bool hasRow(const std::string& page, const std::string& first, const std::string& second) {
  return page.find("\n| " + first + " | " + second + " |") != std::string::npos;
}

TEST(Manual, HasARowForEachKnob) {
  const std::string page = manual();
  for (const Knob& knob : knobs()) {
    const std::string value = knob.set == nullptr ? "(read only)" : cell(knob.value);
    EXPECT_TRUE(hasRow(page, code(knob.name), value + " | " + cell(knob.help))) << knob.name;
  }
}

TEST(Manual, HasARowForEachOperationWithItsWaysToFailAndItsOutputs) {
  const std::string page = manual();
  for (const seam::Operation& operation : seam::operations) {
    EXPECT_TRUE(hasRow(page, code(operation.name), code(waysToFail(operation)))) << operation.name;
    const std::size_t row = page.find("\n| " + code(operation.name) + " |");
    if (row == std::string::npos) continue;
    const std::string line = page.substr(row + 1, page.find('\n', row + 1) - row - 1);
    for (const seam::Output& output : operation.written()) {
      if (takenBy(output).empty()) continue;
      EXPECT_NE(line.find("out." + std::string(output.name) + "=" + takenBy(output)), std::string::npos) << line;
    }
  }
}

TEST(Manual, HasARowForEachDotCommand) {
  const std::string page = manual();
  for (const DotCommand& command : dotCommands()) {
    const std::string usage = command.usage.empty() ? "" : " " + std::string(command.usage);
    EXPECT_TRUE(hasRow(page, code(std::string(command.name) + usage), cell(command.help))) << command.name;
  }
}

TEST(Manual, SpellsAFaultAsTheTableOfCommandsDoes) {
  const std::string usage(dotCommand(".fault").usage);
  const std::string words = usage.substr(1, usage.rfind(" | clear [NUMBER]]") - 1);
  EXPECT_NE(manual().find("\n`.fault " + words + "` "), std::string::npos) << words;
}

}  // namespace
}  // namespace virtualtv::shell
