// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "import/Bouquets.h"

namespace support {

/// Splits the text that `joinedLists` makes of a directory with a lamedb and bouquets into its files again. If several
/// files have the same name, the first one counts.
inline std::map<std::string, std::string> listsApart(std::string_view joined) {
  using namespace virtualtv::import;
  const std::size_t start = startOfBouquets(joined);
  std::map<std::string, std::string> files{{"lamedb", std::string(joined.substr(0, start))}};
  joined.remove_prefix(start);
  while (!joined.empty()) {
    const std::string_view file = joined.substr(joinedFile.size(), startOfBouquets(joined) - joinedFile.size());
    const std::size_t name = std::min(file.find('\n'), file.size());
    files.emplace(file.substr(0, name), file.substr(std::min(name + 1, file.size())));
    joined.remove_prefix(joinedFile.size() + file.size());
  }
  return files;
}

}  // namespace support
