// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "Disk.h"

namespace virtualtv::proof {

/// How much unsynced data survives on a disk after a power cut.
enum class Rest { none, some, all };

/// A disk that is written to until a power cut. Synced data survives. Of all other data any part may survive: a write
/// without the earlier ones, and some sectors of a write without the others.
class PowerLoss {
 public:
  explicit PowerLoss(const Image& start);

  /// Applies a change to the disk.
  void apply(const Change& change);

  /// The content after a power cut at this point.
  Image image(Rest rest, std::mt19937& random) const;

 private:
  struct File {
    std::optional<std::string> synced;  ///< null while the file may be absent
    std::vector<Change> pending;
  };

  void syncRemovals();

  std::map<std::string, File> files_;
};

}  // namespace virtualtv::proof
