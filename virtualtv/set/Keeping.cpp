// SPDX-License-Identifier: MIT
#include "set/Keeping.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <stdexcept>
#include <utility>

#include "services/ListText.h"
#include "set/EmbeddedSet.h"
#include "set/Persisted.h"
#include "store/StoreError.h"
#include "store/Transaction.h"
#include "text/Numbers.h"

namespace virtualtv {

namespace {

const std::array schema{settingsTables, serviceTables, listEntries, footageTables};

// The persisted form of a value: the digits of a number, the text of a list.

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
void read(const std::string& text, const Persisted& place, Number& number) {
  number = text::requireNumber<Number>(text, place.range<Number>());
}
void read(const std::string& text, const Persisted&, std::vector<AudioTrack>& tracks) {
  tracks = readAllAudioTracks(text);
}
void read(const std::string& text, const Persisted&, std::vector<SubtitleTrack>& tracks) {
  tracks = readAllSubtitleTracks(text);
  orderByKind(tracks);
}

/// The version of the set that persisted these values.
Since dayOf(const std::map<std::string, std::string>& kept, TvState& state) {
  Since day = Since::first;
  visitPersisted(state, [&](const Persisted& place, auto&) {
    if (kept.contains(place.name)) day = std::max(day, place.since);
  });
  return day;
}

/// Fills a database with the embedded set, unless it already contains a set, as an older database does.
void furnishNew(Database& database) {
  ServiceStore services(database);
  SettingsStore settings(database);
  SetStateStore state(database);
  if (state.all().empty()) furnish(database, services, settings, state);
}

/// A database with the embedded set, to copy from: whoever runs many sets would spend most of the time filling them.
const Database& furnished() {
  static const Database database(Database::inMemory, schema, furnishNew);
  return database;
}

/// A new database with the embedded set. The first one of a process is filled directly: most processes need no other,
/// and would hold `furnished` for nothing. Later ones are copies of `furnished`.
Database furnishedAnew() {
  static std::atomic_flag isFirstMade = ATOMIC_FLAG_INIT;
  if (!isFirstMade.test_and_set()) return {Database::inMemory, schema, furnishNew};
  return {Database::inMemory, furnished()};
}

}  // namespace

Storage::Parts::Parts() : database(furnishedAnew()), services(database), settings(database), state(database) {}

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
  visitPersisted(state,
                 [&](Persisted place, const auto& value) { kept.emplace(std::move(place.name), written(value)); });
  return kept;
}

TvState switchedOn(const TvState& state) {
  TvState next = embeddedSet().state;
  restore(keptOf(state), "memory", next);
  return next;
}

TvState furnish(Database& database, ServiceStore& services, SettingsStore& settings, SetStateStore& state) {
  const SetDescription& set = embeddedSet();
  Transaction transaction(database, "set up the embedded set");
  settings.replaceAll({{lastServiceKey, lastServiceOnTv}});
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
  visitPersisted(state, [&](const Persisted& place, auto& value) {
    const auto found = kept.find(place.name);
    if (found == kept.end() && place.since > day) return;
    try {
      if (found == kept.end()) throw std::invalid_argument("it is not there");
      read(found->second, place, value);
    } catch (const std::invalid_argument& error) {
      throw StoreError(file + ": cannot read " + place.name + " of the set that is kept: " + error.what());
    }
  });
}

}  // namespace virtualtv
