#pragma once

#include <filesystem>
#include <string>

#include "shell/FileAccess.h"

namespace virtualtv::shell {

/// A channel list, and what messages call it.
struct NamedList {
  std::string name;
  std::string content;
};

/// Reads a channel list: all of a file or, of a directory, the lamedb in it with its bouquets.
/// @param name  what messages call the path. @throws std::runtime_error `cannot read NAME: REASON`.
NamedList readList(const FileAccess& files, const std::filesystem::path& path, const std::string& name);

}  // namespace virtualtv::shell
