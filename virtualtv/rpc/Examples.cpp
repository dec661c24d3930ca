// SPDX-License-Identifier: MIT
#include "rpc/Examples.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "framework/Reply.h"
#include "json/Read.h"
#include "rpc/ReplyJson.h"
#include "shell/Transcript.h"
#include "text/Units.h"

namespace virtualtv::embedded {
extern const std::string_view examples;
extern const std::string_view methodExamples;
}  // namespace virtualtv::embedded

namespace virtualtv::rpc {

namespace {

using Examples = std::map<std::string, Example>;

/// The text of a block `ascii |`. A backslash at its end means that there is no final line break.
std::string blockIn(const shell::Lines& lines) {
  std::string text;
  for (std::size_t at = 1; at < lines.size(); ++at) text += lines[at].substr(lines[at] == "|" ? 1 : 2) + "\n";
  if (text.ends_with("\\\n")) text.resize(text.size() - 2);
  return text;
}

/// Encodes a reply as the engine does. @param lines  the reply as a transcript shows it.
std::string encodedIn(const shell::Lines& lines) {
  const std::string_view line = lines.empty() ? std::string_view() : lines.front();
  const std::string_view kind = line.substr(0, line.find(' '));
  const std::string value(line.substr(std::min(kind.size() + 1, line.size())));
  std::string encoded;
  if (kind == "int") {
    framework::encodeInteger(encoded, std::stoi(value));
  } else if (kind == "ascii") {
    framework::encodeAscii(encoded, value == "|" ? blockIn(lines) : value);
  } else if (kind == "unicode") {
    framework::encodeUnicode(encoded, text::toUnits(json::read(value).asString()));
  } else {
    throw std::logic_error("an example without a reply: " + std::string(line));
  }
  return encoded;
}

/// The JSON of a parameter: a number if JSON readers accept it as one, else a string.
Json::Value exampleValue(const std::string& word) {
  constexpr std::int64_t greatestWhole = 9007199254740991;  // 2^53 - 1
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  const bool isNumber = error == std::errc() && std::to_string(number) == word;
  if (isNumber && number <= greatestWhole && number >= -greatestWhole) return Json::Int64{number};
  return word;
}

/// Reads the example of a command from a scene: its command, and the lines before it. Commands with a parameter list
/// are skipped, as they have no method of their own.
void readCommand(Examples& examples, const shell::Scene& scene) {
  std::vector<std::string> before;
  for (const shell::Step& step : scene.steps) {
    const std::string line = step.input.substr(step.input.find_first_not_of("> "));
    const std::vector<std::string> words = shell::splitWords(line);
    if (words.front() == scene.name) {
      Example& example = examples["window." + scene.name];
      example = {before, Json::arrayValue, resultOf(true, encodedIn(step.output))};
      for (std::size_t at = 1; at < words.size(); ++at) example.parameters.append(exampleValue(words[at]));
      return;
    }
    before.push_back(line);
  }
}

void readCommands(Examples& examples) {
  const shell::Transcript transcript = shell::readTranscript("examples.txt", embedded::examples);
  for (const shell::Scene& scene : shell::scenesIn(transcript)) readCommand(examples, scene);
}

/// Reads the examples of methods: the first call of each, with the calls before it since the start of the server.
void readMethods(Examples& examples) {
  std::vector<std::string> before;
  for (const ExampleCall& call : exampleCalls()) {
    if (call.isFirst()) before.clear();
    examples.try_emplace(call.method, Example{before, call.parameters, call.result});
    if (!call.isFirst()) before.push_back(call.line);
  }
}

}  // namespace

std::vector<ExampleCall> exampleCalls() {
  std::vector<ExampleCall> calls;
  for (const shell::Step& step : shell::readTranscript("examples.methods.txt", embedded::methodExamples).steps) {
    ExampleCall& call = calls.emplace_back();
    call.line = step.input.substr(step.input.find_first_not_of("> "));
    const std::size_t end = std::min(call.line.find(' '), call.line.size());
    call.method = call.line.substr(0, end);
    call.parameters = end < call.line.size() ? json::read(call.line.substr(end)) : Json::objectValue;
    std::string result;
    for (const std::string& line : step.output) result += line + "\n";
    if (!result.empty()) call.result = json::read(result);
  }
  return calls;
}

const Example* exampleOf(const std::string& method) {
  static const Examples examples = [] {
    Examples all;
    readCommands(all);
    readMethods(all);
    return all;
  }();
  const auto found = examples.find(method);
  return found == examples.end() ? nullptr : &found->second;
}

}  // namespace virtualtv::rpc
