// SPDX-License-Identifier: MIT
// Listens to the log in the tests of the plug-in. If the environment variable EMP_WINDOW_LOG_CONTRACT names a folder,
// each process writes its log messages to a file there, each message once, as a line of the log contract: format with C
// escapes, level and operation, separated by tabs.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string>

#include "framework/Log.h"

namespace {

using virtualtv::framework::LogLine;

std::string escaped(const std::string& text) {
  std::string result;
  for (const char letter : text) {
    switch (letter) {
      case '\n':
        result += "\\n";
        break;
      case '\t':
        result += "\\t";
        break;
      case '\033':
        result += "\\033";
        break;
      case '"':
      case '\\':
        result += '\\';
        [[fallthrough]];
      default:
        result += letter;
    }
  }
  return result;
}

std::string contractLine(const LogLine& line) {
  const bool fixedText = line.message.format() == "%s";  // the text came from a table
  return escaped(fixedText ? line.message.text() : line.message.format()) + "\t" + std::to_string(line.level) + "\t" +
         line.function.str();
}

/// Writes a message at once, since a process may be killed at any time.
void note(const std::filesystem::path& folder, const LogLine& line) {
  static std::set<std::string> known;
  const auto [added, isNew] = known.insert(contractLine(line));
  if (!isNew) return;
  std::ofstream file(folder / (std::to_string(::getpid()) + ".tsv"), std::ios::app);
  file << *added << '\n';
  if (!file.flush().good()) throw std::runtime_error("can't write to " + folder.string());
}

constexpr int allLevels = 3;

virtualtv::notify::Subscription listen() {
  const char* folder = std::getenv("EMP_WINDOW_LOG_CONTRACT");
  if (folder == nullptr) return {};
  return virtualtv::framework::listenToLog(
      allLevels, [folder = std::filesystem::path(folder)](const LogLine& line) { note(folder, line); });
}

const virtualtv::notify::Subscription listening = listen();

}  // namespace
