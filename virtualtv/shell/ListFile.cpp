// SPDX-License-Identifier: MIT
#include "shell/ListFile.h"

#include <optional>

#include "import/Bouquets.h"
#include "shell/OpenFile.h"

namespace virtualtv::shell {

namespace fs = std::filesystem;

NamedList readList(const FileAccess& files, const fs::path& path, const std::string& name) {
  if (files.kindOf(path) != FileAccess::Kind::directory) return {name, files.read(path, name)};
  NamedList list;
  const auto read = [&](const std::string& file) -> std::optional<std::string> {
    if (files.kindOf(path / file) == FileAccess::Kind::missing) return std::nullopt;
    const std::string called = (fs::path(name) / file).string();
    if (list.name.empty()) list.name = called;  // the lamedb
    return files.read(path / file, called);
  };
  std::optional<std::string> content = import::joinedLists(read);
  if (!content) failFile("read", name, "it is a directory without a lamedb");
  list.content = std::move(*content);
  return list;
}

}  // namespace virtualtv::shell
