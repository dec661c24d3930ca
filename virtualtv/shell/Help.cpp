// SPDX-License-Identifier: MIT
#include "shell/Help.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "catalogue/Catalogue.h"
#include "set/Knobs.h"
#include "shell/DotCommands.h"
#include "shell/Table.h"

namespace virtualtv::shell {

namespace {

using seam::Form;
using seam::Operation;
using seam::Output;
using seam::Returns;

std::string usageOf(const DotCommand& command) {
  return std::string(command.name) + (command.usage.empty() ? "" : " " + std::string(command.usage));
}

/// Splits rows whose first cell is wider than `widest`, so that they do not widen the column. The rest of such a row
/// goes to the next line.
std::vector<Lines> narrowed(std::vector<Lines> rows, std::size_t widest) {
  std::vector<Lines> narrow;
  for (Lines& row : rows) {
    if (row[0].size() <= widest) {
      narrow.push_back(std::move(row));
    } else {
      narrow.push_back({row[0]});
      narrow.push_back({"", row[1]});
    }
  }
  return narrow;
}

Lines overview(std::size_t columns) {
  std::vector<Lines> rows{{"COMMAND", "WHAT IT DOES"},
                          {"NAME p1 p2 p3 p4", "run a plug-in command; '.help commands' lists them"},
                          {"+ NAME p1 p2 ...", "run a plug-in command with a parameter list"}};
  for (const DotCommand& command : dotCommands()) {
    rows.push_back({usageOf(command), std::string(command.help)});
  }
  constexpr std::size_t widest = 40;
  return table(narrowed(std::move(rows), widest), columns);
}

constexpr const char* withList = "+ ";  // written before a command that takes a parameter list

std::string usageOf(const CatalogueCommand& command) {
  std::string usage = command.name;
  for (const CatalogueCommand::Parameter& parameter : command.parameters) usage += " " + parameter.name;
  return usage;
}

Lines helpOnCommands(std::size_t columns) {
  std::vector<Lines> rows{{"COMMAND", "WHAT IT DOES"}};
  for (const CatalogueCommand& command : catalogue()) rows.push_back({usageOf(command), command.help});
  for (const CatalogueCommand& command : catalogue().listCommands()) {
    rows.push_back({withList + usageOf(command), command.help});
  }
  constexpr std::size_t widest = 50;
  return table(narrowed(std::move(rows), widest), columns);
}

std::string sentence(const std::string& lead, const std::string& text) {
  return text.empty() ? "" : " " + lead + ": " + text + ".";
}

/// Appends the meanings of a type's numbers, or the members of its documents.
void appendValues(std::vector<Lines>& rows, const std::string& typeName) {
  const CatalogueType* type = catalogue().findType(typeName);
  if (type == nullptr) return;
  if (!type->members.empty()) rows.push_back({"", type->help});
  for (const auto& [name, means] : type->members) rows.push_back({"    " + name, means});
  for (const CatalogueType::Value& value : type->values) {
    const std::string to = value.to == value.from ? "" : " to " + std::to_string(value.to);
    rows.push_back({"    " + std::to_string(value.from) + to, value.means});
  }
}

/// @param before  precedes the command's name.
Lines helpOnForm(const std::string& before, const CatalogueCommand& command, std::size_t columns) {
  std::vector<Lines> rows{{before + usageOf(command), command.help}};
  for (const CatalogueCommand::Parameter& parameter : command.parameters) {
    rows.push_back({"  " + parameter.name, parameter.help + sentence("Values", parameter.values) +
                                               sentence("A text that is no number", parameter.unparsed)});
    appendValues(rows, parameter.type);
  }
  const bool told = command.answerHelp.starts_with(command.answerValues);  // as in "1 when it is done"
  rows.push_back(
      {"  answers " + command.reply, command.answerHelp + (told ? "" : sentence("Values", command.answerValues))});
  appendValues(rows, command.answerType);
  if (command.preset) rows.push_back({"  or int " + std::to_string(*command.preset), command.presetMeans});
  for (const CatalogueCommand::Failure& failure : command.failures) {
    rows.push_back({"  or int " + std::to_string(failure.code), failure.means});
  }
  return table(rows, columns);
}

/// Help on a command in all its forms; nothing when there is no such command.
Lines helpOnCommand(const std::string& name, std::size_t columns) {
  Lines help;
  if (const CatalogueCommand* command = catalogue().find(name)) help = helpOnForm("", *command, columns);
  if (const CatalogueCommand* command = catalogue().findList(name)) {
    for (std::string& line : helpOnForm(withList, *command, columns)) help.push_back(std::move(line));
  }
  return help;
}

Lines helpOnKnobs(std::size_t columns) {
  std::vector<Lines> rows{{"KNOB", "VALUE", "WHAT IT IS"}};
  for (const Knob& knob : knobs()) {
    rows.push_back({std::string(knob.name), knob.set == nullptr ? "(read only)" : std::string(knob.value),
                    std::string(knob.help)});
  }
  Lines lines = table(rows, columns);
  lines.emplace_back(
      "  A number is one from -2147483648 to 2147483647; milliseconds and service ids go from 0 to "
      "18446744073709551615.");
  lines.emplace_back(
      "  .get also takes a group of knobs: .get main, .get input.13, .get service.#1 for all of a service");
  return lines;
}

std::string outputsOf(const Operation& operation) {
  std::string text;
  for (const Output& output : operation.written()) {
    if (output.form == Form::interface || output.form == Form::criteria) continue;
    text += (text.empty() ? "out." : ", out.") + std::string(output.name) + "=" + takenBy(output);
  }
  return text;
}

Lines helpOnOperations(std::size_t columns) {
  std::vector<Lines> rows{{"OPERATION", "result=", "OUTPUTS"}};
  for (const Operation& operation : seam::operations) {
    rows.push_back({std::string(operation.name), waysToFail(operation), outputsOf(operation)});
    if (rows.back().back().empty()) rows.back().pop_back();
  }
  return table(rows, columns);
}

/// Wraps each line on its own, as sentences are.
Lines sentences(const Lines& lines, std::size_t columns) {
  constexpr std::size_t indent = 2;
  Lines fitted;
  for (const std::string& line : lines) {
    for (std::string& part : wrapped(std::string(indent, ' ') + line, columns, indent))
      fitted.push_back(std::move(part));
  }
  return fitted;
}

Lines helpOnFaults(std::size_t columns) {
  Lines help{"  .fault OPERATION [nth=N] [times=N|always] [window=W] [engine=NAME] [result=R] [out.NAME=VALUE ...]",
             "  makes calls of an operation fail."};
  const Lines words =
      table({{"  nth=N", "the first call that it hits, counted from now; 1 if left out"},
             {"  times=N", "how many calls it hits; 1 if left out"},
             {"  always", "it hits every call from the nth on"},
             {"  window=W", "only calls for the window main or pip; valid for interfaces that exist once per window"},
             {"  engine=NAME", "only calls of that engine"},
             {"  result=N", "the call answers N; it is carried out if N is a success of the operation, otherwise not"},
             {"  result=TEXT", "the same, if the operation answers a text"},
             {"  result=null", "a null pointer; a factory answers its success, but writes null"},
             {"  result=unwritten", "the call answers its success, but writes no output and does nothing"},
             {"  result=throw", "an exception leaves the call"},
             {"  out.NAME=VALUE", "that output is written; without a result= the call is carried out first"}},
            columns);
  const Lines notes = sentences(
      {"Each word may appear once. If several faults match a call, only the one that was set first acts. The others "
       "count "
       "the call too; a fault that was due hits the next call that no other fault hits.",
       "Values: numbers, the TV service's, as in 7 or 0,1; a record as in {12=281,16=\"News\"}; records as in "
       "[{12=281},null], where null is a null pointer instead of a record; favourite groups as in {1=1,12=0}.",
       "Quote a word that contains quotes: 'out.service={16=\"News\"}'.",
       ".fault lists the faults and their hits, .fault clear removes all faults, .fault clear NUMBER removes one.",
       "'.help operations' lists the operations with their possible results."},
      columns);
  for (const Lines& more : {words, notes}) help.insert(help.end(), more.begin(), more.end());
  return help;
}

struct Topic {
  std::string_view name;
  Lines (*help)(std::size_t columns);
};

constexpr std::array topics{
    Topic{"", overview},         Topic{"commands", helpOnCommands}, Topic{"operations", helpOnOperations},
    Topic{"knobs", helpOnKnobs}, Topic{"faults", helpOnFaults},
};

/// Help that is not wrapped, or already fits.
Lines helpAsWritten(const std::string& name, std::size_t columns) {
  const auto topic = std::find_if(topics.begin(), topics.end(), [&](const Topic& known) { return known.name == name; });
  if (topic != topics.end()) return topic->help(columns);
  if (Lines help = helpOnCommand(name, columns); !help.empty()) return help;
  for (const DotCommand& command : dotCommands()) {
    if (command.name == name) return table({{usageOf(command), std::string(command.help)}}, columns);
  }
  throw std::invalid_argument("there is no help on '" + name +
                              "'; topics are commands, operations, knobs, faults and each command's name");
}

}  // namespace

Lines helpTopics() {
  Lines names;
  for (const Topic& topic : topics) {
    if (!topic.name.empty()) names.emplace_back(topic.name);
  }
  for (std::string& name : commandNames()) names.push_back(std::move(name));
  for (const DotCommand& command : dotCommands()) names.emplace_back(command.name);
  return names;
}

Lines helpOn(const std::string& name, std::size_t columns) {
  constexpr std::size_t indent = 6;
  Lines fitted;
  for (const std::string& line : helpAsWritten(name, columns)) {
    for (std::string& part : wrapped(line, columns, indent)) fitted.push_back(std::move(part));
  }
  return fitted;
}

std::string waysToFail(const Operation& operation) {
  std::string ways;
  const bool interface = !operation.written().empty() && operation.written().front().form == Form::interface;
  if (operation.returnsNumber()) ways += "N, ";
  if (operation.returns == Returns::text) ways += "TEXT, ";
  if (operation.returns == Returns::pointer || operation.returns == Returns::text || interface) ways += "null, ";
  if (!operation.written().empty()) ways += "unwritten, ";
  return ways + "throw";
}

std::string takenBy(const Output& output) {
  switch (output.form) {
    case Form::numbers:
      return output.numbers.size() == 1 ? "NUMBER" : std::to_string(output.numbers.size()) + " NUMBERS";
    case Form::record:
      return "RECORD";
    case Form::records:
      return "RECORDS";
    case Form::favourites:
      return "GROUPS";
    default:
      return {};
  }
}

}  // namespace virtualtv::shell
