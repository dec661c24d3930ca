#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace virtualtv::shell {

/// All of a file. @throws std::runtime_error `cannot read NAME: REASON`.
std::string readFile(const std::filesystem::path& path, const std::string& name);
inline std::string readFile(const std::filesystem::path& path) {
  return readFile(path, path.string());
}

/// Puts `content` in the place of a file's, all of it or nothing: whoever opens the file meanwhile finds the old
/// content or the new one. A link stays a link, and the file keeps its permissions.
/// @throws std::runtime_error `cannot write FILE: REASON`; the file is then as it was.
void replaceFile(const std::filesystem::path& file, std::string_view content);

/// Writes a file, made where it does not exist. @throws std::runtime_error `cannot write FILE: REASON`.
void writeFile(const std::filesystem::path& path, std::string_view content);

}  // namespace virtualtv::shell
