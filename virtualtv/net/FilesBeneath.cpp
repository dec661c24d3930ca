// SPDX-License-Identifier: MIT
#include "net/FilesBeneath.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "shell/Files.h"
#include "shell/OpenFile.h"

namespace virtualtv::net {

namespace {

namespace fs = std::filesystem;
using shell::failFile;

/// Takes ownership of a descriptor, which must be of a regular file.
shell::File regularFile(int descriptor, const char* mode, const char* action, const std::string& name) {
  if (descriptor < 0) {
    if (errno == EXDEV || errno == ELOOP) failFile(action, name, "it leads out of the directory, or over a link");
    failFile(action, name, errno);
  }
  shell::File file(::fdopen(descriptor, mode));
  struct stat what {};
  if (::fstat(descriptor, &what) != 0) failFile(action, name, errno);
  if (!S_ISREG(what.st_mode)) failFile(action, name, "not a regular file");
  return file;
}

}  // namespace

shell::File openRegular(const fs::path& path, const std::string& name) {
  return regularFile(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY), "rb", "read", name);
}

FilesBeneath::FilesBeneath(const fs::path& directory)
    : path_(fs::absolute(directory).lexically_normal()),
      directory_(::open(directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {
  if (directory_ < 0) failFile("read", directory, errno);
}

FilesBeneath::~FilesBeneath() {
  ::close(directory_);
}

int FilesBeneath::open(const fs::path& path, int flags) const {
  open_how how{};
  how.flags = static_cast<decltype(how.flags)>(
      flags | O_CLOEXEC | ((flags & O_PATH) != 0 ? 0 : O_NONBLOCK));  // opening a pipe must not block the set
  how.mode = (flags & O_CREAT) != 0 ? S_IRUSR | S_IWUSR : 0;
  how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
  return static_cast<int>(::syscall(SYS_openat2, directory_, path.c_str(), &how, sizeof how));
}

shell::FileAccess::Kind FilesBeneath::kindOf(const fs::path& path) const {
  const int descriptor = open(path, O_PATH);
  if (descriptor < 0) return errno == ENOENT ? Kind::missing : Kind::file;
  struct stat what {};
  const bool isDirectory = ::fstat(descriptor, &what) == 0 && S_ISDIR(what.st_mode);
  ::close(descriptor);
  return isDirectory ? Kind::directory : Kind::file;
}

shell::File FilesBeneath::openToRead(const fs::path& path, const std::string& name) const {
  const fs::path beneath = path.is_absolute() ? path.lexically_normal().lexically_relative(path_) : path;
  return regularFile(open(beneath, O_RDONLY), "rb", "read", name);
}

std::string FilesBeneath::read(const fs::path& path, const std::string& name) const {
  const shell::File file = regularFile(open(path, O_RDONLY), "rb", "read", name);
  return shell::readStream(file.get(), name);
}

void FilesBeneath::readBlocks(const fs::path& path, const std::string& name, const shell::TakeBlock& take) const {
  const shell::File file = regularFile(open(path, O_RDONLY), "rb", "read", name);
  shell::readBlocks(file.get(), name, take);
}

void FilesBeneath::save(const fs::path& path, std::string_view content, const std::string& name) const {
  const shell::File file = regularFile(open(path, O_WRONLY | O_CREAT | O_EXCL), "wb", "write", name);
  const bool written = std::fwrite(content.data(), 1, content.size(), file.get()) == content.size();
  if (written && std::fflush(file.get()) == 0 && ::fsync(::fileno(file.get())) == 0) return;
  const int error = errno;
  ::unlinkat(directory_, path.c_str(), 0);  // the file was created here
  failFile("write", name, error);
}

}  // namespace virtualtv::net
