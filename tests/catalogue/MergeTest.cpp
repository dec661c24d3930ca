// SPDX-License-Identifier: MIT
// The catalogue is made from the rows and the help texts, which must fit together.
#include "Merge.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

namespace {

using catalogue::Form;
using catalogue::Help;
using catalogue::Problems;
using kel::Command;
using kel::Parse;

constexpr const char* texts = R"({
"introduction": ["Commands."],
"parsing": {"dec": "Digits.", "num": "A number."},
"answers": {"code": "A code.", "value": "A number.", "textOrNone": "A document."},
"parameters": {"index": {"name": "index", "values": "0 or more", "help": "The position."}},
"types": {
"input": {"help": "An input.", "values": [{"value": 0, "means": "TV."}, {"value": 5, "to": 7, "means": "HDMI."}]},
"list": {"help": "A list.", "members": {"name": "Text."}}
},
"commands": {
"SetInput": {
"help": "Sets the input.",
"parameters": [{"name": "input", "type": "input", "help": "The input."}],
"answer": {"kind": "code", "help": "1 when set.", "values": "1"},
"failures": {"-1": "No number.", "0": "Not set."}
},
"GetInput": {
"help": "Tells the input.",
"parameters": ["index", {"name": "seek", "values": "any", "help": "Which.", "unparsed": "reads as something else"}],
"answer": {"kind": "value", "help": "The input.", "type": "input", "presetMeans": "Unknown."},
"failures": {"-1": "Not told."}
},
"List": {"help": "Lists.", "answer": {"kind": "textOrNone", "help": "The list.", "type": "list"}, "failures": {"-1": "None."}}
},
"listCommands": {
"SetInput": {
"help": "Sets the input, long.",
"parameters": [{"name": "input", "type": "input", "help": "It."}, {"name": "spare", "values": "any", "help": "Not used."}],
"answer": {"kind": "code", "help": "1 when set.", "values": "1"},
"failures": {"0": "Not set."}
}
}
})";

const std::vector<Command> rows{
    {"SetInput", {{{Parse::num, -1, true}}}, nullptr},
    {"GetInput", {{{Parse::dec, 0, false}, {Parse::num, 3, false}}}, nullptr, 100},
    {"List", {}, nullptr},
};

const std::vector<Form> lists{
    {"SetInput", {{Parse::num, 0, true}, {Parse::num, 4, false}}, 0, std::nullopt},
};

struct Outcome {
  Json::Value catalogue;
  Problems problems;
};

Outcome merged(const std::string& text, const std::vector<Command>& table = rows,
               const std::vector<Form>& forms = lists) {
  Outcome outcome;
  const Help help("help.json", text, outcome.problems);
  if (outcome.problems.empty()) outcome.catalogue = merge(table, forms, help);
  return outcome;
}

/// The help texts with the first match of `what` replaced.
std::string with(const std::string& what, const std::string& by) {
  std::string changed =
      std::regex_replace(std::string(texts), std::regex(what), by, std::regex_constants::format_first_only);
  EXPECT_NE(changed, texts) << what;
  return changed;
}

TEST(Merge, PutsTheCommandsInTheOrderOfTheTable) {
  const Outcome outcome = merged(texts);
  EXPECT_EQ(outcome.problems, Problems{});
  ASSERT_EQ(outcome.catalogue["commands"].size(), 3U);
  EXPECT_EQ(outcome.catalogue["commands"][0]["name"], "SetInput");
  EXPECT_EQ(outcome.catalogue["commands"][1]["name"], "GetInput");
  EXPECT_EQ(outcome.catalogue["commands"][2]["name"], "List");
}

TEST(Merge, AParameterHasItsHelpAndWhatItsRowStates) {
  const Json::Value set = merged(texts).catalogue["commands"][0]["parameters"][0];
  EXPECT_EQ(set["name"], "input");
  EXPECT_EQ(set["type"], "input");
  EXPECT_EQ(set["help"], "The input.");
  EXPECT_EQ(set["parse"], "num");
  EXPECT_EQ(set["required"], true);
  EXPECT_EQ(set["unparsed"], "answers -1 and does nothing");
  EXPECT_FALSE(set.isMember("preset")) << "a text that does not parse is never read as it";
}

TEST(Merge, AParameterThatIsNotRequiredReadsAsItsPreset) {
  const std::string plain = with(R"(, "unparsed": "[a-z ]+")", "");
  const Json::Value parameters = merged(plain).catalogue["commands"][1]["parameters"];
  EXPECT_EQ(parameters[0]["parse"], "dec");
  EXPECT_EQ(parameters[0]["unparsed"], "reads as 0");
  EXPECT_EQ(parameters[1]["unparsed"], "reads as 3");
  EXPECT_EQ(parameters[1]["preset"], 3);
  EXPECT_EQ(parameters[1]["required"], false);
}

TEST(Merge, TheHelpCanSayWhatARowDoesWithATextThatDoesNotParse) {
  const Json::Value parameter = merged(texts).catalogue["commands"][1]["parameters"][1];
  EXPECT_EQ(parameter["unparsed"], "reads as something else");
  EXPECT_FALSE(parameter.isMember("preset"));
}

TEST(Merge, AParameterThatSeveralCommandsShareIsTheirsByName) {
  const Outcome outcome = merged(texts);
  EXPECT_EQ(outcome.catalogue["commands"][1]["parameters"][0]["help"], "The position.");
  EXPECT_FALSE(outcome.catalogue.isMember("parameters"));
}

TEST(Merge, AnAnswerHasItsHelpAndTheReplyOfItsKindAndThePresetOfItsRow) {
  const Json::Value commands = merged(texts).catalogue["commands"];
  EXPECT_EQ(commands[0]["answer"]["kind"], "code");
  EXPECT_EQ(commands[0]["answer"]["reply"], "int");
  EXPECT_FALSE(commands[0]["answer"].isMember("preset"));
  EXPECT_EQ(commands[1]["answer"]["kind"], "value");
  EXPECT_EQ(commands[1]["answer"]["preset"], 100);
  EXPECT_EQ(commands[1]["answer"]["presetMeans"], "Unknown.");
  EXPECT_EQ(commands[2]["answer"]["reply"], "ascii");
  EXPECT_EQ(commands[0]["failures"][0]["code"], -1);
  EXPECT_EQ(commands[0]["failures"][0]["means"], "No number.");
  EXPECT_EQ(commands[0]["failures"][1]["code"], 0);
}

TEST(Merge, ACommandThatTakesAListStandsApartFromTheCommandsOfTheTable) {
  const Outcome outcome = merged(texts);
  ASSERT_EQ(outcome.catalogue["listCommands"].size(), 1U);
  const Json::Value set = outcome.catalogue["listCommands"][0];
  EXPECT_EQ(set["name"], "SetInput");
  EXPECT_EQ(set["help"], "Sets the input, long.");
  ASSERT_EQ(set["parameters"].size(), 2U);
  EXPECT_EQ(set["parameters"][0]["required"], true);
  EXPECT_EQ(set["parameters"][0]["unparsed"], "gets no answer and does nothing");
  EXPECT_EQ(set["parameters"][1]["unparsed"], "reads as 4");
  EXPECT_EQ(set["parameters"][1]["preset"], 4);
  EXPECT_EQ(set["answer"]["reply"], "int");
  EXPECT_EQ(set["failures"].size(), 1U) << "no code is needed for a parameter that is no number";
  EXPECT_EQ(outcome.catalogue["commands"][0]["help"], "Sets the input.");
}

TEST(Merge, ListCommandsAndTheirHelpTextsMustFitToo) {
  std::vector<Form> longer = lists;
  longer[0].parameters.push_back({Parse::num, 0, false});
  EXPECT_EQ(merged(texts, rows, longer).problems,
            Problems{"help.json:26: 'SetInput' with a parameter list has 3 parameters, its help describes 2"});
  EXPECT_EQ(merged(texts, rows, {}).problems,
            Problems{"help.json:26: 'SetInput' with a parameter list has a help text and is no command"});
  std::vector<Form> more = lists;
  more.push_back({"List", {}, 0, std::nullopt});
  EXPECT_EQ(merged(texts, rows, more).problems,
            Problems{"help.json:25: 'List' with a parameter list is a command and has no help text"});
}

TEST(Merge, ACommandWithoutAHelpTextIsReported) {
  std::vector<Command> more = rows;
  more.push_back({"Extra", {}, nullptr});
  EXPECT_EQ(merged(texts, more).problems, Problems{"help.json:10: 'Extra' is a command and has no help text"});
}

TEST(Merge, AHelpTextWithoutACommandIsReported) {
  const Outcome outcome = merged(with("\"commands\": \\{", "\"commands\": {\n\"Gone\": {\"help\": \"Was.\"},"));
  EXPECT_EQ(outcome.problems, Problems{"help.json:11: 'Gone' has a help text and is no command"});
}

TEST(Merge, AnotherNumberOfParametersIsReported) {
  std::vector<Command> changed = rows;
  changed[0].parameters[1] = {Parse::num, 0, false};
  const Problems expected{"help.json:11: 'SetInput' has 2 parameters, its help describes 1"};
  EXPECT_EQ(merged(texts, changed).problems, expected);
}

TEST(Merge, EachThingThatDoesNotFitIsReportedWhereItStands) {
  const struct {
    const char* what;
    const char* by;
    const char* problem;
  } cases[]{
      {"\"kind\": \"code\", ", "", "help.json:14: 'SetInput' answer lacks 'kind'"},
      {"\"code\", \"help\"", "\"number\", \"help\"",
       "help.json:14: 'SetInput' answer is of no kind that there is: 'number'"},
      {"\"Sets the input.\"", "\"\"", "help.json:12: 'SetInput': 'help' is not a text of one line"},
      {"\"Sets the input.\"", "\"Sets\\nit.\"", "help.json:12: 'SetInput': 'help' is not a text of one line"},
      {"\"help\": \"Sets the input.\",", "", "help.json:11: 'SetInput' lacks 'help'"},
      {"\"help\": \"Sets", "\"halp\": \"x\", \"help\": \"Sets",
       "help.json:12: 'SetInput' has 'halp', which means nothing here"},
      {"\"type\": \"input\", \"help\"", "\"help\"", "help.json:13: 'SetInput' parameter 1 lacks 'type' or 'values'"},
      {"\"type\": \"input\", \"help\"", "\"type\": \"input\", \"values\": \"0\", \"help\"",
       "help.json:13: 'SetInput' parameter 1 has both 'type' and 'values'"},
      {"\"type\": \"input\", \"help\"", "\"type\": \"output\", \"help\"",
       "help.json:6: 'SetInput' parameter 1 needs 'output' of 'types', where there is none"},
      {"\\[\"index\"", "[\"place\"",
       "help.json:5: 'GetInput' parameter 1 needs 'place' of 'parameters', where there is none"},
      {"\"dec\": \"Digits.\", ", "",
       "help.json:3: 'GetInput' parameter 1 needs 'dec' of 'parsing', where there is none"},
      {"\"code\": \"A code.\", ", "", "help.json:4: 'SetInput' answer needs 'code' of 'answers', where there is none"},
      {"\"num\": \"A n", "\"u64\": \"x\", \"num\": \"A n", "help.json:3: no command needs 'u64' of 'parsing'"},
      {"\"list\": \\{", "\"spare\": {\"help\": \"x\", \"values\": []}, \"list\": {",
       "help.json:8: no command needs 'spare' of 'types'"},
      {", \"presetMeans\": \"Unknown.\"", "", "help.json:20: 'GetInput' answer lacks 'presetMeans'"},
      {"\"values\": \"1\"", "\"presetMeans\": \"x\"", "help.json:14: 'SetInput' answer has no preset"},
      {"\"-1\": \"Not told.\"", "\"0\": \"x\"", "help.json:21: 'GetInput' can't fail with '0'"},
      {"\"-1\": \"Not told.\"", "\"-1x\": \"x\"", "help.json:21: 'GetInput' can't fail with '-1x'"},
      {"\"-1\": \"None.\"", "\"-2\": \"x\"", "help.json:23: 'List' can't fail with '-2'"},
      {"\"-1\": \"No number.\", ", "",
       "help.json:11: 'SetInput' lacks the failure '-1', for a parameter that is no number"},
      {"\"value\": 5", "\"value\": \"5\"", "help.json:7: type 'input' value: 'value' is not a whole number"},
      {"\"members\": \\{\"name\": \"Text.\"\\}", "\"members\": {\"name\": 7}",
       "help.json:8: type 'list' member 'name' is not a text of one line"},
      {"\"introduction\": \\[\"Commands.\"\\],", "", "help.json:1: the document lacks 'introduction'"},
  };
  for (const auto& one : cases) {
    const Problems problems = merged(with(one.what, one.by)).problems;
    ASSERT_FALSE(problems.empty()) << one.problem;
    EXPECT_EQ(problems.front(), one.problem);
  }
}

TEST(Merge, EverythingThatIsWrongIsReportedAtOnce) {
  EXPECT_EQ(merged(texts, {}).problems, (Problems{"help.json:17: 'GetInput' has a help text and is no command",
                                                  "help.json:23: 'List' has a help text and is no command",
                                                  "help.json:11: 'SetInput' has a help text and is no command"}));
}

TEST(Merge, WhatIsNoJsonIsReported) {
  for (const std::string text : {"", "{", "[]", "7", R"({"a": 1, "a": 2})", "{} {}"}) {
    const Problems problems = merged(text).problems;
    ASSERT_EQ(problems.size(), 1U) << text;
    EXPECT_EQ(problems[0].rfind("help.json: is no JSON object: ", 0), 0U) << problems[0];
  }
}

}  // namespace
