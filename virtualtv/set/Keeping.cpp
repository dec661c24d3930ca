#include "set/Keeping.h"

#include <array>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "services/ListText.h"
#include "set/EmbeddedSet.h"
#include "store/StoreError.h"
#include "store/Transaction.h"
#include "text/Units.h"

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
  std::istringstream(text) >> number;
}
void read(const std::string& text, std::vector<AudioTrack>& tracks) {
  tracks = readAudioTracks(text);
}
void read(const std::string& text, std::vector<SubtitleTrack>& tracks) {
  tracks = readIspSubtitles(text);
}

/// Visits every kept value of a state under its name.
template <typename State, typename Visit>
void visit(State& state, Visit visitor) {
  visitor("region", state.region);
  visitor("country", state.country);
  visitor("isp.present", state.isp.present);
  visitor("isp.shown", state.isp.shown);
  visitor("isp.width", state.isp.width);
  visitor("isp.height", state.isp.height);
  visitor("isp.audio", state.isp.audio);
  visitor("isp.subtitles", state.isp.subtitles);
  visitor("isp.audio_in_use", state.isp.inUse.audio);
  visitor("isp.subtitle_in_use", state.isp.inUse.subtitle);
  visitor("tuner.fade", state.fade);
  visitor("start.service", state.startServiceId);
  visitor("start.source", state.startSource);
  for (auto& input : state.inputs) {
    const std::string prefix = "input." + std::to_string(input.source) + ".";
    visitor(prefix + "plugged", input.plugged);
    visitor(prefix + "width", input.picture.width);
    visitor(prefix + "height", input.picture.height);
    visitor(prefix + "rate", input.picture.rate);
  }
  for (const WindowId id : windowIds) {
    auto& window = state[id];
    const std::string prefix = std::string(nameOf(id)) + ".";
    visitor(prefix + "source_state", window.sourceState);
    visitor(prefix + "source", window.source);
    visitor(prefix + "previous_source", window.previousSource);
    visitor(prefix + "antenna", window.mode.antenna);
    visitor(prefix + "service_mode", window.mode.service);
    visitor(prefix + "service", window.service);
    visitor(prefix + "previous_service", window.previousService);
    visitor(prefix + "audio", window.inUse.audio);
    visitor(prefix + "subtitle", window.inUse.subtitle);
  }
}

/// Gives a database that has just got its tables the embedded set, unless an older one keeps a set already.
void furnishNew(Database& database) {
  ServiceStore services(database);
  SettingsStore settings(database);
  SetStateStore state(database);
  if (state.all().empty()) furnish(database, services, settings, state);
}

}  // namespace

Storage::Parts::Parts()
    : database(Database::inMemory, schema, furnishNew), services(database), settings(database), state(database) {}

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
  visit(state, [&](std::string name, const auto& value) { kept.emplace(std::move(name), written(value)); });
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
  visit(state, [&](const std::string& name, auto& value) {
    const auto found = kept.find(name);
    if (found == kept.end()) return;
    try {
      read(found->second, value);
    } catch (const std::invalid_argument& error) {
      const std::string reason = error.what();  // which shows what is kept, and that may be anything
      throw StoreError(file + ": cannot read " + name +
                       " of the set that is kept: " + (text::isPrintable(reason) ? reason : text::printable(reason)));
    }
  });
}

}  // namespace virtualtv
