// SPDX-License-Identifier: MIT
#include "shell/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <system_error>
#include <vector>

#include "shell/OpenFile.h"
#include "shell/Reason.h"

namespace virtualtv::shell {

namespace {

namespace fs = std::filesystem;

/// A new file beside another, removed at the end of the scope unless it was renamed.
class Beside {
 public:
  /// @param name  the name of the other file in messages. @param mode  the permissions of the new file, before the
  /// umask.
  Beside(const fs::path& target, const std::string& name, mode_t mode) {
    int descriptor = -1;
    for (int number = 0; descriptor < 0; ++number) {
      name_ = target.string() + "." + std::to_string(::getpid()) + "." + std::to_string(number);
      descriptor = ::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
      if (descriptor < 0 && errno != EEXIST) failFile("write", name, errno);
    }
    file_.reset(::fdopen(descriptor, "wb"));
  }
  Beside(const Beside&) = delete;
  Beside& operator=(const Beside&) = delete;
  ~Beside() {
    if (!name_.empty()) std::remove(name_.c_str());
  }

  bool write(std::string_view content) {
    std::FILE* file = file_.get();
    return std::fwrite(content.data(), 1, content.size(), file) == content.size() && std::fflush(file) == 0 &&
           ::fsync(::fileno(file)) == 0;
  }
  bool setMode(mode_t mode) { return ::fchmod(::fileno(file_.get()), mode) == 0; }
  bool becomes(const fs::path& target) {
    if (std::rename(name_.c_str(), target.c_str()) != 0) return false;
    name_.clear();
    return true;
  }

 private:
  std::string name_;
  File file_;
};

[[noreturn]] void failAsEndless(const std::string& name) {
  failFile("read", name, "it has more than 256 MB");
}

}  // namespace

std::string readFile(const fs::path& path, const std::string& name) {
  const File file(std::fopen(path.c_str(), "rb"));
  if (!file) failFile("read", name, errno);
  return readStream(file.get(), name);
}

std::string readStream(std::FILE* stream, const std::string& name) {
  try {
    std::string content;
    char chunk[65536];
    while (const std::size_t count = std::fread(chunk, 1, sizeof chunk, stream)) {
      if (content.size() + count > mostRead) failAsEndless(name);
      content.append(chunk, count);
    }
    if (std::ferror(stream) != 0) failFile("read", name, errno);  // also for a folder
    return content;
  } catch (const std::bad_alloc&) {
    failFile("read", name, notEnoughMemory);
  }
}

void readBlocks(std::FILE* stream, const std::string& name, const TakeBlock& take) {
  constexpr std::size_t blockSize = 262'144;
  std::vector<std::uint8_t> block(blockSize);
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), stream)) {
    take(std::span<const std::uint8_t>(block).first(count));
  }
  if (std::ferror(stream) != 0) failFile("read", name, errno);
}

void readFileInBlocks(const fs::path& path, const std::string& name, const TakeBlock& take) {
  const File file(std::fopen(path.c_str(), "rb"));
  if (!file) failFile("read", name, errno);
  readBlocks(file.get(), name, take);
}

bool readLine(std::FILE* stream, const std::string& name, std::size_t most, std::string& line) {
  line.clear();
  std::size_t length = 0;
  for (int byte = 0; (byte = ::getc_unlocked(stream)) != EOF && byte != '\n'; ++length) {
    if (length == mostRead) failAsEndless(name);
    if (length <= most) line += static_cast<char>(byte);
  }
  if (std::ferror(stream) != 0) failFile("read", name, errno);
  return length > 0 || std::feof(stream) == 0;
}

void replaceFile(const fs::path& file, std::string_view content, const std::string& name) {
  std::error_code missing;
  const fs::path target = fs::canonical(file, missing);
  if (missing) failFile("write", name, missing.value());
  struct stat before {};
  if (::stat(target.c_str(), &before) != 0) failFile("write", name, errno);
  if (!S_ISREG(before.st_mode)) failFile("write", name, "not a regular file");
  Beside made(target, name, S_IRUSR | S_IWUSR);
  if (!made.write(content) || !made.setMode(before.st_mode & 07777U) || !made.becomes(target)) {
    failFile("write", name, errno);
  }
}

void saveFile(const fs::path& file, std::string_view content, const std::string& name) {
  struct stat before {};
  if (::lstat(file.c_str(), &before) == 0 || errno != ENOENT) return replaceFile(file, content, name);
  constexpr mode_t anyone = 0666;
  Beside made(file, name, anyone);
  if (!made.write(content) || !made.becomes(file)) failFile("write", name, errno);
}

void writeFile(const fs::path& path, std::string_view content) {
  File file(std::fopen(path.c_str(), "wb"));
  if (!file) failFile("write", path, errno);
  const bool written = std::fwrite(content.data(), 1, content.size(), file.get()) == content.size();
  if (!written || std::fclose(file.release()) != 0) failFile("write", path, errno);
}

}  // namespace virtualtv::shell
