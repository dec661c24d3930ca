// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "Disk.h"

namespace virtualtv::proof {

/// How much of what was written but not synced a disk still holds when the power goes.
enum class Rest { none, some, all };

/// A disk that is written to until the power goes. What was synced is there afterwards; of the rest, any part may be:
/// some writes and not those before them, and sectors of a write and not others.
class PowerLoss {
 public:
  explicit PowerLoss(const Image& start);

  /// The disk is changed.
  void apply(const Change& change);

  /// What it holds when the power goes here.
  Image image(Rest rest, std::mt19937& random) const;

 private:
  struct File {
    std::optional<std::string> synced;  ///< nothing while the file need not be there
    std::vector<Change> pending;
  };

  void syncRemovals();

  std::map<std::string, File> files_;
};

}  // namespace virtualtv::proof
