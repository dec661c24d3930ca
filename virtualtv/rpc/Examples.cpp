#include "rpc/Examples.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "framework/Reply.h"
#include "json/Read.h"
#include "rpc/ReplyJson.h"
#include "shell/Transcript.h"
#include "text/Units.h"

namespace virtualtv::embedded {
extern const std::string_view examples;
}

namespace virtualtv::rpc {

namespace {

using Examples = std::map<std::string, Example>;

/// The text of a block `ascii |`: a backslash ends one that has no line break at its end.
std::string blockIn(const shell::Lines& lines) {
  std::string text;
  for (std::size_t at = 1; at < lines.size(); ++at) text += lines[at].substr(lines[at] == "|" ? 1 : 2) + "\n";
  if (text.ends_with("\\\n")) text.resize(text.size() - 2);
  return text;
}

/// A reply as the engine encodes it. @param lines  as a transcript shows it.
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

/// Each command's first step, after those since the last reset of the set.
Examples readExamples() {
  Examples examples;
  std::vector<std::string> before;
  for (const shell::Step& step : shell::readTranscript("examples.txt", embedded::examples).steps) {
    const std::string line = step.input.substr(step.input.find_first_not_of("> "));
    std::vector<std::string> words = shell::splitWords(line);
    if (words.front() == ".reset") {
      before.clear();
      continue;
    }
    if (!line.starts_with('.')) {
      const std::string command = words.front();
      words.erase(words.begin());
      examples.try_emplace(command, Example{before, std::move(words), resultOf(true, encodedIn(step.output))});
    }
    before.push_back(line);
  }
  return examples;
}

}  // namespace

const Example* exampleOf(const std::string& command) {
  static const Examples examples = readExamples();
  const auto found = examples.find(command);
  return found == examples.end() ? nullptr : &found->second;
}

}  // namespace virtualtv::rpc
