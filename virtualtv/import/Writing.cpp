// SPDX-License-Identifier: MIT
#include "import/Writing.h"

#include <algorithm>
#include <set>

namespace virtualtv::import {

namespace {

const std::string* pieceNamed(const Pieces& pieces, std::string_view name) {
  const auto found = std::find_if(pieces.begin(), pieces.end(), [&](const auto& piece) { return piece.first == name; });
  return found == pieces.end() ? nullptr : &found->second;
}

}  // namespace

Pieces changed(const Pieces& kept, const Pieces& before, const Pieces& now) {
  const auto isChanged = [&](const std::string& name) {
    const std::string* const was = pieceNamed(before, name);
    const std::string* const is = pieceNamed(now, name);
    return was == nullptr || is == nullptr ? was != is : *was != *is;
  };
  Pieces result;
  std::set<std::string> done;
  for (const auto& [name, text] : kept) {
    if (!isChanged(name)) {
      result.emplace_back(name, text);
    } else if (const std::string* is = pieceNamed(now, name); is != nullptr && !done.contains(name)) {
      result.emplace_back(name, *is);
    }
    done.insert(name);
  }
  for (const auto& [name, text] : now) {
    if (isChanged(name) && !done.contains(name)) result.emplace_back(name, text);
  }
  return result;
}

}  // namespace virtualtv::import
