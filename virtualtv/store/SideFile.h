#pragma once

#include <string>

namespace virtualtv {

/// A file beside a database, reached the way SQLite reaches its own: on the same disk, and as safe there. Operations
/// answer SQLite's codes, SQLITE_OK when all went well.
class SideFile {
 public:
  /// @param name  absolute.
  explicit SideFile(std::string name) : name_(std::move(name)) {}

  const std::string& name() const { return name_; }
  /// @param found  receives whether it is there; also one that is empty, or that this process may not read, or both.
  int find(bool& found) const;
  /// @param found  receives whether it is there with something in it.
  int findContent(bool& found) const;
  /// Makes it, with nothing in it, unless it is there. It is on the disk, name and all, when this returns.
  int make() const;
  /// It is gone for good when this returns, also when it was not there.
  int remove() const;

 private:
  int ask(int question, bool& answer) const;

  std::string name_;
};

}  // namespace virtualtv
