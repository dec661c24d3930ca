// SPDX-License-Identifier: MIT
// The catalogue of commands as the set reads it.
#include "catalogue/Catalogue.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <stdexcept>

namespace {

using virtualtv::Catalogue;
using virtualtv::CatalogueCommand;

constexpr const char* small = R"({
  "answers": {"value": "A number."},
  "parsing": {"num": "A whole number."},
  "types": {
    "input": {"help": "An input.", "values": [{"value": 0, "means": "TV."}, {"value": 5, "to": 7, "means": "HDMI."}]},
    "report": {"help": "A document.", "members": {"name": "Text."}}
  },
  "commands": [
    {"name": "GetInput", "help": "Tells the input.",
     "parameters": [{"name": "which", "help": "Which one.", "parse": "num", "required": false, "preset": 2,
                     "unparsed": "reads as 2", "values": "1 to 4"}],
     "answer": {"kind": "value", "reply": "int", "help": "The input.", "type": "input", "preset": 100,
                "presetMeans": "Unknown."},
     "failures": [{"code": -1, "means": "It can't be told."}]},
    {"name": "Report", "help": "Reports.", "parameters": [], "failures": [],
     "answer": {"kind": "value", "reply": "ascii", "help": "The report.", "type": "report"}}
  ],
  "listCommands": [
    {"name": "Report", "help": "Reports what a list names.", "parameters": [], "failures": [],
     "answer": {"kind": "value", "reply": "ascii", "help": "The report.", "type": "report"}}
  ]
})";

TEST(Catalogue, TellsOfACommandWhatTheDocumentSays) {
  const Catalogue catalogue(small);
  ASSERT_EQ(catalogue.commands().size(), 2U);
  const CatalogueCommand& command = catalogue.commands().front();
  EXPECT_EQ(command.name, "GetInput");
  EXPECT_EQ(command.help, "Tells the input.");
  ASSERT_EQ(command.parameters.size(), 1U);
  EXPECT_EQ(command.parameters[0].name, "which");
  EXPECT_EQ(command.parameters[0].help, "Which one.");
  EXPECT_EQ(command.parameters[0].parse, "num");
  EXPECT_EQ(command.parameters[0].unparsed, "reads as 2");
  EXPECT_EQ(command.parameters[0].values, "1 to 4");
  EXPECT_EQ(command.parameters[0].type, "");
  EXPECT_FALSE(command.parameters[0].required);
  EXPECT_EQ(command.answerKind, "value");
  EXPECT_EQ(command.reply, "int");
  EXPECT_EQ(command.answerHelp, "The input.");
  EXPECT_EQ(command.answerType, "input");
  EXPECT_EQ(command.preset, 100);
  EXPECT_EQ(command.presetMeans, "Unknown.");
  ASSERT_EQ(command.failures.size(), 1U);
  EXPECT_EQ(command.failures[0].code, -1);
  EXPECT_EQ(command.failures[0].means, "It can't be told.");
}

TEST(Catalogue, AnAnswerWithoutAPresetHasNone) {
  EXPECT_EQ(Catalogue(small).commands()[1].preset, std::nullopt);
}

TEST(Catalogue, TellsOfATypeItsNumbersOrItsMembers) {
  const Catalogue catalogue(small);
  const auto* const input = catalogue.findType("input");
  ASSERT_NE(input, nullptr);
  ASSERT_EQ(input->values.size(), 2U);
  EXPECT_EQ(input->values[0].from, 0);
  EXPECT_EQ(input->values[0].to, 0) << "one number is a row of one";
  EXPECT_EQ(input->values[1].from, 5);
  EXPECT_EQ(input->values[1].to, 7);
  EXPECT_EQ(input->values[1].means, "HDMI.");
  const auto* const report = catalogue.findType("report");
  ASSERT_NE(report, nullptr);
  EXPECT_EQ(report->members, (std::map<std::string, std::string>{{"name", "Text."}}));
  EXPECT_EQ(catalogue.findType("output"), nullptr);
}

TEST(Catalogue, FindsACommandByItsExactName) {
  const Catalogue catalogue(small);
  EXPECT_EQ(catalogue.find("Report"), &catalogue.commands()[1]);
  for (const char* name : {"", "report", "Repor", "Reports"}) EXPECT_EQ(catalogue.find(name), nullptr) << name;
}

TEST(Catalogue, CommandsThatTakeAListStandApart) {
  const Catalogue catalogue(small);
  ASSERT_EQ(catalogue.listCommands().size(), 1U);
  EXPECT_EQ(catalogue.findList("Report"), &catalogue.listCommands()[0]);
  EXPECT_EQ(catalogue.findList("Report")->help, "Reports what a list names.");
  EXPECT_EQ(catalogue.find("Report")->help, "Reports.");
  EXPECT_EQ(catalogue.findList("GetInput"), nullptr);
}

/// The error for a document; empty when the document is accepted.
std::string refusal(const std::string& document) {
  try {
    const Catalogue catalogue(document);
    return "";
  } catch (const std::invalid_argument& refusal) {
    return refusal.what();
  }
}

TEST(Catalogue, RefusesWhatIsNoCatalogue) {
  EXPECT_EQ(refusal(small), "");
  for (const char* document : {"", "{", "[]", "null", "7", "{}", R"({"commands": 7})"}) {
    EXPECT_EQ(refusal(document).rfind("catalogue of commands: ", 0), 0U) << document;
  }
}

TEST(Catalogue, RefusesACommandThatLacksSomething) {
  for (const std::string name :
       {"name", "help", "parameters", "answer", "failures", "parse", "kind", "code", "means", "listCommands"}) {
    const std::string document = std::regex_replace(std::string(small), std::regex("\"" + name + "\":"), "\"other\":");
    EXPECT_EQ(refusal(document), "catalogue of commands: '" + name + "' is missing");
  }
}

TEST(BuiltInCatalogue, KnowsTheCommandsOfThePlugIn) {
  const Catalogue& catalogue = virtualtv::catalogue();
  ASSERT_FALSE(catalogue.commands().empty());
  EXPECT_EQ(catalogue.commands().front().name, "SetWindow");
  ASSERT_NE(catalogue.find("FindChannel"), nullptr);
  EXPECT_EQ(catalogue.find("FindChannel")->parameters.size(), 2U);
  EXPECT_EQ(catalogue.find("FindChannel")->reply, "int");
  EXPECT_EQ(catalogue.find("NoSuchCommand"), nullptr);
}

/// The built-in commands, with their parameter-list forms.
std::vector<CatalogueCommand> allForms() {
  const Catalogue& catalogue = virtualtv::catalogue();
  std::vector<CatalogueCommand> all = catalogue.commands();
  all.insert(all.end(), catalogue.listCommands().begin(), catalogue.listCommands().end());
  return all;
}

TEST(BuiltInCatalogue, ExplainsEveryWordThatItUses) {
  const Catalogue& catalogue = virtualtv::catalogue();
  const auto explained = [&](const std::string& type) { return type.empty() || catalogue.findType(type) != nullptr; };
  for (const CatalogueCommand& command : allForms()) {
    EXPECT_TRUE(explained(command.answerType)) << command.name;
    EXPECT_TRUE(catalogue.answers().contains(command.answerKind)) << command.name;
    for (const auto& parameter : command.parameters) {
      EXPECT_TRUE(explained(parameter.type)) << command.name << " " << parameter.name;
      EXPECT_TRUE(catalogue.parsing().contains(parameter.parse)) << command.name << " " << parameter.name;
    }
  }
}

TEST(BuiltInCatalogue, NamesParametersByOneWordEach) {
  const std::regex word("[a-z][A-Za-z]*");
  for (const CatalogueCommand& command : allForms()) {
    std::set<std::string> names;
    for (const auto& parameter : command.parameters) {
      EXPECT_TRUE(std::regex_match(parameter.name, word)) << command.name << " " << parameter.name;
      EXPECT_TRUE(names.insert(parameter.name).second) << command.name << " has two parameters " << parameter.name;
    }
  }
}

}  // namespace
