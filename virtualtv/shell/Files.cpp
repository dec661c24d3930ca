#include "shell/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>
#include <system_error>

#include "shell/Reason.h"

namespace virtualtv::shell {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const char* action, const std::string& file, const std::string& reason) {
  throw std::runtime_error(std::string("cannot ") + action + " " + file + ": " + reason);
}

[[noreturn]] void fail(const char* action, const std::string& file, int error) {
  fail(action, file, std::generic_category().message(error));
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// A new file beside another, removed at the end of the scope unless it was renamed.
class Beside {
 public:
  /// @param name  what messages call the other one.
  /// @param mode  its permissions, less those that the process withholds from new files.
  Beside(const fs::path& target, const std::string& name, mode_t mode) {
    int descriptor = -1;
    for (int number = 0; descriptor < 0; ++number) {
      name_ = target.string() + "." + std::to_string(::getpid()) + "." + std::to_string(number);
      descriptor = ::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
      if (descriptor < 0 && errno != EEXIST) fail("write", name, errno);
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

/// Appends pieces until there are none. @param read  reads one into a place of a size; answers how much of it there is.
template <typename Read>
std::string readAll(const std::string& name, const Read& read) {
  try {
    std::string content;
    char chunk[65536];
    while (const std::size_t count = read(chunk, sizeof chunk)) {
      if (content.size() + count > mostRead) fail("read", name, "it has more than 256 MB");
      content.append(chunk, count);
    }
    return content;
  } catch (const std::bad_alloc&) {
    fail("read", name, notEnoughMemory);
  }
}

}  // namespace

std::string readFile(const fs::path& path, const std::string& name) {
  const File file(std::fopen(path.c_str(), "rb"));
  if (!file) fail("read", name, errno);
  return readAll(name, [&](char* chunk, std::size_t size) {
    const std::size_t count = std::fread(chunk, 1, size, file.get());
    if (std::ferror(file.get()) != 0) fail("read", name, errno);  // a folder too ends up here
    return count;
  });
}

std::string readStream(std::istream& stream, const std::string& name) {
  return readAll(name, [&](char* chunk, std::size_t size) {
    stream.read(chunk, static_cast<std::streamsize>(size));
    return static_cast<std::size_t>(stream.gcount());
  });
}

void replaceFile(const fs::path& file, std::string_view content, const std::string& name) {
  std::error_code missing;
  const fs::path target = fs::canonical(file, missing);
  if (missing) fail("write", name, missing.value());
  struct stat before {};
  if (::stat(target.c_str(), &before) != 0) fail("write", name, errno);
  if (!S_ISREG(before.st_mode)) fail("write", name, "not a regular file");
  Beside made(target, name, S_IRUSR | S_IWUSR);
  if (!made.write(content) || !made.setMode(before.st_mode & 07777U) || !made.becomes(target)) {
    fail("write", name, errno);
  }
}

void saveFile(const fs::path& file, std::string_view content, const std::string& name) {
  struct stat before {};
  if (::lstat(file.c_str(), &before) == 0 || errno != ENOENT) return replaceFile(file, content, name);
  constexpr mode_t anyone = 0666;
  Beside made(file, name, anyone);
  if (!made.write(content) || !made.becomes(file)) fail("write", name, errno);
}

void writeFile(const fs::path& path, std::string_view content) {
  File file(std::fopen(path.c_str(), "wb"));
  if (!file) fail("write", path, errno);
  const bool written = std::fwrite(content.data(), 1, content.size(), file.get()) == content.size();
  if (!written || std::fclose(file.release()) != 0) fail("write", path, errno);
}

}  // namespace virtualtv::shell
