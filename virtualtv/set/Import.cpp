// The verb that takes in a channel list, and what becomes of the services that windows show.
#include <stdexcept>
#include <utility>

#include "set/Keeping.h"
#include "set/Tv.h"
#include "store/Transaction.h"

namespace virtualtv {

namespace {

/// The services of a window before an import: keys may change in it, ids do not.
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

/// Key of a service among those that an import has left; 0 where it is gone.
ServiceKey keyNow(const std::optional<Service>& service, const ServiceStore& services) {
  if (!service) return 0;
  const auto id = service->numbers.find(TCServiceData::SERVICE_ID);
  return id == service->numbers.end() ? 0 : services.keyOf(id->second).value_or(0);
}

/// Tracks stay in use unless their service has got others.
void keepTracks(WindowState& window, const std::optional<Service>& before, const ServiceStore& services) {
  if (!before) return;
  if (services.audio(window.service) != before->audio) window.inUse.audio = TracksInUse().audio;
  if (services.subtitles(window.service) != before->subtitles) window.inUse.subtitle = TracksInUse().subtitle;
}

/// Finds what a window shows in a list that has replaced all services. @return false when it is gone.
bool find(WindowState& window, const Shown& before, const ServiceStore& services) {
  window.previousService = keyNow(before.previous, services);
  const ServiceKey key = keyNow(before.current, services);
  if (key != 0) window.service = key;
  return key != 0;
}

/// Finds what the windows show and the set starts with, and moves what is gone to the first service of the list. A
/// window without a service goes along with the main one.
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
  ServiceStore& store = storage_.parts().services;
  replacing_.tell();
  const std::size_t before = store.size();
  Transaction transaction(storage_.parts().database, "import services");
  const ShownInWindows shown = shownIn(state_, store);
  const ServiceChanges counts = add ? store.merge(services) : store.renew(services);
  TvState next = state_;
  if (!add) moveWhatIsGone(next, shown, services.front(), store);
  for (const WindowId id : windowIds) keepTracks(next[id], shown[static_cast<std::size_t>(id)].current, store);
  storage_.parts().state.setAll(keptOf(next));
  transaction.commit();
  std::vector<Change> changes;
  if (counts != ServiceChanges()) changes.emplace_back(ServicesChanged{before, store.size(), counts});
  appendChanges(state_, next, changes);
  state_ = std::move(next);
  raise(std::move(changes));
  return counts;
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
