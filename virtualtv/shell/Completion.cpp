// SPDX-License-Identifier: MIT
#include "shell/Completion.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <stdexcept>

#include "catalogue/Catalogue.h"
#include "channels/EditList.h"
#include "services/ServiceStore.h"
#include "set/Knobs.h"
#include "shell/DotCommands.h"
#include "shell/Help.h"
#include "shell/ListWishes.h"
#include "shell/Session.h"

namespace virtualtv::shell {

namespace {

Lines operationNames(const std::string& before) {
  Lines names;
  for (const seam::Operation& operation : seam::operations) names.push_back(before + std::string(operation.name));
  return names;
}

/// Services by their keys and, after the full stop, their knobs.
Lines serviceWords(Tv& tv, const std::string& typed) {
  constexpr std::string_view start = "service.";
  if (const std::size_t stop = typed.rfind('.'); stop >= start.size()) {
    try {
      return knobsOf(tv, typed.substr(0, stop));
    } catch (const std::invalid_argument&) {
      return {};  // there is no such service
    }
  }
  Lines names;
  for (const ServiceKey key : tv.services().keys()) names.push_back(std::string(start) + "#" + std::to_string(key));
  return names;
}

/// @param forSet  offers only knobs that can be set.
Lines knobWords(Session& session, const std::string& typed, bool forSet) {
  Tv& tv = session.device().tv();
  if (typed.starts_with("service.")) return serviceWords(tv, typed);
  Lines names = knobNames(tv);
  if (forSet) std::erase_if(names, [](const std::string& name) { return !canBeSet(name); });
  for (std::string& name : operationNames("latency.")) names.push_back(std::move(name));
  names.emplace_back("service.#");
  return names;
}

Lines settingKeys(Session& session) {
  Lines keys;
  for (const auto& [key, value] : session.device().tv().settings().list()) keys.push_back(key);
  return keys;
}

/// The option that a word of a fault sets. Each option may appear once.
std::string optionOf(const std::string& word) {
  return word == "always" ? "times" : word.substr(0, word.find('='));
}

/// The named results that a fault can give an operation. Numbers and texts can't be completed.
Lines resultWords(const seam::Operation& operation) {
  Lines words;
  for (const char* word : {"result=null", "result=unwritten", "result=throw"}) {
    try {
      seam::parseFault({std::string(operation.name), word});
      words.emplace_back(word);
    } catch (const std::invalid_argument&) {
      continue;  // the operation has no such result
    }
  }
  if (operation.returnsNumber() || operation.returns == seam::Returns::text) words.emplace_back("result=");
  return words;
}

/// The open engines once `engine=` is typed; before that the word `engine=`.
Lines engineWords(Session& session, const std::string& typed) {
  constexpr std::string_view start = "engine=";
  if (!typed.starts_with(start)) return {std::string(start)};
  Lines words;
  for (const std::string& name : session.client().openEngines()) words.push_back(std::string(start) + name);
  return words;
}

/// The outputs of an operation and the other words of a fault, except those already on the line.
Lines faultWords(Session& session, const Lines& before, const std::string& typed) {
  const seam::Operation* operation = seam::findOperation(before[1]);
  if (operation == nullptr) return {};
  Lines words{"nth=", "times=", "always"};
  if (operation->isOfWindow()) words.insert(words.end(), {"window=main", "window=pip"});
  for (const seam::Output& output : operation->written()) {
    if (!takenBy(output).empty()) words.push_back("out." + std::string(output.name) + "=");
  }
  for (const Lines& more : {resultWords(*operation), engineWords(session, typed)}) {
    words.insert(words.end(), more.begin(), more.end());
  }
  std::erase_if(words, [&](const std::string& word) {
    return std::any_of(before.begin() + 2, before.end(),
                       [&](const std::string& other) { return optionOf(other) == optionOf(word); });
  });
  return words;
}

Lines numbersOfFaults(Session& session) {
  Lines numbers;
  for (const seam::Fault& fault : session.device().faults()) numbers.push_back(std::to_string(fault.id));
  return numbers;
}

Lines faultArguments(Session& session, const Lines& before, const std::string& typed) {
  if (before.size() == 1) {
    Lines names = operationNames("");
    names.emplace_back("clear");
    return names;
  }
  if (before[1] != "clear") return faultWords(session, before, typed);
  return before.size() == 2 ? numbersOfFaults(session) : Lines();
}

/// Commands to follow a `+`: those that take a parameter list. The plug-in refuses other commands there, so these are
/// offered only when no list command matches.
Lines wordsBehindPlus(const std::string& typed) {
  Lines names = listCommandNames();
  const bool fits = std::any_of(names.begin(), names.end(), [&](const auto& name) { return name.starts_with(typed); });
  return fits ? names : commandNames();
}

Lines files(Session& session, const std::string& typed) {
  namespace fs = std::filesystem;
  const std::size_t slash = typed.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : typed.substr(0, slash + 1);
  Lines names;
  std::error_code unreadable;
  for (const fs::directory_entry& entry :
       fs::directory_iterator(session.resolve(folder.empty() ? "." : folder), unreadable)) {
    const bool isFolder = entry.is_directory(unreadable);
    names.push_back(folder + entry.path().filename().string() + (isFolder ? "/" : ""));
  }
  return names;
}

/// Options of an import, values of `--format`, or files.
Lines importWords(Session& session, const std::string& before, const std::string& typed) {
  if (before == "--format") return namesOfFormats();
  if (before == "--encoding") return {};
  return typed.starts_with('-') ? Lines{"--add", "--encoding", "--format"} : files(session, typed);
}

Lines editWords() {
  Lines names;
  for (const ServiceEdit& edit : serviceEdits()) names.emplace_back(edit.name);
  return names;
}

Lines exportWords(Session& session, const std::string& before, const std::string& typed) {
  if (before == "--format") return namesOfWrittenFormats();
  return typed.starts_with('-') ? Lines{"--format"} : files(session, typed);
}

Lines argumentsOf(Session& session, const Lines& words, const std::string& typed) {
  const std::string& command = words.front();
  const bool second = words.size() == 1;
  if (command == "+" && second) return wordsBehindPlus(typed);
  if ((command == ".set" || command == ".get") && second) return knobWords(session, typed, command == ".set");
  if (command == ".fault") return faultArguments(session, words, typed);
  if (command == ".vconf" && second) return {"get", "set", "unset"};
  if (command == ".vconf" && words.size() == 2) return settingKeys(session);
  if (command == ".vconf" && words.size() == 3 && words[1] == "set") return {"int", "str"};
  if ((command == ".trace" || command == ".log") && second) return {"on", "off"};
  if (command == ".help" && second) return helpTopics();
  if (command == ".engine" && second) return session.client().openEngines();
  if (command == ".service" && words.size() == 2) return editWords();
  if (command == ".import") return importWords(session, words.back(), typed);
  if (command == ".export") return exportWords(session, words.back(), typed);
  if (command == ".scan") return typed.starts_with('-') ? Lines{"--add", "--import", "--json"} : files(session, typed);
  constexpr std::array fileCommands{".source", ".snapshot", ".restore"};
  if (std::find(fileCommands.begin(), fileCommands.end(), command) != fileCommands.end()) return files(session, typed);
  return {};
}

/// Commands, also directly after a `+` without a blank.
Lines firstWordsFor(const std::string& typed) {
  if (!typed.starts_with('+')) return firstWords();
  Lines names = wordsBehindPlus(typed.substr(1));
  for (std::string& name : names) name.insert(0, "+");
  return names;
}

HalfTyped readTyped(std::string_view line) {
  line.remove_prefix(std::min(line.find_first_not_of("> \t"), line.size()));  // the `>` of an input
  return splitHalfTyped(line);
}

/// True for a word that may continue: a folder, an option that needs a value, or the number of a service.
bool isOpen(const std::string& word) {
  return word.ends_with('/') || word.ends_with('=') || word.ends_with('#');
}

}  // namespace

Lines firstWords() {
  Lines names = commandNames();
  for (const DotCommand& command : dotCommands()) {
    if (command.isTyped) names.emplace_back(command.name);
  }
  return names;
}

Lines wordsBehind(Session& session, const Lines& before, const std::string& typed) {
  return before.empty() ? firstWordsFor(typed) : argumentsOf(session, before, typed);
}

Lines completions(Session& session, std::string_view line) {
  const HalfTyped typed = readTyped(line);
  if (typed.escape) return {};  // an escaped character can't be completed
  Lines words = wordsBehind(session, typed.words, typed.last);
  std::erase_if(words, [&](const std::string& word) {
    return !word.starts_with(typed.last) || (word == typed.last && word.ends_with('='));
  });
  std::sort(words.begin(), words.end());
  return words;
}

std::string restOf(std::string_view line, const Lines& words) {
  const HalfTyped typed = readTyped(line);
  const std::string start = commonStart(words);
  std::string rest = asTyped(start.substr(std::min(typed.last.size(), start.size())), typed.quote);
  if (words.size() != 1 || isOpen(words[0])) return rest;
  if (typed.quote != '\0') rest += closing(typed.quote);
  return rest + ' ';
}

std::string commonStart(const Lines& words) {
  if (words.empty()) return {};
  std::string start = words.front();
  for (const std::string& word : words) {
    const auto [end, other] = std::mismatch(start.begin(), start.end(), word.begin(), word.end());
    start.erase(end, start.end());
  }
  const auto isInside = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
  while (!start.empty() && start.size() < words.front().size() && isInside(words.front()[start.size()])) {
    start.pop_back();
  }
  return start;
}

}  // namespace virtualtv::shell
