// SPDX-License-Identifier: MIT
#include "fuzz/support/Kept.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <variant>

#include "services/ServiceStore.h"
#include "set/Keeping.h"
#include "store/SettingsStore.h"

namespace fuzz {

namespace {

constexpr const char* absent = "-";
/// The database stores unsigned ids as signed numbers with this bit inverted, which keeps their order.
constexpr std::uint64_t turnedBit = std::uint64_t{1} << 63U;

void appendByte(std::string& hex, unsigned byte) {
  constexpr const char* digits = "0123456789abcdef";
  hex += {digits[byte >> 4U], digits[byte & 15U]};
}

std::string nameOf(const virtualtv::Service& service) {
  const auto name = service.texts.find(TCServiceData::CHANNEL_NAME);
  if (name == service.texts.end()) return absent;
  std::string hex;
  for (const char16_t unit : name->second) {
    appendByte(hex, unit >> 8U);
    appendByte(hex, unit & 255U);
  }
  return hex;
}

std::string lineOf(const virtualtv::Service& service) {
  const auto id = service.numbers.find(TCServiceData::SERVICE_ID);
  std::string line = id == service.numbers.end() ? absent : std::to_string(id->second);
  line += " " + nameOf(service) + " in " + service.group + ", audio";
  for (const virtualtv::AudioTrack& track : service.audio) line += " " + std::to_string(track.pid);
  line += ", subtitles";
  for (const virtualtv::SubtitleTrack& track : service.subtitles) line += " " + std::to_string(track.pid);
  line += ", favourites";
  for (const auto& [group, member] : service.favourites) {
    line += " " + std::to_string(group) + (member ? "=1" : "=0");
  }
  return line;
}

// Reading with SQLite alone.

struct NotWhole : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Close {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
};
using Handle = std::unique_ptr<sqlite3, Close>;

/// Calls `row` with each row of a query's result.
void ask(const Handle& database, const std::string& question, const std::function<void(sqlite3_stmt*)>& row) {
  sqlite3_stmt* prepared = nullptr;
  int code = sqlite3_prepare_v2(database.get(), question.c_str(), -1, &prepared, nullptr);
  const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(prepared, sqlite3_finalize);
  if (code == SQLITE_OK) {
    while ((code = sqlite3_step(statement.get())) == SQLITE_ROW) row(statement.get());
  }
  if (code != SQLITE_DONE) throw NotWhole(sqlite3_errmsg(database.get()));
}

std::string textAt(sqlite3_stmt* row, int column) {
  const unsigned char* const text = sqlite3_column_text(row, column);
  return text == nullptr ? "" : std::string(text, text + sqlite3_column_bytes(row, column));
}

std::string nameAt(sqlite3_stmt* row, int column) {
  if (sqlite3_column_type(row, column) == SQLITE_NULL) return absent;
  const auto* const bytes = static_cast<const unsigned char*>(sqlite3_column_blob(row, column));
  std::string hex;
  const int units = sqlite3_column_bytes(row, column) / 2;
  for (int at = 0; at < 2 * units; ++at) appendByte(hex, bytes[at]);
  return hex;
}

/// Reads a number, stored with 32 bits.
std::string intAt(sqlite3_stmt* row, int column) {
  return std::to_string(static_cast<std::int32_t>(sqlite3_column_int64(row, column)));
}

std::string tracksOf(const Handle& database, const std::string& table, const std::string& service) {
  std::string pids;
  ask(database, "SELECT pid FROM " + table + " WHERE service = " + service + " ORDER BY position",
      [&](sqlite3_stmt* row) { pids += " " + intAt(row, 0); });
  return pids;
}

std::string favouritesOf(const Handle& database, const std::string& service) {
  std::map<std::uint8_t, bool> groups;
  ask(database, "SELECT number, member FROM favourite WHERE service = " + service, [&](sqlite3_stmt* row) {
    groups[static_cast<std::uint8_t>(sqlite3_column_int64(row, 0))] = sqlite3_column_int64(row, 1) != 0;
  });
  std::string text;
  for (const auto& [group, member] : groups) text += " " + std::to_string(group) + (member ? "=1" : "=0");
  return text;
}

void addServices(const Handle& database, Kept& kept) {
  ask(database, "SELECT key, service_id, channel_name, group_name FROM service NOT INDEXED", [&](sqlite3_stmt* row) {
    const std::string key = textAt(row, 0);
    const bool hasId = sqlite3_column_type(row, 1) != SQLITE_NULL;
    const std::uint64_t id = static_cast<std::uint64_t>(sqlite3_column_int64(row, 1)) ^ turnedBit;
    kept["service " + key] = (hasId ? std::to_string(id) : absent) + " " + nameAt(row, 2) + " in " + textAt(row, 3) +
                             ", audio" + tracksOf(database, "audio_track", key) + ", subtitles" +
                             tracksOf(database, "subtitle_track", key) + ", favourites" + favouritesOf(database, key);
  });
}

void addSettings(const Handle& database, Kept& kept) {
  ask(database, "SELECT key, value FROM setting", [&](sqlite3_stmt* row) {
    using Int = std::numeric_limits<int>;
    const bool isNumber = sqlite3_column_type(row, 1) == SQLITE_INTEGER;
    const std::int64_t number = std::clamp<std::int64_t>(sqlite3_column_int64(row, 1), Int::min(), Int::max());
    kept["key " + textAt(row, 0)] = isNumber ? "int " + std::to_string(number) : "str " + textAt(row, 1);
  });
}

}  // namespace

Kept keptBy(virtualtv::Tv& tv) {
  Kept kept;
  for (const virtualtv::ServiceKey key : tv.services().keys()) {
    const auto service = tv.services().read(key);
    kept["service " + std::to_string(key)] = service ? lineOf(*service) : "can't be found";
  }
  for (const auto& [key, value] : tv.settings().list()) {
    const int* const number = std::get_if<int>(&value);
    kept["key " + key] = number != nullptr ? "int " + std::to_string(*number) : "str " + std::get<std::string>(value);
  }
  for (const auto& [name, value] : virtualtv::keptOf(tv.state())) kept["state " + name] = value;
  return kept;
}

std::optional<Kept> plainlyKeptIn(const std::filesystem::path& folder) {
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2((folder / "tv.db").c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
  const Handle database(opened);
  if (code != SQLITE_OK) return std::nullopt;
  Kept kept;
  try {
    ask(database, "PRAGMA locking_mode = EXCLUSIVE", [](sqlite3_stmt*) {});
    ask(database, "PRAGMA integrity_check", [](sqlite3_stmt* row) {
      if (textAt(row, 0) != "ok") throw NotWhole(textAt(row, 0));
    });
    addServices(database, kept);
    addSettings(database, kept);
    ask(database, "SELECT key, value FROM set_state",
        [&](sqlite3_stmt* row) { kept["state " + textAt(row, 0)] = textAt(row, 1); });
  } catch (const NotWhole&) {
    return std::nullopt;
  }
  return kept;
}

}  // namespace fuzz
