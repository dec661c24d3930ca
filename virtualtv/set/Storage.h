// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>

namespace virtualtv {

/// The storage of a set: its databases. Outlives the set that runs on it.
class Storage {
 public:
  /// A store in memory, gone with this object.
  Storage();
  /// The store in a state directory, which is created if missing and locked for this process. @throws StoreError when
  /// the directory can't be created, locked or read.
  explicit Storage(const std::filesystem::path& directory);
  ~Storage();

  struct Parts;
  Parts& parts() { return *parts_; }

 private:
  std::unique_ptr<Parts> parts_;
};

}  // namespace virtualtv
