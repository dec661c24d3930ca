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

/// A set as it was at a moment. It begins as the set that there is; each change that came since is undone, the last one
/// first. Services are read when they are asked for, so it is used before anything changes again. Reading them throws
/// `StoreError`.
class Past {
 public:
  /// @param tv  outlives it.
  explicit Past(const Tv& tv);

  /// Undoes a change. @param change  outlives this object.
  /// @param services  those before a `ServicesChanged`; not null for one.
  void undo(const Change& change, const std::shared_ptr<const ServiceImage>& services);

  const TvState& state() const { return state_; }
  /// Nothing where there was no such service.
  std::optional<Service> service(ServiceKey key) const;
  /// How many services there were.
  std::size_t services() const { return services_; }
  /// All that the set persisted.
  Snapshot snapshot() const;

 private:
  const Tv& tv_;
  TvState state_;
  std::map<std::string, std::optional<Setting>> settings_;  ///< other than those of `tv_`
  std::size_t services_;
  std::shared_ptr<const ServiceImage> image_;               ///< null for the services of `tv_`
  std::map<ServiceKey, std::vector<const Change*>> edits_;  ///< that came since, by service; the last one first
};

}  // namespace virtualtv
