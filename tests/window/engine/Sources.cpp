// SPDX-License-Identifier: MIT
#include "Sources.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>

namespace engine {

namespace {

bool opensBlock(const std::string& line) {
  return !line.empty() && line.front() != ' ' && line.front() != '#' && line.front() != '/' && line.front() != '}' &&
         line.rfind("namespace", 0) != 0;
}

/// A definition that is not indented ends with a brace that is not.
Source read(const std::filesystem::path& path) {
  static const std::regex constant(R"re(constexpr const char\* (\w+) = "(.*?)";)re");
  Source source;
  Block block;
  std::ifstream file(path);
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (std::smatch found; line.rfind("constexpr", 0) == 0 && std::regex_search(line, found, constant)) {
      source.constants.emplace_back(found[1], found[2]);
    }
    if (block.first == 0 && opensBlock(line)) block.first = number;
    if (block.first == 0) continue;
    block.text += line + "\n";
    block.last = number;
    const bool declared = block.first == number && line.back() == ';';
    const bool ends = line == "}" || line == "};";
    if (ends) source.blocks.push_back(block);
    if (ends || declared) block = {};
  }
  return source;
}

bool names(const Block& block, const Source& source, std::string_view operation) {
  const auto has = [&](const std::string& text) { return block.text.find(text) != std::string::npos; };
  const std::string name(operation);
  const std::string head = block.text.substr(0, block.text.find('{'));
  for (const char* before : {"::", " "}) {
    if (head.find(before + name + "(") != std::string::npos) return true;
  }
  if (has("\"" + name + "\"")) return true;
  return std::any_of(source.constants.begin(), source.constants.end(),
                     [&](const auto& constant) { return constant.second == name && has(constant.first); });
}

}  // namespace

const std::vector<Source>& sources() {
  static const std::vector<Source> all = [] {
    std::vector<Source> found;
    for (const auto& entry : std::filesystem::directory_iterator(WINDOW_SOURCES)) {
      if (entry.path().extension() == ".cpp") found.push_back(read(entry.path()));
    }
    return found;
  }();
  return all;
}

bool isLineOf(std::string_view operation, int line) {
  for (const Source& source : sources()) {
    for (const Block& block : source.blocks) {
      if (block.first <= line && line <= block.last && names(block, source, operation)) return true;
    }
  }
  return false;
}

}  // namespace engine
