// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "services/Service.h"
#include "services/ServiceImage.h"
#include "set/Event.h"
#include "set/Snapshot.h"
#include "set/State.h"
#include "store/SettingsStore.h"

namespace virtualtv {

class Tv;

/// A set as it was at an earlier moment. It starts as the current set; then the changes since that moment are undone,
/// the last one first. Services are read on demand, so use this object before anything changes again. Reading services
/// throws `StoreError`.
class Past {
 public:
  /// @param tv  outlives it.
  explicit Past(const Tv& tv);

  /// Undoes a change. @param change  outlives this object.
  /// @param services  the services before a `ServicesChanged`; null is allowed for other changes only.
  void undo(const Change& change, const std::shared_ptr<const ServiceImage>& services);

  const TvState& state() const { return state_; }
  /// Returns nothing when there was no such service.
  std::optional<Service> service(ServiceKey key) const;
  /// How many services there were.
  std::size_t services() const { return services_; }
  /// Everything that the set had persisted.
  Snapshot snapshot() const;

 private:
  const Tv& tv_;
  TvState state_;
  std::map<std::string, std::optional<Setting>> settings_;  ///< the keys that differ from those of `tv_`
  std::size_t services_;
  std::shared_ptr<const ServiceImage> image_;               ///< null for the services of `tv_`
  std::map<ServiceKey, std::vector<const Change*>> edits_;  ///< later changes, by service; the last one first
};

}  // namespace virtualtv
