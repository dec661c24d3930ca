// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "set/Event.h"
#include "set/Tv.h"

namespace virtualtv::device {

/// A copy of a set's state, kept up to date by the changes that it reports.
class Replica {
 public:
  explicit Replica(Tv& tv);

  /// Applies a change to the copy. @param tv  the set; its services are read when the whole list was replaced. @return
  /// false when the old value in the change differs from the copy.
  bool apply(const Change& change, Tv& tv);

  /// The differences from the set, in words; empty when there are none.
  std::string differences(Tv& tv) const;

 private:
  struct Applier;

  TvState state_;
  std::map<std::string, Setting> settings_;
  std::map<ServiceKey, Service> services_;
};

}  // namespace virtualtv::device
