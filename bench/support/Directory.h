// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace bench {

/// A temporary directory, removed with the object. The system's temporary folder is not used, since it may be in
/// memory.
class Directory {
 public:
  /// @param below  the parent directory.
  explicit Directory(const std::filesystem::path& below) {
    std::string path = (below / "bench-XXXXXX").string();
    if (::mkdtemp(path.data()) == nullptr) throw std::runtime_error("no directory can be made at " + path);
    path_ = path;
  }
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;
  ~Directory() { std::filesystem::remove_all(path_); }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace bench
