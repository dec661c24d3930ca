// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

namespace virtualtv::net {

/// Reads the token from the first line of a file. @throws std::runtime_error with a line for a person when the file
/// can't be read, when others than its owner can read or change it, or when it has no token of visible ASCII
/// characters.
std::string readToken(const std::filesystem::path& file);

}  // namespace virtualtv::net
