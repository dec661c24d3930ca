// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "shell/Lines.h"

namespace virtualtv::shell {

/// A line of the comparison of two texts.
struct DiffLine {
  enum class Kind : char { same = ' ', removed = '-', added = '+' };
  Kind kind;
  std::string text;
};
using Diff = std::vector<DiffLine>;

/// Appends a line that both texts have.
void same(Diff& diff, const std::string& line);
void same(Diff& diff, const Lines& lines);

/// Appends the difference of two groups of lines. It has the fewest possible changes unless the groups are huge.
void compare(Diff& diff, const Lines& before, const Lines& after);

/// A diff in the unified format with three lines of context, so that `patch` can apply it; empty when the texts are
/// equal.
std::string unified(const Diff& diff, const std::string& nameBefore, const std::string& nameAfter);

}  // namespace virtualtv::shell
