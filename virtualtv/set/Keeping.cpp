#include "set/Keeping.h"

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "services/ListText.h"
#include "set/EmbeddedSet.h"
#include "store/StoreError.h"
#include "store/Transaction.h"
#include "text/Numbers.h"

namespace virtualtv {

namespace {

const std::array schema{settingsTables, serviceTables};

// How a value is kept: a number by its digits, a list by its text.

template <typename Number>
std::string written(Number number) {
  return std::to_string(number);
}
std::string written(const std::vector<AudioTrack>& tracks) {
  return textOf(tracks);
}
std::string written(const std::vector<SubtitleTrack>& tracks) {
  return textOf(tracks);
}

template <typename Number>
void read(const std::string& text, Number& number) {
  constexpr text::Range range = text::rangeOf<Number>();
  const auto value = text::numberIn(text, range);
  if (!value) throw std::invalid_argument("'" + text + "': " + text::describe(range) + " is wanted");
  number = static_cast<Number>(*value);
}
void read(const std::string& text, std::vector<AudioTrack>& tracks) {
  tracks = readAudioTracks(text);
}
void read(const std::string& text, std::vector<SubtitleTrack>& tracks) {
  tracks = readIspSubtitles(text);
}

/// What a set kept has grown, without new tables: a set of an earlier day has none of the names that came later, but
/// all that it knew.
enum class Since { first, inputs, pictures, tracks };

/// Visits every kept value of a state under its name, with the day since which it is kept.
template <typename State, typename Visit>
void visit(State& state, Visit visitor) {
  visitor("region", state.region, Since::first);
  visitor("country", state.country, Since::first);
  visitor("isp.present", state.isp.present, Since::inputs);
  visitor("isp.shown", state.isp.shown, Since::inputs);
  visitor("isp.width", state.isp.width, Since::pictures);
  visitor("isp.height", state.isp.height, Since::pictures);
  visitor("isp.audio", state.isp.audio, Since::tracks);
  visitor("isp.subtitles", state.isp.subtitles, Since::tracks);
  visitor("isp.audio_in_use", state.isp.inUse.audio, Since::tracks);
  visitor("isp.subtitle_in_use", state.isp.inUse.subtitle, Since::tracks);
  visitor("tuner.fade", state.fade, Since::inputs);
  visitor("start.service", state.startServiceId, Since::first);
  visitor("start.source", state.startSource, Since::first);
  for (auto& input : state.inputs) {
    const std::string prefix = "input." + std::to_string(input.source) + ".";
    visitor(prefix + "plugged", input.plugged, Since::first);
    visitor(prefix + "width", input.picture.width, Since::pictures);
    visitor(prefix + "height", input.picture.height, Since::pictures);
    visitor(prefix + "rate", input.picture.rate, Since::pictures);
  }
  for (const WindowId id : windowIds) {
    auto& window = state[id];
    const std::string prefix = std::string(nameOf(id)) + ".";
    visitor(prefix + "source_state", window.sourceState, Since::first);
    visitor(prefix + "source", window.source, Since::first);
    visitor(prefix + "previous_source", window.previousSource, Since::first);
    visitor(prefix + "antenna", window.mode.antenna, Since::first);
    visitor(prefix + "service_mode", window.mode.service, Since::first);
    visitor(prefix + "service", window.service, Since::first);
    visitor(prefix + "previous_service", window.previousService, Since::first);
    visitor(prefix + "audio", window.inUse.audio, Since::tracks);
    visitor(prefix + "subtitle", window.inUse.subtitle, Since::tracks);
  }
}

/// The day of a set that keeps this.
Since dayOf(const std::map<std::string, std::string>& kept, TvState& state) {
  Since day = Since::first;
  visit(state, [&](const std::string& name, auto&, Since since) {
    if (kept.contains(name)) day = std::max(day, since);
  });
  return day;
}

/// Gives a database that has just got its tables the embedded set, unless an older one keeps a set already.
void furnishNew(Database& database) {
  ServiceStore services(database);
  SettingsStore settings(database);
  SetStateStore state(database);
  if (state.all().empty()) furnish(database, services, settings, state);
}

/// The embedded set, filled once a process: whoever runs many sets would spend most time on filling them.
const Database& furnished() {
  static const Database database(Database::inMemory, schema, furnishNew);
  return database;
}

}  // namespace

Storage::Parts::Parts()
    : database(Database::inMemory, furnished()), services(database), settings(database), state(database) {}

Storage::Parts::Parts(const std::filesystem::path& path)
    : directory(path),
      database(directory->databaseFile(), schema, furnishNew),
      services(database),
      settings(database),
      state(database) {}

Storage::Storage() : parts_(std::make_unique<Parts>()) {}
Storage::Storage(const std::filesystem::path& directory) : parts_(std::make_unique<Parts>(directory)) {}
Storage::~Storage() = default;

std::map<std::string, std::string> keptOf(const TvState& state) {
  std::map<std::string, std::string> kept;
  visit(state, [&](std::string name, const auto& value, Since) { kept.emplace(std::move(name), written(value)); });
  return kept;
}

TvState furnish(Database& database, ServiceStore& services, SettingsStore& settings, SetStateStore& state) {
  const SetDescription& set = embeddedSet();
  Transaction transaction(database, "set up the embedded set");
  for (const auto& [key, value] : settings.list()) settings.unset(key);
  settings.set(lastServiceKey, std::string(lastServiceOnTv));
  services.replaceAll(embeddedServices());
  TvState next = set.state;
  next[WindowId::main].service = services.keyOf(set.currentId).value_or(0);
  next[WindowId::main].previousService = services.keyOf(set.previousId).value_or(0);
  state.setAll(keptOf(next));
  transaction.commit();
  return next;
}

std::map<std::string, std::string> keptIn(Storage::Parts& parts) {
  auto kept = parts.state.all();
  if (kept.empty()) throw StoreError(parts.database.name() + ": cannot read the state of the set: there is none in it");
  return kept;
}

void restore(const std::map<std::string, std::string>& kept, const std::string& file, TvState& state) {
  const Since day = dayOf(kept, state);
  visit(state, [&](const std::string& name, auto& value, Since since) {
    const auto found = kept.find(name);
    if (found == kept.end() && since > day) return;
    try {
      if (found == kept.end()) throw std::invalid_argument("it is not there");
      read(found->second, value);
    } catch (const std::invalid_argument& error) {
      throw StoreError(file + ": cannot read " + name + " of the set that is kept: " + error.what());
    }
  });
}

}  // namespace virtualtv
