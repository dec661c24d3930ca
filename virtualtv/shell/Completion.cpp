#include "shell/Completion.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <stdexcept>

#include "catalogue/Catalogue.h"
#include "services/ServiceStore.h"
#include "set/Knobs.h"
#include "shell/Arguments.h"
#include "shell/DotCommands.h"
#include "shell/Help.h"
#include "shell/Session.h"

namespace virtualtv::shell {

namespace {

Lines operationNames(const std::string& before) {
  Lines names;
  for (const seam::Operation& operation : seam::operations) names.push_back(before + std::string(operation.name));
  return names;
}

Lines firstWords() {
  Lines names = commandNames();
  for (const DotCommand& command : dotCommands()) names.emplace_back(command.name);
  return names;
}

/// Services by their keys, and behind the full stop their knobs.
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

Lines knobWords(Session& session, const std::string& typed) {
  Tv& tv = session.device().tv();
  if (typed.starts_with("service.")) return serviceWords(tv, typed);
  Lines names = knobNames(tv);
  for (std::string& name : operationNames("latency.")) names.push_back(std::move(name));
  names.emplace_back("service.#");
  return names;
}

Lines settingKeys(Session& session) {
  Lines keys;
  for (const auto& [key, value] : session.device().tv().settings().list()) keys.push_back(key);
  return keys;
}

/// The outputs of an operation and the other words of a fault.
Lines faultWords(const std::string& name) {
  Lines words{"nth=", "times=", "always", "result=null", "result=unwritten", "result=throw", "result=", "engine="};
  if (const seam::Operation* operation = seam::findOperation(name)) {
    if (operation->isOfWindow()) words.insert(words.end(), {"window=main", "window=pip"});
    for (const seam::Output& output : operation->written()) words.push_back("out." + std::string(output.name) + "=");
  }
  return words;
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

/// Options of an import, what `--format` takes, or files.
Lines importWords(Session& session, const std::string& before, const std::string& typed) {
  if (before == "--format") return namesOfFormats();
  if (before == "--encoding") return {};
  return typed.starts_with('-') ? Lines{"--add", "--encoding", "--format"} : files(session, typed);
}

Lines argumentsOf(Session& session, const Lines& words, const std::string& typed) {
  const std::string& command = words.front();
  const bool second = words.size() == 1;
  if (command == "+" && second) return listCommandNames();
  if ((command == ".set" || command == ".get") && second) return knobWords(session, typed);
  if (command == ".fault") {
    if (!second) return faultWords(words[1]);
    Lines names = operationNames("");
    names.emplace_back("clear");
    return names;
  }
  if (command == ".vconf" && second) return {"get", "set", "unset"};
  if (command == ".vconf" && words.size() == 2) return settingKeys(session);
  if (command == ".vconf" && words.size() == 3 && words[1] == "set") return {"int", "str"};
  if ((command == ".trace" || command == ".log") && second) return {"on", "off"};
  if (command == ".help" && second) return helpTopics();
  if (command == ".engine" && second) return session.client().openEngines();
  if (command == ".import") return importWords(session, words.back(), typed);
  constexpr std::array fileCommands{".source", ".snapshot", ".restore"};
  if (std::find(fileCommands.begin(), fileCommands.end(), command) != fileCommands.end()) return files(session, typed);
  return {};
}

/// Commands, or behind a `+` those that take a parameter list.
Lines firstWordsFor(const std::string& typed) {
  if (!typed.starts_with('+')) return firstWords();
  Lines names = listCommandNames();
  for (std::string& name : names) name.insert(0, "+");
  return names;
}

/// The words of a line, without the mark of an input in front.
Lines wordsBefore(std::string_view line) {
  Lines words;
  std::size_t at = std::min(line.find_first_not_of("> "), line.size());
  while ((at = line.find_first_not_of(' ', at)) != std::string_view::npos) {
    const std::size_t end = line.find(' ', at);
    words.emplace_back(line.substr(at, end - at));
    at = end == std::string_view::npos ? line.size() : end;
  }
  return words;
}

}  // namespace

Lines completions(Session& session, std::string_view line) {
  const std::size_t blank = line.rfind(' ');
  const std::size_t start = blank == std::string_view::npos ? 0 : blank + 1;
  const std::string typed(line.substr(start));
  const Lines before = wordsBefore(line.substr(0, start));
  Lines words = before.empty() ? firstWordsFor(typed) : argumentsOf(session, before, typed);
  words.erase(
      std::remove_if(words.begin(), words.end(), [&](const std::string& word) { return !word.starts_with(typed); }),
      words.end());
  std::sort(words.begin(), words.end());
  return words;
}

std::string commonStart(const Lines& words) {
  if (words.empty()) return {};
  std::string start = words.front();
  for (const std::string& word : words) {
    const auto [end, other] = std::mismatch(start.begin(), start.end(), word.begin(), word.end());
    start.erase(end, start.end());
  }
  return start;
}

}  // namespace virtualtv::shell
