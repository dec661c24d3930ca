#pragma once

#include <string>

namespace virtualtv {

/// A file beside a database, reached the way SQLite reaches its own: on the same disk, and as safe there. Operations
/// answer SQLite's codes, SQLITE_OK when all went well.
class SideFile {
 public:
  /// @param name  absolute.
  explicit SideFile(std::string name) : name_(std::move(name)) {}

  /// @param found  receives whether it is there; also one that is empty, or that this process may not read.
  int find(bool& found) const;
  /// Makes it, with nothing in it, unless it is there. It is on the disk, name and all, when this returns.
  int make() const;
  int remove() const;

 private:
  std::string name_;
};

}  // namespace virtualtv
