#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "shell/Files.h"

namespace virtualtv::shell {

/// What a session reaches of files. What fails throws std::runtime_error `cannot read NAME: REASON`, or `write`.
class FileAccess {
 public:
  FileAccess() = default;
  FileAccess(const FileAccess&) = delete;
  FileAccess& operator=(const FileAccess&) = delete;
  virtual ~FileAccess() = default;

  /// Whether they are those of the one who runs the program, who may name any file.
  virtual bool areOwn() const { return false; }
  /// The directory that a session starts in.
  virtual std::filesystem::path start() const = 0;
  enum class Kind { missing, file, directory };
  /// What is there. Where that can't be told it is a file, which fails when it is read.
  virtual Kind kindOf(const std::filesystem::path& path) const = 0;
  /// All of a file. @param name  what messages call it.
  virtual std::string read(const std::filesystem::path& path, const std::string& name) const = 0;
  /// The same block by block, whatever its length.
  virtual void readBlocks(const std::filesystem::path& path, const std::string& name, const TakeBlock& take) const = 0;
  virtual void save(const std::filesystem::path& path, std::string_view content, const std::string& name) const = 0;
};

/// Those of the one who runs the program: all that the process reaches, files that exist are replaced.
const FileAccess& allFiles();

/// None: every file fails with a reason.
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

/// None, for clients of a server.
const FileAccess& noFiles();

}  // namespace virtualtv::shell
