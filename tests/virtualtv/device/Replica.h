// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "set/Event.h"
#include "set/Tv.h"

namespace virtualtv::device {

/// A copy of what a set is, kept up to date by the changes that it tells.
class Replica {
 public:
  explicit Replica(Tv& tv);

  /// Does to the copy what a change says was done to the set. @param tv  is read for the services when their list is
  /// another one. @return false when the change says of what was before what the copy does not have.
  bool apply(const Change& change, Tv& tv);

  /// What differs from the set, in words; empty where nothing does.
  std::string differences(Tv& tv) const;

 private:
  struct Applier;

  TvState state_;
  std::map<std::string, Setting> settings_;
  std::map<ServiceKey, Service> services_;
};

}  // namespace virtualtv::device
