// SPDX-License-Identifier: MIT
// The verbs that change the list of services, and their effect on what the windows show.
#include <algorithm>
#include <stdexcept>
#include <utility>

#include "set/Keeping.h"
#include "set/StorageParts.h"
#include "set/Tv.h"
#include "store/Transaction.h"

namespace virtualtv {

namespace {

/// The services of a window before an import. The import may change their keys, but not their ids.
struct Shown {
  std::optional<Service> current;
  std::optional<Service> previous;
};

using ShownInWindows = std::array<Shown, windowIds.size()>;

ShownInWindows shownIn(const TvState& state, const ServiceStore& services) {
  ShownInWindows shown;
  for (const WindowId id : windowIds) {
    const WindowState& window = state[id];
    shown[static_cast<std::size_t>(id)] = {services.read(window.service), services.read(window.previousService)};
  }
  return shown;
}

/// The key of a service after an import; 0 when it is gone.
ServiceKey keyNow(const std::optional<Service>& service, const ServiceStore& services) {
  if (!service) return 0;
  const auto id = service->numbers.find(TCServiceData::SERVICE_ID);
  return id == service->numbers.end() ? 0 : services.keyOf(id->second).value_or(0);
}

/// Keeps the tracks in use, unless the service now has other tracks.
void keepTracks(WindowState& window, const std::optional<Service>& before, const ServiceStore& services) {
  if (!before) return;
  if (services.audio(window.service) != before->audio) window.inUse.audio = TracksInUse().audio;
  if (services.subtitles(window.service) != before->subtitles) window.inUse.subtitle = TracksInUse().subtitle;
}

/// Updates a window after all services were replaced, so that it shows the same service. @return false when that is
/// gone.
bool find(WindowState& window, const Shown& before, const ServiceStore& services) {
  window.previousService = keyNow(before.previous, services);
  const ServiceKey key = keyNow(before.current, services);
  if (key != 0) window.service = key;
  return key != 0;
}

/// Updates the windows and the start service after the services were replaced. A service that still exists is kept.
/// Otherwise the main window and the start service get the first service of the list, and the picture-in-picture window
/// gets none. A picture-in-picture window that had no service follows the main window, so that its TV mode changes too.
void moveWhatIsGone(TvState& state, const ShownInWindows& shown, const Service& first, const ServiceStore& services) {
  const std::uint64_t firstId = first.numbers.at(TCServiceData::SERVICE_ID);
  const TvMode mode{static_cast<int>(first.numbers.at(TCServiceData::ANTENNA_MODE)), 0};
  bool mainMoves = false;
  for (const WindowId id : windowIds) {
    const Shown& before = shown[static_cast<std::size_t>(id)];
    const bool main = id == WindowId::main;
    const bool moves = !find(state[id], before, services) && (main || before.current || mainMoves);
    if (main) mainMoves = moves;
    if (!moves) continue;
    state[id].mode = mode;
    state[id].bring(main ? services.keyOf(firstId).value_or(0) : 0);
  }
  if (services.keyOf(state.startServiceId)) return;
  state.startServiceId = firstId;
  state.startSource = SOURCE_TV;
}

}  // namespace

ServiceChanges Tv::import(const std::vector<Service>& services, bool add) {
  if (services.empty()) throw std::invalid_argument("there are no services to import");
  return changeList("import services", {}, [&](ServiceStore& store, TvState& next) {
    const ShownInWindows shown = shownIn(next, store);
    const ServiceChanges counts = add ? store.merge(services) : store.renew(services);
    if (!add) moveWhatIsGone(next, shown, services.front(), store);
    for (const WindowId id : windowIds) keepTracks(next[id], shown[static_cast<std::size_t>(id)].current, store);
    return counts;
  });
}

/// Changes the list and the state in one transaction. @param edit  see `ServicesChanged`. @return what `change`
/// returns.
ServiceChanges Tv::changeList(const char* what, std::optional<ListEdit> edit,
                              const std::function<ServiceChanges(ServiceStore&, TvState&)>& change) {
  ServiceStore& store = storage_.parts().services;
  replacing_.tell();
  const std::size_t before = store.size();
  TvState next = state_;
  Transaction transaction(storage_.parts().database, what);
  const ServiceChanges counts = change(store, next);
  storage_.parts().state.setAll(keptOf(next));
  transaction.commit();
  std::vector<Change> changes;
  if (counts != ServiceChanges()) changes.emplace_back(ServicesChanged{before, store.size(), counts, edit});
  appendChanges(state_, next, changes);
  state_ = std::move(next);
  raise(std::move(changes));
  return counts;
}

bool Tv::removeService(ServiceKey service) {
  const std::optional<Service> gone = services().read(service);
  if (!gone) return false;
  changeList("remove a service", ListEdit{service}, [&](ServiceStore& store, TvState& next) {
    store.remove(service);
    const std::vector<ServiceKey> left = store.keys();
    const ServiceKey first = left.empty() ? 0 : left.front();
    for (WindowState& window : next.windows) {
      const ServiceKey previous = window.previousService == service ? 0 : window.previousService;
      if (window.service == service && !follow(window, first)) window.bring(0);
      window.previousService = previous;
    }
    if (const auto other = store.read(first); other && !store.keyOf(next.startServiceId)) {
      const auto id = other->numbers.find(TCServiceData::SERVICE_ID);
      if (id != other->numbers.end()) next.startServiceId = id->second;
    }
    return ServiceChanges{.gone = 1};
  });
  return true;
}

bool Tv::moveService(ServiceKey service, ServiceKey place) {
  std::vector<ServiceKey> keys = services().keys();
  const auto from = std::find(keys.begin(), keys.end(), service);
  const auto to = std::find(keys.begin(), keys.end(), place);
  if (from == keys.end() || to == keys.end()) return false;
  const auto start = std::min(from, to);
  const auto end = std::max(from, to) + 1;
  std::vector<std::pair<std::uint64_t, std::uint64_t>> numbers;
  for (auto key = start; key != end; ++key) {
    const std::optional<Service> one = services().read(*key);
    const auto major = one->numbers.find(TCServiceData::MAJOR);
    if (major == one->numbers.end()) return false;
    const auto minor = one->numbers.find(TCServiceData::MINOR);
    numbers.emplace_back(major->second, minor == one->numbers.end() ? 0 : minor->second);
  }
  if (from == to) return true;
  const std::uint64_t number = numbers[static_cast<std::size_t>(to - start)].first;
  from < to ? std::rotate(from, from + 1, end) : std::rotate(to, from, end);
  changeList("move a service", ListEdit{service, number}, [&](ServiceStore& store, TvState&) {
    for (auto key = start; key != end; ++key) {
      const auto& [major, minor] = numbers[static_cast<std::size_t>(key - start)];
      store.set(*key, TCServiceData::MAJOR, major);
      store.set(*key, TCServiceData::MINOR, minor);
    }
    return ServiceChanges{.changed = numbers.size()};
  });
  return true;
}

void Tv::removeServices() {
  ServiceStore& store = storage_.parts().services;
  replacing_.tell();
  const std::size_t before = store.size();
  std::vector<Change> changes;
  if (before > 0) changes.emplace_back(ServicesChanged{before, 0, {.gone = before}});
  TvState next = state_;
  for (WindowState& window : next.windows) {
    window.bring(0);
    window.previousService = 0;
  }
  appendChanges(state_, next, changes);
  Transaction transaction(storage_.parts().database, "remove the services");
  store.replaceAll({});
  storage_.parts().state.setAll(keptOf(next));
  transaction.commit();
  state_ = std::move(next);
  raise(std::move(changes));
}

}  // namespace virtualtv
