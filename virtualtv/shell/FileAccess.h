// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "shell/Files.h"

namespace virtualtv::shell {

/// The files that a session can use. On failure, `read` and `readBlocks` throw std::runtime_error `cannot read NAME:
/// REASON`, and `save` throws `cannot write NAME: REASON`.
class FileAccess {
 public:
  FileAccess() = default;
  FileAccess(const FileAccess&) = delete;
  FileAccess& operator=(const FileAccess&) = delete;
  virtual ~FileAccess() = default;

  /// True for the access of the user who runs the program, and false for clients.
  virtual bool areOwn() const { return false; }
  /// The directory that a session starts in.
  virtual std::filesystem::path start() const = 0;
  enum class Kind { missing, file, directory };
  /// The kind of file at a path. When it can't be determined, this returns `file`, and reading the file reports why.
  virtual Kind kindOf(const std::filesystem::path& path) const = 0;
  /// Reads a whole file. @param name  the name of the file in messages.
  virtual std::string read(const std::filesystem::path& path, const std::string& name) const = 0;
  /// Reads a file of any length, block by block.
  virtual void readBlocks(const std::filesystem::path& path, const std::string& name, const TakeBlock& take) const = 0;
  virtual void save(const std::filesystem::path& path, std::string_view content, const std::string& name) const = 0;
};

/// The access of the user who runs the program: all files that the process can use. Writing replaces existing files.
const FileAccess& allFiles();

/// No access: every file fails with a reason.
class NoFiles : public FileAccess {
 public:
  explicit NoFiles(std::string reason) : reason_(std::move(reason)) {}

  std::filesystem::path start() const override { return {}; }
  Kind kindOf(const std::filesystem::path&) const override { return Kind::file; }
  std::string read(const std::filesystem::path& path, const std::string& name) const override;
  void readBlocks(const std::filesystem::path& path, const std::string& name, const TakeBlock& take) const override;
  void save(const std::filesystem::path& path, std::string_view content, const std::string& name) const override;

 private:
  std::string reason_;
};

/// No access, for clients of a server.
const FileAccess& noFiles();

}  // namespace virtualtv::shell
