// SPDX-License-Identifier: MIT
#include "Sources.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace engine {

namespace {

/// The lines of a function or class definition at the outermost level, counted from 1.
struct Block {
  int first = 0;
  int last = 0;
  std::string text;
};

bool opensBlock(const std::string& line) {
  return !line.empty() && line.front() != ' ' && line.front() != '#' && line.front() != '/' && line.front() != '}' &&
         line.rfind("namespace", 0) != 0;
}

/// Adds the blocks of a file. A definition that starts without indentation ends with a brace without indentation.
void read(const std::filesystem::path& path, std::vector<Block>& blocks) {
  Block block;
  std::ifstream file(path);
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (block.first == 0 && opensBlock(line)) block.first = number;
    if (block.first == 0) continue;
    block.text += line + "\n";
    block.last = number;
    const bool declared = block.first == number && line.back() == ';';
    const bool ends = line == "}" || line == "};";
    if (ends) blocks.push_back(block);
    if (ends || declared) block = {};
  }
}

std::vector<Block> readAll() {
  std::vector<Block> blocks;
  for (const auto& entry : std::filesystem::directory_iterator(WINDOW_SOURCES)) {
    if (entry.path().extension() == ".cpp") read(entry.path(), blocks);
  }
  return blocks;
}

bool isOf(const Block& block, std::string_view operation) {
  const std::string call = std::string(operation) + "(";
  const std::string head = block.text.substr(0, block.text.find('{'));
  return head.find("::" + call) != std::string::npos || head.find(" " + call) != std::string::npos;
}

}  // namespace

bool isLineOf(std::string_view operation, int line) {
  static const std::vector<Block> blocks = readAll();
  return std::any_of(blocks.begin(), blocks.end(), [&](const Block& block) {
    return block.first <= line && line <= block.last && isOf(block, operation);
  });
}

}  // namespace engine
