// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "shell/FileAccess.h"
#include "shell/OpenFile.h"

namespace virtualtv::net {

/// Opens a file for reading. @param name  the name of the file in messages. @throws std::runtime_error `cannot read
/// NAME: REASON`, also when it is not a regular file.
shell::File openRegular(const std::filesystem::path& path, const std::string& name);

/// Access to the regular files beneath a directory. Links are not followed, and existing files are never overwritten.
class FilesBeneath : public shell::FileAccess {
 public:
  /// @throws std::runtime_error `cannot read DIR: REASON` when the directory can't be opened.
  explicit FilesBeneath(const std::filesystem::path& directory);
  FilesBeneath(const FilesBeneath&) = delete;
  FilesBeneath& operator=(const FilesBeneath&) = delete;
  ~FilesBeneath() override;

  /// Empty: names are relative to the directory.
  std::filesystem::path start() const override { return {}; }
  Kind kindOf(const std::filesystem::path& path) const override;
  std::string read(const std::filesystem::path& path, const std::string& name) const override;
  void readBlocks(const std::filesystem::path& path, const std::string& name,
                  const shell::TakeBlock& take) const override;
  void save(const std::filesystem::path& path, std::string_view content, const std::string& name) const override;
  /// Opens a file for reading. @param path  relative to the directory, or absolute. @throws as `read`.
  shell::File openToRead(const std::filesystem::path& path, const std::string& name) const;

 private:
  int open(const std::filesystem::path& path, int flags) const;

  std::filesystem::path path_;  ///< path of the directory, absolute
  int directory_;
};

}  // namespace virtualtv::net
