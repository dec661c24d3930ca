#pragma once

#include <filesystem>
#include <string>

namespace virtualtv::net {

/// The token on the first line of a file.
/// @throws std::runtime_error with a line for a person when it can't be read, others than its owner can read or change
/// it, or it has no token of visible ASCII characters.
std::string readToken(const std::filesystem::path& file);

}  // namespace virtualtv::net
