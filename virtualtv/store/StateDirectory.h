// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>

namespace virtualtv {

/// The directory in which a set stores its state, locked for this process while the object lives. A missing directory
/// is created, readable by its owner only. Whoever opens the state holds one of these.
class StateDirectory {
 public:
  /// Called each time another process holds the lock. @return true, after waiting a while, to try again.
  using Wait = std::function<bool()>;
  /// Waits two seconds in all, so that a process that is about to end can do so.
  static Wait twoSeconds();

  /// @throws StoreError when the directory can't be created or written to, or when another process still holds it after
  /// the wait. The message then names that process.
  explicit StateDirectory(const std::filesystem::path& path, const Wait& wait = twoSeconds());
  StateDirectory(const StateDirectory&) = delete;
  StateDirectory& operator=(const StateDirectory&) = delete;
  ~StateDirectory();

  const std::filesystem::path& path() const { return path_; }
  /// The path of the set's database, which need not exist yet.
  std::filesystem::path databaseFile() const { return path_ / "tv.db"; }

 private:
  void make() const;
  void lock(const Wait& wait);
  [[noreturn]] void fail(const std::string& reason) const;

  std::filesystem::path path_;
  int lock_ = -1;
};

}  // namespace virtualtv
