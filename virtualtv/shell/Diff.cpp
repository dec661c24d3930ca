// SPDX-License-Identifier: MIT
#include "shell/Diff.h"

#include <algorithm>
#include <cstdint>

namespace virtualtv::shell {

namespace {

using Kind = DiffLine::Kind;

constexpr std::size_t context = 3;
constexpr std::size_t largestTable = 4'000'000;  // cells; beyond it a group is replaced as a whole

void add(Diff& diff, Kind kind, Lines::const_iterator from, Lines::const_iterator to) {
  for (; from != to; ++from) diff.push_back({kind, *from});
}

/// Table of the number of lines that two groups have in common, from line `before` and line `after` on.
class CommonLines {
 public:
  CommonLines(const Lines& before, const Lines& after) : width_(after.size() + 1) {
    cells_.resize((before.size() + 1) * width_);
    for (std::size_t row = before.size(); row-- > 0;) {
      for (std::size_t column = after.size(); column-- > 0;) {
        cells_[row * width_ + column] = before[row] == after[column]
                                            ? at(row + 1, column + 1) + 1
                                            : std::max(at(row + 1, column), at(row, column + 1));
      }
    }
  }

  std::uint32_t at(std::size_t before, std::size_t after) const { return cells_[before * width_ + after]; }

 private:
  std::size_t width_;
  std::vector<std::uint32_t> cells_;
};

void compareMiddle(Diff& diff, const Lines& before, const Lines& after) {
  std::size_t row = 0;
  std::size_t column = 0;
  if (before.size() * after.size() <= largestTable) {
    const CommonLines common(before, after);
    while (row < before.size() && column < after.size()) {
      if (before[row] == after[column]) {
        diff.push_back({Kind::same, before[row++]});
        ++column;
      } else if (common.at(row + 1, column) >= common.at(row, column + 1)) {
        diff.push_back({Kind::removed, before[row++]});
      } else {
        diff.push_back({Kind::added, after[column++]});
      }
    }
  }
  add(diff, Kind::removed, before.begin() + static_cast<std::ptrdiff_t>(row), before.end());
  add(diff, Kind::added, after.begin() + static_cast<std::ptrdiff_t>(column), after.end());
}

/// Lines of a diff that are shown together, with their positions in the two texts.
struct Hunk {
  std::size_t first = 0;  ///< index in the diff
  std::size_t end = 0;
};

std::vector<Hunk> hunksOf(const Diff& diff) {
  std::vector<Hunk> hunks;
  for (std::size_t at = 0; at < diff.size(); ++at) {
    if (diff[at].kind == Kind::same) continue;
    const std::size_t first = at < context ? 0 : at - context;
    const std::size_t end = std::min(diff.size(), at + context + 1);
    if (hunks.empty() || hunks.back().end < first) {
      hunks.push_back({first, end});
    } else {
      hunks.back().end = end;
    }
  }
  return hunks;
}

/// The number of lines that one of the texts has in a part of a diff: all except those of the `other` text.
std::size_t count(const Diff& diff, std::size_t first, std::size_t end, Kind other) {
  const auto begin = diff.begin();
  return static_cast<std::size_t>(std::count_if(begin + static_cast<std::ptrdiff_t>(first),
                                                begin + static_cast<std::ptrdiff_t>(end),
                                                [&](const DiffLine& line) { return line.kind != other; }));
}

std::string range(const Diff& diff, const Hunk& hunk, Kind other) {
  const std::size_t before = count(diff, 0, hunk.first, other);
  const std::size_t length = count(diff, hunk.first, hunk.end, other);
  const std::size_t start = length == 0 ? before : before + 1;
  return std::to_string(start) + "," + std::to_string(length);
}

}  // namespace

void same(Diff& diff, const std::string& line) {
  diff.push_back({Kind::same, line});
}

void same(Diff& diff, const Lines& lines) {
  add(diff, Kind::same, lines.begin(), lines.end());
}

void compare(Diff& diff, const Lines& before, const Lines& after) {
  auto [first, firstAfter] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
  auto last = before.end();
  auto lastAfter = after.end();
  while (last != first && lastAfter != firstAfter && *std::prev(last) == *std::prev(lastAfter)) --last, --lastAfter;
  add(diff, Kind::same, before.begin(), first);
  compareMiddle(diff, Lines(first, last), Lines(firstAfter, lastAfter));
  add(diff, Kind::same, last, before.end());
}

std::string unified(const Diff& diff, const std::string& nameBefore, const std::string& nameAfter) {
  const std::vector<Hunk> hunks = hunksOf(diff);
  if (hunks.empty()) return {};
  std::string text = "--- " + nameBefore + "\n+++ " + nameAfter + "\n";
  for (const Hunk& hunk : hunks) {
    text += "@@ -" + range(diff, hunk, Kind::added) + " +" + range(diff, hunk, Kind::removed) + " @@\n";
    for (std::size_t at = hunk.first; at < hunk.end; ++at) {
      text += static_cast<char>(diff[at].kind) + diff[at].text + "\n";
    }
  }
  return text;
}

}  // namespace virtualtv::shell
