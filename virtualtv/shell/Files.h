// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace virtualtv::shell {

/// The largest file that is read, in bytes: files like /dev/zero have no end.
inline constexpr std::size_t mostRead = 256'000'000;

/// Reads a whole file. @throws std::runtime_error `cannot read NAME: REASON`, also when it has more than `mostRead`
/// bytes.
std::string readFile(const std::filesystem::path& path, const std::string& name);
inline std::string readFile(const std::filesystem::path& path) {
  return readFile(path, path.string());
}

/// Reads a stream to its end. @param name  the name of the stream in messages. @throws std::runtime_error as `readFile`
/// does.
std::string readStream(std::FILE* stream, const std::string& name);

/// Takes the bytes of a file block by block. A block is valid only during the call.
using TakeBlock = std::function<void(std::span<const std::uint8_t>)>;

/// Reads a stream of any length to its end. @param name  the name of the stream in messages. @throws std::runtime_error
/// `cannot read NAME: REASON`, and what `take` throws.
void readBlocks(std::FILE* stream, const std::string& name, const TakeBlock& take);
/// Reads a file of any length, in the same way.
void readFileInBlocks(const std::filesystem::path& path, const std::string& name, const TakeBlock& take);

/// Reads the next line of a stream, without its line break. To limit memory, a line of more than `most` bytes is
/// truncated to `most` + 1 bytes. @param name  the name of the stream and the line in messages, as in `standard
/// input:3`. @return false at the end of the stream. @throws std::runtime_error `cannot read NAME: REASON`, also when
/// the line has more than `mostRead` bytes.
bool readLine(std::FILE* stream, const std::string& name, std::size_t most, std::string& line);

/// Replaces the content of a file atomically: whoever opens the file meanwhile finds the old content or the new one. A
/// link stays a link, and the file keeps its permissions.
/// @throws std::runtime_error `cannot write NAME: REASON`, also when it is not a regular file. The file is then
/// unchanged.
void replaceFile(const std::filesystem::path& file, std::string_view content, const std::string& name);
inline void replaceFile(const std::filesystem::path& file, std::string_view content) {
  replaceFile(file, content, file.string());
}

/// The same for a file that may not exist yet. A new file appears atomically, with the default permissions of the
/// process. @throws as `replaceFile`.
void saveFile(const std::filesystem::path& file, std::string_view content, const std::string& name);
inline void saveFile(const std::filesystem::path& file, std::string_view content) {
  saveFile(file, content, file.string());
}

/// Writes a file, creating it if missing. @throws std::runtime_error `cannot write FILE: REASON`.
void writeFile(const std::filesystem::path& path, std::string_view content);

}  // namespace virtualtv::shell
