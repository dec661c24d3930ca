#pragma once

#include <filesystem>
#include <functional>

namespace virtualtv {

/// The directory in which a set keeps its state, held for this process alone for as long as the object lives. Made,
/// readable by its owner only, where it does not exist. Whoever opens the state holds one.
class StateDirectory {
 public:
  /// Asked each time another process holds the directory. @return true, after a while, to try again.
  using Wait = std::function<bool()>;
  /// Waits two seconds in all, so that a process that is about to end can do so.
  static Wait twoSeconds();

  /// @throws StoreError when it can't be made or written to, or when another process still holds it after the wait;
  /// that names the process.
  explicit StateDirectory(const std::filesystem::path& path, const Wait& wait = twoSeconds());
  StateDirectory(const StateDirectory&) = delete;
  StateDirectory& operator=(const StateDirectory&) = delete;
  ~StateDirectory();

  const std::filesystem::path& path() const { return path_; }
  /// Where the set's database stands, whether or not it exists yet.
  std::filesystem::path databaseFile() const { return path_ / "tv.db"; }

 private:
  void make() const;
  void lock(const Wait& wait);
  [[noreturn]] void fail(const std::string& reason) const;

  std::filesystem::path path_;
  int lock_ = -1;
};

}  // namespace virtualtv
