// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include "shell/FileAccess.h"

namespace virtualtv::shell {

/// A channel list, and its name in messages.
struct NamedList {
  std::string name;
  std::string content;
};

/// Reads a channel list: a whole file or, for a directory, the lamedb in it with its bouquets. @param name  the name of
/// the path in messages. @throws std::runtime_error `cannot read NAME: REASON`.
NamedList readList(const FileAccess& files, const std::filesystem::path& path, const std::string& name);

}  // namespace virtualtv::shell
