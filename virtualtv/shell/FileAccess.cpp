// SPDX-License-Identifier: MIT
#include "shell/FileAccess.h"

#include <system_error>

#include "shell/Files.h"
#include "shell/OpenFile.h"

namespace virtualtv::shell {

namespace {

namespace fs = std::filesystem;

class AllFiles : public FileAccess {
 public:
  bool areOwn() const override { return true; }
  fs::path start() const override { return fs::current_path(); }
  Kind kindOf(const fs::path& path) const override {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) return Kind::missing;
    return fs::is_directory(status) ? Kind::directory : Kind::file;
  }
  std::string read(const fs::path& path, const std::string& name) const override { return readFile(path, name); }
  void readBlocks(const fs::path& path, const std::string& name, const TakeBlock& take) const override {
    readFileInBlocks(path, name, take);
  }
  void save(const fs::path& path, std::string_view content, const std::string& name) const override {
    saveFile(path, content, name);
  }
};

}  // namespace

std::string NoFiles::read(const fs::path&, const std::string& name) const {
  failFile("read", name, reason_);
}

void NoFiles::readBlocks(const fs::path&, const std::string& name, const TakeBlock&) const {
  failFile("read", name, reason_);
}

void NoFiles::save(const fs::path&, std::string_view, const std::string& name) const {
  failFile("write", name, reason_);
}

const FileAccess& allFiles() {
  static const AllFiles files;
  return files;
}

const FileAccess& noFiles() {
  static const NoFiles files("clients reach no files unless the server is started with --files");
  return files;
}

}  // namespace virtualtv::shell
