// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace virtualtv {

/// A file beside a database, accessed through SQLite's file layer, so that it is as durable as SQLite's own files.
/// Operations return SQLite's codes, SQLITE_OK on success.
class SideFile {
 public:
  /// @param name  absolute.
  explicit SideFile(std::string name) : name_(std::move(name)) {}

  const std::string& name() const { return name_; }
  /// @param found  set to true if the file exists, even if it is empty or this process can't read it.
  int find(bool& found) const;
  /// @param found  set to true if the file exists and is not empty.
  int findContent(bool& found) const;
  /// Creates the file, empty, unless it exists. The file and its directory entry are on disk when this returns.
  int make() const;
  /// Removes the file durably. Succeeds when there is no file.
  int remove() const;

 private:
  int ask(int question, bool& answer) const;

  std::string name_;
};

}  // namespace virtualtv
