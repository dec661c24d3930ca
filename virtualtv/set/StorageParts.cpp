// SPDX-License-Identifier: MIT
#include "set/StorageParts.h"

#include <array>
#include <atomic>
#include <utility>

#include "set/EmbeddedSet.h"
#include "set/Keeping.h"
#include "store/StoreError.h"
#include "store/Transaction.h"

namespace virtualtv {

namespace {

const std::array schema{settingsTables, serviceTables, listEntries, footageTables};

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

}  // namespace virtualtv
