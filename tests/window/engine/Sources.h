// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The plug-in's sources, parsed to find what is on a line.
namespace engine {

/// A top-level function or class: first to last line, counted from 1.
struct Block {
  int first = 0;
  int last = 0;
  std::string text;
};

/// One source file.
struct Source {
  std::vector<Block> blocks;
  /// Names of the constants that stand for a text: `{"kList", "GetSubtitleInfo"}`.
  std::vector<std::pair<std::string, std::string>> constants;
};

/// All sources of the plug-in.
const std::vector<Source>& sources();

/// True for a line of an operation: a line of its own function, or of a function or class that is a step of it and
/// names it.
bool isLineOf(std::string_view operation, int line);

}  // namespace engine
