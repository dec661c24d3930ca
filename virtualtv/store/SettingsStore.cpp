// SPDX-License-Identifier: MIT
#include "store/SettingsStore.h"

#include <algorithm>
#include <limits>

#include "store/Transaction.h"

namespace virtualtv {

namespace {

constexpr const char* keeping = "keep the state of the set";

Setting settingIn(const Rows& rows, int column) {
  if (!rows.isInteger(column)) return rows.text(column);
  using Int = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<std::int64_t>(rows.integer(column), Int::min(), Int::max()));
}

}  // namespace

const char* const settingsTables =
    "CREATE TABLE setting(key TEXT PRIMARY KEY, value ANY NOT NULL) STRICT, WITHOUT ROWID;"
    "CREATE TABLE set_state(key TEXT PRIMARY KEY, value TEXT NOT NULL) STRICT, WITHOUT ROWID;";

SettingsStore::SettingsStore(Database& database)
    : database_(database),
      get_(database, "SELECT value FROM setting WHERE key = ?", "read a setting"),
      list_(database, "SELECT key, value FROM setting", "read the settings"),
      set_(database, "INSERT INTO setting VALUES(?, ?) ON CONFLICT(key) DO UPDATE SET value = excluded.value",
           "keep a setting"),
      unset_(database, "DELETE FROM setting WHERE key = ?", "remove a setting") {}

std::optional<Setting> SettingsStore::get(std::string_view key) const {
  Rows rows = get_.query(key);
  if (!rows.next()) return std::nullopt;
  return settingIn(rows, 0);
}

void SettingsStore::set(std::string_view key, const Setting& value) {
  std::visit([&](const auto& held) { set_.run(key, held); }, value);
}

bool SettingsStore::unset(std::string_view key) {
  return unset_.run(key) > 0;
}

std::map<std::string, Setting> SettingsStore::list() const {
  std::map<std::string, Setting> settings;
  Rows rows = list_.query();
  while (rows.next()) settings.emplace(rows.text(0), settingIn(rows, 1));
  return settings;
}

void SettingsStore::replaceAll(const std::map<std::string, Setting>& settings) {
  Transaction transaction(database_, "replace the settings");
  for (const auto& [key, value] : list()) {
    if (!settings.contains(key)) unset(key);
  }
  for (const auto& [key, value] : settings) set(key, value);
  transaction.commit();
}

SetStateStore::SetStateStore(Database& database)
    : database_(database),
      all_(database, "SELECT key, value FROM set_state ORDER BY key", "read the state of the set"),
      set_(database, "INSERT INTO set_state VALUES(?, ?) ON CONFLICT(key) DO UPDATE SET value = excluded.value",
           keeping),
      unset_(database, "DELETE FROM set_state WHERE key = ?", keeping) {}

std::map<std::string, std::string> SetStateStore::all() {
  std::map<std::string, std::string> state;
  Rows rows = all_.query();
  while (rows.next()) state.emplace(rows.text(0), rows.text(1));
  return state;
}

void SetStateStore::setAll(const std::map<std::string, std::string>& state) {
  const Difference difference = differenceTo(state);
  if (difference.removed.empty() && difference.changed.empty()) return;
  Transaction transaction(database_, keeping);
  for (const std::string& key : difference.removed) unset_.run(key);
  for (const auto* entry : difference.changed) set_.run(entry->first, entry->second);
  transaction.commit();
}

// Rows and map have the same order, so one pass over both finds the difference.
SetStateStore::Difference SetStateStore::differenceTo(const std::map<std::string, std::string>& state) {
  Difference difference;
  auto entry = state.begin();
  for (Rows rows = all_.query(); rows.next();) {
    const std::string_view key = rows.view(0);
    for (; entry != state.end() && entry->first < key; ++entry) difference.changed.push_back(&*entry);
    if (entry == state.end() || entry->first != key) {
      difference.removed.emplace_back(key);
    } else {
      if (entry->second != rows.view(1)) difference.changed.push_back(&*entry);
      ++entry;
    }
  }
  for (; entry != state.end(); ++entry) difference.changed.push_back(&*entry);
  return difference;
}

}  // namespace virtualtv
