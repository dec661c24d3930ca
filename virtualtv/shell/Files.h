#pragma once

#include <cstddef>
#include <filesystem>
#include <istream>
#include <string>
#include <string_view>

namespace virtualtv::shell {

/// The most that is read of a file, in bytes: some, like /dev/zero, have no end.
inline constexpr std::size_t mostRead = 256'000'000;

/// All of a file. @throws std::runtime_error `cannot read NAME: REASON`, also where it has more than `mostRead`.
std::string readFile(const std::filesystem::path& path, const std::string& name);
inline std::string readFile(const std::filesystem::path& path) {
  return readFile(path, path.string());
}

/// All that is left of a stream. @param name  what messages call it. @throws std::runtime_error as `readFile` does.
std::string readStream(std::istream& stream, const std::string& name);

/// Puts `content` in the place of a file's, all of it or nothing: whoever opens the file meanwhile finds the old
/// content or the new one. A link stays a link, and the file keeps its permissions.
/// @throws std::runtime_error `cannot write NAME: REASON`, also for what is not a regular file; it is then as it was.
void replaceFile(const std::filesystem::path& file, std::string_view content, const std::string& name);
inline void replaceFile(const std::filesystem::path& file, std::string_view content) {
  replaceFile(file, content, file.string());
}

/// The same for a file that need not exist: a new one is there as a whole or not at all, with the permissions that the
/// process gives to new files. @throws as `replaceFile`.
void saveFile(const std::filesystem::path& file, std::string_view content, const std::string& name);
inline void saveFile(const std::filesystem::path& file, std::string_view content) {
  saveFile(file, content, file.string());
}

/// Writes a file, made where it does not exist. @throws std::runtime_error `cannot write FILE: REASON`.
void writeFile(const std::filesystem::path& path, std::string_view content);

}  // namespace virtualtv::shell
