// SPDX-License-Identifier: MIT
#include "shell/Hint.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <utility>

#include "catalogue/Catalogue.h"
#include "device/Session.h"
#include "shell/Completion.h"
#include "shell/DotCommands.h"
#include "shell/Help.h"
#include "shell/Nearest.h"

namespace virtualtv::shell {

namespace {

/// Commands of other shells, with their equivalents here.
constexpr std::array<std::pair<std::string_view, std::string_view>, 8> otherNames{{
    {"exit", ".quit"},
    {"bye", ".quit"},
    {"logout", ".quit"},
    {"q", ".quit"},
    {"?", ".help"},
    {"h", ".help"},
    {"man", ".help"},
    {"usage", ".help"},
}};

/// The parts of a typed line.
struct Typed {
  bool list = false;  ///< it has a `+`
  std::string first;  ///< the first word, as it was typed
  std::string name;   ///< name of the command, as far as it can be told from the form of the call
  std::string rest;   ///< the parameters
};

std::string_view trimmed(std::string_view text, std::string_view dropped = blanks) {
  const std::size_t start = text.find_first_not_of(dropped);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(dropped) - start + 1);
}

/// Removes and returns the first word of a text; also removes the blanks after it.
std::string_view takeWord(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_of(blanks), text.size());
  const std::string_view word = text.substr(0, end);
  text = trimmed(text.substr(end));
  return word;
}

/// The arguments of a call in a program, as words of the shell.
Lines argumentsOf(std::string_view text) {
  Lines words;
  char quote = '\0';
  std::size_t start = 0;
  for (std::size_t at = 0; at <= text.size(); ++at) {
    const bool end = at == text.size();
    if (!end && quote != '\0') {
      if (text[at] == quote) quote = '\0';
    } else if (end || text[at] == ',') {
      words.emplace_back(trimmed(text.substr(start, at - start)));
      start = at + 1;
    } else if (text[at] == '\'' || text[at] == '"') {
      quote = text[at];
    }
  }
  if (words.size() == 1 && words[0].empty()) words.clear();
  return words;
}

/// Removes the quotes of a word when it means the same without them.
std::string unquoted(const std::string& word) {
  const bool isQuoted = word.size() > 2 && (word.front() == '\'' || word.front() == '"') && word.back() == word.front();
  const std::string inner = isQuoted ? word.substr(1, word.size() - 2) : "";
  constexpr std::string_view special = " \t\\'\"";
  return isQuoted && inner.find_first_of(special) == std::string::npos ? inner : word;
}

/// Reads a call in the syntax of a program, as in `tv.SetChannel(3, 0)` or `tv.Execute("SetChannel", 3, 0)`.
/// @return false when the text is not such a call.
bool readCall(std::string_view text, Typed& typed) {
  const std::size_t bracket = text.find('(');
  if (bracket == std::string_view::npos || !text.ends_with(')')) return false;
  const std::string_view function = trimmed(text.substr(0, bracket));
  typed.name = function.substr(function.find_last_of(". \t") + 1);
  Lines arguments = argumentsOf(text.substr(bracket + 1, text.size() - bracket - 2));
  std::transform(arguments.begin(), arguments.end(), arguments.begin(), unquoted);
  const bool passesList = typed.name == "ExecuteWithParamList";
  if ((passesList || typed.name == "Execute") && !arguments.empty()) {
    typed.list = typed.list || passesList;
    typed.name = arguments.front();
    arguments.erase(arguments.begin());
  }
  for (const std::string& argument : arguments) typed.rest += (typed.rest.empty() ? "" : " ") + argument;
  return true;
}

/// Removes the leading words of a command line that starts the program to run a command.
std::string_view withoutProgram(std::string_view text) {
  std::string_view rest = text;
  std::string_view word = takeWord(rest);
  if (word.ends_with("emp-window") || word.ends_with("./run")) {
    text = rest;
    word = takeWord(rest);
  }
  return word == "exec" && !rest.empty() ? rest : text;
}

Typed readLine(std::string_view line) {
  Typed typed;
  line.remove_prefix(std::min(line.find_first_not_of("$> \t"), line.size()));
  typed.list = line.starts_with('+');
  if (typed.list) line.remove_prefix(1);
  line = trimmed(line);
  typed.first = line.substr(0, line.find_first_of(blanks));
  line = withoutProgram(line);
  line = line.substr(0, line.find_last_not_of("; \t") + 1);
  if (readCall(line, typed)) return typed;
  typed.name = takeWord(line);
  if (typed.name == ".") typed.name += takeWord(line);
  typed.rest = line;
  return typed;
}

/// All words that may start a line, and the words that people type instead.
Lines firstWordsAndOthers() {
  Lines names = firstWords();
  for (const auto& [other, name] : otherNames) names.emplace_back(other);
  return names;
}

bool isCommand(const std::string& name) {
  return catalogue().find(name) != nullptr ||
         std::any_of(dotCommands().begin(), dotCommands().end(),
                     [&](const DotCommand& command) { return command.name == name; });
}

bool isLetters(std::string_view word) {
  return std::all_of(word.begin(), word.end(), [](unsigned char byte) { return std::isalpha(byte) != 0; });
}

/// Joins as many words as possible to the name of a plug-in command, as in `Get Source 2`.
void joinWords(Typed& typed) {
  if (!isLetters(typed.name)) return;
  std::string joined = typed.name;
  const std::string parameters = typed.rest;
  std::string_view rest = parameters;
  while (!rest.empty()) {
    const std::string_view word = takeWord(rest);
    if (!isLetters(word)) return;
    joined += word;
    if (alike(joined, commandNames()).empty()) continue;
    typed.name = joined;
    typed.rest = rest;
  }
}

/// The commands that were most likely meant.
Lines meant(const std::string& name) {
  if (isCommand(name)) return {name};
  Lines names = nearest(name, firstWordsAndOthers());
  for (std::string& near : names) {
    const auto same =
        std::find_if(otherNames.begin(), otherNames.end(), [&](const auto& other) { return other.first == near; });
    if (same != otherNames.end()) near = same->second;
  }
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

std::string hint(const Lines& lines) {
  if (lines.empty()) return {};
  std::string text = lines.size() == 1 ? "# did you mean:" : "# did you mean one of:";
  for (const std::string& line : lines) text += " " + oneLine(line);
  return text;
}

std::size_t countOfParameters(const Typed& typed) {
  try {
    return splitWords(typed.rest).size();
  } catch (const std::invalid_argument&) {
    return 0;  // a quote is open, so the line does not run
  }
}

bool hasTooMany(const Typed& typed) {
  return countOfParameters(typed) > device::mostParameters;
}

/// The typed line with the name replaced by that of a command, and with a `+` if the command takes a list. Drops the
/// parameters when there are too many for the command.
std::string lineWith(const std::string& name, const Typed& typed) {
  const bool isDotCommand = name.starts_with('.');
  const bool isList = (typed.list || hasTooMany(typed)) && catalogue().findList(name) != nullptr;
  const bool isTakingThem = isDotCommand ? name != ".quit" : isList || !hasTooMany(typed);
  return (isList ? "+ " : "") + name + (isTakingThem && !typed.rest.empty() ? " " + typed.rest : "");
}

/// The help topics that were most likely meant. A plural topic is more helpful than a command of the same name.
Lines topicsMeant(std::string_view word) {
  Lines topics = alike(std::string(word) + "s", helpTopics());
  return topics.empty() ? nearest(word, helpTopics()) : topics;
}

/// The knobs or operations that were most likely meant; none when the name exists.
Lines namesMeant(Session& session, const std::string& command, const std::string& word) try {
  const Lines known = wordsBehind(session, {command == ".set" ? ".get" : command}, word);
  if (std::find(known.begin(), known.end(), word) != known.end()) return {};
  Lines offered = wordsBehind(session, {command}, word);
  std::erase_if(offered, [](const std::string& name) { return name.ends_with('#'); });  // not a whole name
  return nearest(word, offered);
} catch (const std::exception&) {
  return {};  // the set can't be read; the line has already said so
}

/// The hint for a dot command with an unknown name.
std::string hintOnName(Session& session, const Typed& typed) {
  std::string_view rest = typed.rest;
  const std::string word(takeWord(rest));
  Lines names = typed.name == ".help" ? topicsMeant(typed.rest) : namesMeant(session, typed.name, word);
  if (names.size() != 1) return hint(names);
  const std::string more = typed.name == ".help" || rest.empty() ? "" : " " + std::string(rest);
  return hint({typed.name + " " + names[0] + more});
}

/// The hint for an existing command with wrong parameters.
std::string hintOnUse(Session& session, const Typed& typed) {
  constexpr std::array named{".fault", ".get", ".help", ".set"};
  if (std::find(named.begin(), named.end(), typed.name) != named.end()) return hintOnName(session, typed);
  // Few commands take a parameter list. Without a list form, the command may take the parameters directly.
  const bool takesList = catalogue().findList(typed.name) != nullptr;
  const bool isWrongForm = takesList ? !typed.list && hasTooMany(typed) : typed.list;
  return isWrongForm ? hint({lineWith(typed.name, typed)}) : "";
}

}  // namespace

std::string hintOn(Session& session, std::string_view line, const Lines& printed) {
  Typed typed = readLine(line);
  const bool refused = !printed.empty() && printed.front().starts_with("refused");
  const bool failed = !printed.empty() && printed.front().starts_with("error: ");
  if (!refused && !(failed && (typed.first.starts_with('.') || hasTooMany(typed)))) return {};
  if (typed.first == typed.name && isCommand(typed.name)) return hintOnUse(session, typed);
  joinWords(typed);
  const Lines names = meant(typed.name);
  if (names.empty() && refused) {
    return "# no command has this name: '.help commands' lists those of the plug-in, Tab completes";
  }
  return hint(names.size() == 1 ? Lines{lineWith(names[0], typed)} : names);
}

}  // namespace virtualtv::shell
