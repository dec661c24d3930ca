// SPDX-License-Identifier: MIT
#include "shell/Help.h"

#include <algorithm>
#include <sstream>

#include "catalogue/Catalogue.h"
#include "seam/Seam.h"
#include "set/Knobs.h"
#include "shell/DotCommands.h"
#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

using seam::Form;
using seam::Operation;

bool mentions(const Lines& lines, std::string_view text) {
  return std::any_of(lines.begin(), lines.end(),
                     [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

bool accepted(const Operation& operation, const std::string& words) {
  try {
    seam::parseFault({std::string(operation.name), words});
    return true;
  } catch (const std::invalid_argument&) {
    return false;
  }
}

TEST(Help, TheOverviewNamesEachDotCommand) {
  const Lines overview = helpOn("");
  for (const DotCommand& command : dotCommands()) EXPECT_TRUE(mentions(overview, command.help)) << command.name;
}

TEST(Help, ALongUsageDoesNotPushTheOthersHelpAside) {
  for (const auto& [topic, line, widest] : {std::tuple{"", "  .get [NAME]", 44}, {"commands", "  GetTVMode", 54}}) {
    const Lines told = helpOn(topic);
    const auto row =
        std::find_if(told.begin(), told.end(), [start = line](const auto& one) { return one.starts_with(start); });
    ASSERT_NE(row, told.end()) << line;
    EXPECT_LE(row->find_first_not_of(' ', std::string_view(line).size()), static_cast<std::size_t>(widest)) << *row;
  }
}

TEST(Help, SpellsAFaultAsTheTableOfCommandsDoes) {
  const std::string words =
      "OPERATION [nth=N] [times=N|always] [window=W] [engine=NAME] [result=R] [out.NAME=VALUE ...]";
  EXPECT_EQ(dotCommand(".fault").usage, "[" + words + " | clear [NUMBER]]");
  EXPECT_TRUE(mentions(helpOn("faults"), ".fault " + words));
}

TEST(Help, ListsEachPluginCommand) {
  ASSERT_FALSE(catalogue().commands().empty());
  const Lines listed = helpOn("commands");
  for (const CatalogueCommand& command : catalogue()) EXPECT_TRUE(mentions(listed, command.help)) << command.name;
}

TEST(Help, TellsOfASinglePluginCommand) {
  const Lines told = helpOn("GetSource");
  EXPECT_TRUE(mentions(told, "GetSource seek"));
  EXPECT_TRUE(mentions(told, "answers int"));
}

TEST(Help, TellsOfACommandThatTakesAListBelowItsOtherForm) {
  const std::string usage = "+ SetScreenCropRect x y width height displayX displayY displayWidth displayHeight plane";
  EXPECT_TRUE(mentions(helpOn("commands"), usage));
  const Lines told = helpOn("SetScreenCropRect");
  ASSERT_FALSE(told.empty());
  EXPECT_EQ(told.front().find("  SetScreenCropRect x y width height "), 0U) << told.front();
  EXPECT_TRUE(mentions(told, usage));
}

/// The commands of the catalogue, with their parameter-list forms.
std::vector<CatalogueCommand> allForms() {
  std::vector<CatalogueCommand> all = catalogue().commands();
  all.insert(all.end(), catalogue().listCommands().begin(), catalogue().listCommands().end());
  return all;
}

TEST(Help, LeavesOutNothingOfWhatTheCatalogueSaysOfACommand) {
  for (const CatalogueCommand& command : allForms()) {
    SCOPED_TRACE(command.name);
    const Lines told = helpOn(command.name);
    for (const CatalogueCommand::Parameter& parameter : command.parameters) {
      for (const std::string& text : {parameter.help, parameter.values, parameter.unparsed}) {
        EXPECT_TRUE(mentions(told, text)) << parameter.name << ": " << text;
      }
    }
    EXPECT_TRUE(mentions(told, command.answerHelp));
    EXPECT_TRUE(mentions(told, command.answerValues));
    if (command.preset) {
      EXPECT_TRUE(mentions(told, "or int " + std::to_string(*command.preset)));
    }
    EXPECT_TRUE(mentions(told, command.presetMeans));
    for (const CatalogueCommand::Failure& failure : command.failures) EXPECT_TRUE(mentions(told, failure.means));
    if (const CatalogueType* type = catalogue().findType(command.answerType)) {
      for (const auto& [name, means] : type->members) EXPECT_TRUE(mentions(told, means)) << name;
    }
  }
}

TEST(Help, ListsEachKnob) {
  const Lines listed = helpOn("knobs");
  for (const Knob& knob : knobs()) EXPECT_TRUE(mentions(listed, knob.name)) << knob.name;
  EXPECT_TRUE(mentions(listed, ".get service.#1")) << "which prints all of a service";
}

TEST(Help, TellsOfEachDotCommand) {
  for (const DotCommand& command : dotCommands()) {
    const Lines told = helpOn(std::string(command.name));
    EXPECT_TRUE(mentions(told, std::string(command.name) + (command.usage.empty() ? "" : " ")));
    EXPECT_TRUE(mentions(told, command.usage));
    EXPECT_TRUE(mentions(told, command.help));
  }
}

TEST(Help, IsThereForEachOfItsTopics) {
  for (const std::string& topic : helpTopics()) EXPECT_FALSE(helpOn(topic).empty()) << topic;
}

std::string joined(const Lines& lines) {
  std::string words;
  for (const std::string& line : lines) {
    std::istringstream pieces(line);
    for (std::string word; pieces >> word;) words += word + " ";
  }
  return words;
}

TEST(Help, FitsAWidthAndLosesNothing) {
  for (std::string topic : {"", "commands", "operations", "knobs", "faults", "GetChannel_Name", ".fault"}) {
    for (const std::size_t columns : {60U, 80U, 132U}) {
      const Lines lines = helpOn(topic, columns);
      for (const std::string& line : lines) EXPECT_LE(line.size(), columns) << line;
      EXPECT_EQ(joined(lines), joined(helpOn(topic))) << topic << columns;
    }
  }
}

TEST(Help, KeepsWhatTheWordsOfAFaultMeanInAColumn) {
  const Lines lines = helpOn("faults", 60);
  const auto word =
      std::find(lines.begin(), lines.end(), "    result=null       a null pointer; a factory answers its");
  ASSERT_NE(word, lines.end()) << ::testing::PrintToString(lines);
  EXPECT_EQ(*std::next(word), "                      success, but writes null");
}

TEST(Help, RefusesOtherTopics) {
  EXPECT_THROW(helpOn("nothing"), std::invalid_argument);
}

TEST(HelpOnOperations, NamesEachOperation) {
  const Lines listed = helpOn("operations");
  for (const Operation& operation : seam::operations) EXPECT_TRUE(mentions(listed, operation.name)) << operation.name;
}

TEST(HelpOnOperations, SaysJustWhatAFaultTakes) {
  const std::pair<std::string, const char*> ways[] = {
      {"N", "-5"}, {"null", "null"}, {"unwritten", "unwritten"}, {"throw", "throw"}};
  for (const Operation& operation : seam::operations) {
    const std::string told = ", " + waysToFail(operation) + ", ";
    const bool takesText = told.find(", TEXT, ") != std::string::npos;
    for (const auto& [name, word] : ways) {
      if (takesText && name == "N") continue;  // a number is also a valid text
      EXPECT_EQ(told.find(", " + name + ", ") != std::string::npos, accepted(operation, "result=" + std::string(word)))
          << operation.name << " " << name;
    }
    EXPECT_EQ(takesText, accepted(operation, "result=some text")) << operation.name;
  }
}

TEST(HelpOnOperations, SaysWhichOutputsCanBeChosen) {
  for (const Operation& operation : seam::operations) {
    for (const seam::Output& output : operation.written()) {
      std::string numbers = "1";
      for (std::size_t more = 1; more < output.numbers.size(); ++more) numbers += ",1";
      const std::string value = output.form == Form::record       ? "{12=1}"
                                : output.form == Form::records    ? "[{12=1}]"
                                : output.form == Form::favourites ? "{1=1}"
                                                                  : numbers;
      EXPECT_EQ(!takenBy(output).empty(), accepted(operation, "out." + std::string(output.name) + "=" + value))
          << operation.name << " " << output.name;
    }
  }
}

}  // namespace
}  // namespace virtualtv::shell
