// SPDX-License-Identifier: MIT
#include "Page.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace catalogue {

namespace {

using Json::Value;

std::string code(const std::string& text) {
  return "`" + text + "`";
}

/// A link to the section whose heading is the name followed by `rest`.
std::string linkTo(const std::string& name, const std::string& rest = "") {
  std::string anchor = name + rest;
  std::transform(anchor.begin(), anchor.end(), anchor.begin(),
                 [](unsigned char letter) { return letter == ' ' ? '-' : static_cast<char>(std::tolower(letter)); });
  return "[" + code(name) + "](#" + anchor + ")" + rest;
}

/// A text for a cell of a table.
std::string cell(std::string text) {
  for (std::size_t at = 0; (at = text.find('|', at)) != std::string::npos; at += 2) text.insert(at, 1, '\\');
  return text;
}

std::string invocation(const Value& command) {
  std::string text = command["name"].asString();
  for (const Value& parameter : command["parameters"]) text += " " + parameter["name"].asString();
  return text;
}

/// The values of a parameter or an answer; empty when there is nothing to say about them.
std::string holds(const Value& part) {
  return part.isMember("type") ? linkTo(part["type"].asString()) : part["values"].asString();
}

/// @param form  written after the commands' names.
void writeRows(std::ostream& out, const Value& commands, const char* form) {
  for (const Value& command : commands) {
    out << "| " << linkTo(command["name"].asString(), form) << " |";
    for (const Value& parameter : command["parameters"]) out << " " << code(parameter["name"].asString());
    out << " | " << code(command["answer"]["reply"].asString()) << " | " << cell(command["help"].asString()) << " |\n";
  }
}

void writeIndex(std::ostream& out, const Value& catalogue) {
  out << "\n| Command | Parameters | Answer | |\n|---|---|---|---|\n";
  writeRows(out, catalogue["commands"], "");
  writeRows(out, catalogue["listCommands"], withList);
}

void writeParameters(std::ostream& out, const Value& parameters) {
  if (parameters.empty()) return;
  out << "\n| Parameter | Values | Parsed as | No number | |\n|---|---|---|---|---|\n";
  for (const Value& parameter : parameters) {
    out << "| " << code(parameter["name"].asString()) << " | " << cell(holds(parameter)) << " | "
        << code(parameter["parse"].asString()) << " | " << cell(parameter["unparsed"].asString()) << " | "
        << cell(parameter["help"].asString()) << " |\n";
  }
}

void writeAnswer(std::ostream& out, const Value& command) {
  const Value& answer = command["answer"];
  out << "\nAnswers " << code(answer["reply"].asString()) << " (" << code(answer["kind"].asString())
      << "): " << answer["help"].asString() << "\n";
  const std::string held = holds(answer);
  if (!held.empty() || answer.isMember("preset") || !command["failures"].empty()) out << "\n";
  if (!held.empty()) out << "- Values: " << held << "\n";
  if (answer.isMember("preset")) {
    out << "- Preset " << code(answer["preset"].asString()) << ": " << answer["presetMeans"].asString() << "\n";
  }
  for (const Value& failure : command["failures"]) {
    out << "- Fails with " << code("int " + failure["code"].asString()) << ": " << failure["means"].asString() << "\n";
  }
}

void writeCommand(std::ostream& out, const Value& command, const char* form, const Examples& examples) {
  out << "\n### " << command["name"].asString() << form << "\n\n"
      << code(invocation(command)) << "\n\n"
      << command["help"].asString() << "\n";
  writeParameters(out, command["parameters"]);
  writeAnswer(out, command);
  out << "\n```\n" << examples.at(command["name"].asString() + form) << "```\n";
}

void writeTexts(std::ostream& out, const Value& texts) {
  out << "\n";
  for (const std::string& name : texts.getMemberNames()) {
    out << "- " << code(name) << ": " << texts[name].asString() << "\n";
  }
}

void writeType(std::ostream& out, const std::string& name, const Value& type) {
  out << "\n### " << name << "\n\n" << type["help"].asString() << "\n\n";
  out << (type.isMember("members") ? "| Member | |" : "| Number | |") << "\n|---|---|\n";
  for (const std::string& member : type["members"].getMemberNames()) {
    out << "| " << code(member) << " | " << cell(type["members"][member].asString()) << " |\n";
  }
  for (const Value& value : type["values"]) {
    out << "| " << value["value"].asString();
    if (value.isMember("to")) out << " to " << value["to"].asString();
    out << " | " << cell(value["means"].asString()) << " |\n";
  }
}

}  // namespace

std::string document(const Json::Value& catalogue) {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "  ";
  builder["emitUTF8"] = true;
  // The writer leaves trailing blanks after the name of a member whose value starts on the next line.
  std::istringstream written(Json::writeString(builder, catalogue));
  std::string text;
  for (std::string line; std::getline(written, line);) {
    text += line.erase(line.find_last_not_of(' ') + 1) + "\n";
  }
  return text;
}

std::string page(const Json::Value& catalogue, const Examples& examples) {
  std::ostringstream out;
  out << "<!-- Written by tools/catalogue from the command table, commands.help.json and examples.txt. -->\n\n# "
         "Commands\n";
  for (const Value& paragraph : catalogue["introduction"]) out << "\n" << paragraph.asString() << "\n";
  writeIndex(out, catalogue);

  out << "\n## How parameters are read\n";
  writeTexts(out, catalogue["parsing"]);
  out << "\n## How commands answer\n";
  writeTexts(out, catalogue["answers"]);
  out << "\n## The commands\n\n"
         "Each has an example: a session of the shell on a fresh set, which a test replays.\n";
  for (const Value& command : catalogue["commands"]) writeCommand(out, command, "", examples);
  for (const Value& command : catalogue["listCommands"]) writeCommand(out, command, withList, examples);
  out << "\n## Numbers and documents\n";
  for (const std::string& name : catalogue["types"].getMemberNames()) writeType(out, name, catalogue["types"][name]);
  return out.str();
}

}  // namespace catalogue
