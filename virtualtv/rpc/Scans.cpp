// SPDX-License-Identifier: MIT
#include "rpc/Scans.h"

#include <algorithm>
#include <utility>

namespace virtualtv::rpc {

broadcast::Scanner& Scans::begin(const std::string& session) {
  return *replace({session, std::make_unique<broadcast::Scanner>(), {}}).scanner;
}

broadcast::Scanner* Scans::underWay(const std::string& session) {
  const Entry* const entry = entryOf(session);
  return entry != nullptr ? entry->scanner.get() : nullptr;
}

const Scans::Found& Scans::keep(const std::string& session, Found found) {
  return replace({session, nullptr, std::move(found)}).found;
}

const Scans::Found* Scans::found(const std::string& session) {
  const Entry* const entry = entryOf(session);
  return entry != nullptr && !entry->scanner ? &entry->found : nullptr;
}

void Scans::forget(const std::string& session) {
  std::erase_if(entries_, [&](const Entry& entry) { return entry.session == session; });
}

Scans::Entry* Scans::entryOf(const std::string& session) {
  const auto entry =
      std::find_if(entries_.begin(), entries_.end(), [&](const Entry& each) { return each.session == session; });
  return entry != entries_.end() ? &*entry : nullptr;
}

Scans::Entry& Scans::replace(Entry entry) {
  forget(entry.session);
  if (entries_.size() == most) entries_.pop_front();
  return entries_.emplace_back(std::move(entry));
}

}  // namespace virtualtv::rpc
