// SPDX-License-Identifier: MIT
#include "set/Past.h"

#include <utility>
#include <variant>

#include "services/ServiceStore.h"
#include "set/Keeping.h"
#include "set/Tv.h"

namespace virtualtv {

Past::Past(const Tv& tv) : tv_(tv), state_(tv.state()), services_(tv.services().size()) {}

void Past::undo(const Change& change, const std::shared_ptr<const ServiceImage>& services) {
  virtualtv::undo(change, state_);
  virtualtv::undo(change, settings_);
  if (const auto* replaced = std::get_if<ServicesChanged>(&change)) {
    services_ = replaced->before;
    image_ = services;
    edits_.clear();
  } else if (const ServiceKey key = changedService(change); key != 0) {
    edits_[key].push_back(&change);
  }
}

std::optional<Service> Past::service(ServiceKey key) const {
  auto service = image_ ? image_->read(key) : tv_.services().read(key);
  const auto edits = edits_.find(key);
  if (!service || edits == edits_.end()) return service;
  for (const Change* edit : edits->second) virtualtv::undo(*edit, *service);
  return service;
}

Snapshot Past::snapshot() const {
  Snapshot snapshot{switchedOn(state_), tv_.settings().list(), image_ ? image_->all() : tv_.services().all()};
  for (const auto& [key, value] : settings_) {
    snapshot.settings.erase(key);
    if (value) snapshot.settings.emplace(key, *value);
  }
  for (const auto& [key, edits] : edits_) {
    const auto service = snapshot.services.find(key);
    if (service == snapshot.services.end()) continue;
    for (const Change* edit : edits) virtualtv::undo(*edit, service->second);
  }
  return snapshot;
}

}  // namespace virtualtv
