// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The plug-in's sources, read to find what stands on a line of them.
namespace engine {

/// A function or a class outside of which nothing stands but declarations: first to last line, counted from 1.
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

/// Whether this is a line of an operation: of its own function, or of a function or class that names it, being a step
/// of it.
bool isLineOf(std::string_view operation, int line);

}  // namespace engine
