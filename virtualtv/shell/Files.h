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

/// The most that is read of a file, in bytes: some, like /dev/zero, have no end.
inline constexpr std::size_t mostRead = 256'000'000;

/// All of a file. @throws std::runtime_error `cannot read NAME: REASON`, also where it has more than `mostRead`.
std::string readFile(const std::filesystem::path& path, const std::string& name);
inline std::string readFile(const std::filesystem::path& path) {
  return readFile(path, path.string());
}

/// All that is left of a stream. @param name  what messages call it. @throws std::runtime_error as `readFile` does.
std::string readStream(std::FILE* stream, const std::string& name);

/// Takes the bytes of a file block by block; those of a block are gone when it returns.
using TakeBlock = std::function<void(std::span<const std::uint8_t>)>;

/// All that is left of a stream, of any length. @param name  what messages call it. @throws std::runtime_error
/// `cannot read NAME: REASON`, and what `take` throws.
void readBlocks(std::FILE* stream, const std::string& name, const TakeBlock& take);
/// All of a file, likewise.
void readFileInBlocks(const std::filesystem::path& path, const std::string& name, const TakeBlock& take);

/// Reads the next line of a stream, without its line break. One of more than `most` bytes is cut, to one byte more than
/// that, so that it takes no more memory; the rest of it is passed over.
/// @param name  what messages call the stream and the line, as in `standard input:3`.
/// @return false at the end of the stream.
/// @throws std::runtime_error `cannot read NAME: REASON`, also where the line has more than `mostRead` bytes.
bool readLine(std::FILE* stream, const std::string& name, std::size_t most, std::string& line);

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
