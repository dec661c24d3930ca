// SPDX-License-Identifier: MIT
#include "shell/Nearest.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace virtualtv::shell {

namespace {

constexpr std::size_t shortestStart = 2;  // the shortest prefix, in letters, to match names with
constexpr std::size_t mostWithStart = 4;

/// The characters of a name that are compared.
std::string core(std::string_view name) {
  std::string letters;
  for (const char letter : name) {
    constexpr std::string_view passedOver = "._-:/";
    if (passedOver.find(letter) != std::string_view::npos) continue;
    letters += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return letters;
}

/// The number of slips allowed in a word: one in three to five letters, at most three in a long word.
std::size_t slipsAllowed(std::size_t length) {
  return std::min<std::size_t>(length / 3, 3);
}

/// The edit distance of two words: letters to change, remove, add, or swap with the next one.
std::size_t slipsBetween(const std::string& one, const std::string& other) {
  std::vector<std::size_t> before;
  std::vector<std::size_t> above(other.size() + 1);
  std::iota(above.begin(), above.end(), 0);
  for (std::size_t row = 1; row <= one.size(); ++row) {
    std::vector<std::size_t> now{row};
    for (std::size_t at = 1; at <= other.size(); ++at) {
      const std::size_t changed = one[row - 1] == other[at - 1] ? 0 : 1;
      std::size_t slips = std::min({above[at] + 1, now[at - 1] + 1, above[at - 1] + changed});
      const bool swapped = row > 1 && at > 1 && one[row - 1] == other[at - 2] && one[row - 2] == other[at - 1];
      if (swapped) slips = std::min(slips, before[at - 2] + 1);
      now.push_back(slips);
    }
    before = std::exchange(above, std::move(now));
  }
  return above.back();
}

/// The names with the fewest slips; empty when every name has more slips than are allowed.
Lines namesWithSlips(const std::string& typed, const Lines& known) {
  std::size_t fewest = slipsAllowed(typed.size());
  Lines names;
  for (const std::string& name : known) {
    const std::size_t slips = slipsBetween(typed, core(name));
    if (slips > fewest) continue;
    if (slips < fewest) names.clear();
    fewest = slips;
    names.push_back(name);
  }
  return names;
}

template <typename Condition>
Lines namesWhere(const Lines& known, Condition condition) {
  Lines names;
  std::copy_if(known.begin(), known.end(), std::back_inserter(names), condition);
  return names;
}

}  // namespace

Lines alike(std::string_view word, const Lines& known) {
  const std::string letters = core(word);
  return namesWhere(known, [&](const std::string& name) { return core(name) == letters; });
}

Lines nearest(std::string_view word, const Lines& known) {
  const std::string typed = core(word);
  if (typed.empty()) return {};
  if (Lines same = alike(word, known); !same.empty()) return same;
  Lines longer = namesWhere(known, [&](const std::string& name) { return core(name).starts_with(typed); });
  if (longer.empty() || typed.size() < shortestStart) return namesWithSlips(typed, known);
  return longer.size() <= mostWithStart ? longer : Lines();
}

}  // namespace virtualtv::shell
