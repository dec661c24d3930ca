// SPDX-License-Identifier: MIT
#include "services/ServiceTables.h"

#include <span>
#include <stdexcept>
#include <string>

#include "services/FieldNumbers.h"
#include "services/Fields.h"
#include "services/ServiceStore.h"

namespace virtualtv {

namespace {

constexpr const char* adding = "add a service";
constexpr const char* reading = "read a service";

// The columns of `service` for the known fields, in order, each followed by `behind`.
std::string columns(const std::string& behind) {
  std::string list;
  for (const KnownField& field : knownFields()) list += field.column + behind;
  return list;
}

[[noreturn]] void refuseTwo(int fieldId) {
  throw std::invalid_argument("field " + std::to_string(fieldId) + " can't hold two values");
}

int readFields(const Rows& rows, Service& service) {
  int column = 0;
  for (const KnownField& field : knownFields()) {
    if (!rows.isNull(column) && field.kind == FieldKind::text) {
      service.texts[field.id] = toUnits(rows.bytes(column));
    } else if (!rows.isNull(column)) {
      service.numbers[field.id] = fromColumn(&field, rows.integer(column));
    }
    ++column;
  }
  return column;
}

/// Binds the fields with columns. @return how many of them the service has.
std::size_t bindFields(Batch& rows, const Service& service) {
  std::size_t bound = 0;
  for (const KnownField& field : knownFields()) {
    const auto number = service.numbers.find(field.id);
    const auto units = service.texts.find(field.id);
    const bool isNumber = number != service.numbers.end();
    const bool isText = units != service.texts.end();
    if (isNumber && isText) refuseTwo(field.id);
    if (isNumber) {
      rows.bind(numberColumn(field, number->second));
    } else if (isText) {
      requireText(field.id);
      rows.bind(Bytes(toBytes(units->second)));
    } else {
      rows.bind(nullptr);
    }
    if (isNumber || isText) ++bound;
  }
  return bound;
}

void addAudio(Batch& rows, ServiceKey key, const std::vector<AudioTrack>& tracks) {
  int position = 0;
  for (const AudioTrack& track : tracks) {
    rows.add(key, position++, track.pid, track.lang, track.decodeType, track.audioMode, track.audioType,
             track.readable);
  }
}

void addSubtitles(Batch& rows, ServiceKey key, const std::vector<SubtitleTrack>& tracks) {
  int position = 0;
  for (const SubtitleTrack& track : tracks) {
    rows.add(key, position++, track.pid, track.lang, track.type, track.readable);
  }
}

}  // namespace

// `place` orders services as lists do: by major number, then by minor number (absent ones last), then by key, which has
// 29 bits. A service without the hidden field is not hidden. `sqlite_stat1` gives the query planner the statistics of a
// typical list, so that it picks the selective index for every list.
const char* const serviceTables = R"(
CREATE TABLE service(
  key INTEGER PRIMARY KEY AUTOINCREMENT,
  service_id INTEGER,
  channel_name BLOB,
  original_network_id INTEGER,
  program_number INTEGER,
  transport_stream_id INTEGER,
  channel_type INTEGER,
  ptc INTEGER,
  modulation INTEGER,
  source_id INTEGER,
  frequency INTEGER,
  major INTEGER,
  minor INTEGER,
  lock INTEGER,
  symbol_rate INTEGER,
  antenna_mode INTEGER,
  hidden INTEGER,
  service_mode INTEGER,
  group_name TEXT NOT NULL,
  service_field_110 BLOB,
  place INTEGER AS (((ifnull(major, 65536) << 17 | ifnull(minor, 65536)) << 29) + key) VIRTUAL,
  hidden_or_0 INTEGER AS (ifnull(hidden, 0)) VIRTUAL
) STRICT;
CREATE INDEX service_by_id ON service(service_id);
CREATE INDEX service_by_number ON service(major, minor);
CREATE INDEX service_by_ptc ON service(ptc);
CREATE INDEX service_by_place ON service(place);
CREATE INDEX service_by_antenna ON service(antenna_mode, hidden_or_0, place);
CREATE INDEX service_by_mode ON service(antenna_mode, service_mode, hidden_or_0, place);

CREATE TABLE raw_field(
  service INTEGER NOT NULL REFERENCES service ON DELETE CASCADE,
  field INTEGER NOT NULL,
  value ANY NOT NULL,
  PRIMARY KEY(service, field)
) STRICT, WITHOUT ROWID;
CREATE INDEX raw_field_by_value ON raw_field(field, value);

CREATE TABLE audio_track(
  service INTEGER NOT NULL REFERENCES service ON DELETE CASCADE,
  position INTEGER NOT NULL,
  pid INTEGER NOT NULL,
  lang INTEGER NOT NULL,
  decode_type INTEGER NOT NULL,
  audio_mode INTEGER NOT NULL,
  audio_type INTEGER NOT NULL,
  readable INTEGER NOT NULL,
  PRIMARY KEY(service, position)
) STRICT, WITHOUT ROWID;

CREATE TABLE subtitle_track(
  service INTEGER NOT NULL REFERENCES service ON DELETE CASCADE,
  position INTEGER NOT NULL,
  pid INTEGER NOT NULL,
  lang INTEGER NOT NULL,
  type INTEGER NOT NULL,
  readable INTEGER NOT NULL,
  PRIMARY KEY(service, position)
) STRICT, WITHOUT ROWID;

CREATE TABLE favourite(
  service INTEGER NOT NULL REFERENCES service ON DELETE CASCADE,
  number INTEGER NOT NULL,
  member INTEGER NOT NULL,
  PRIMARY KEY(service, number)
) STRICT, WITHOUT ROWID;

ANALYZE sqlite_schema;
INSERT INTO sqlite_stat1(tbl, idx, stat) VALUES
  ('service', 'service_by_id', '10000 1'),
  ('service', 'service_by_number', '10000 4 2'),
  ('service', 'service_by_ptc', '10000 20'),
  ('service', 'service_by_place', '10000 1'),
  ('service', 'service_by_antenna', '10000 3500 3000 1'),
  ('service', 'service_by_mode', '10000 3500 1000 900 1');
ANALYZE sqlite_schema;
)";

// A separate table, since most services have no list entry: they were not imported, or their list has no data beyond
// the set's fields.
const char* const listEntries = R"(
CREATE TABLE list_entry(
  service INTEGER PRIMARY KEY REFERENCES service ON DELETE CASCADE,
  text BLOB NOT NULL
) STRICT;
)";

// In some versions the previous step added a column instead of a table. Its content is discarded.
const char* const footageTables = R"(
CREATE TABLE IF NOT EXISTS list_entry(
  service INTEGER PRIMARY KEY REFERENCES service ON DELETE CASCADE,
  text BLOB NOT NULL
) STRICT;
CREATE TABLE recording(
  service INTEGER PRIMARY KEY REFERENCES service ON DELETE CASCADE,
  path BLOB NOT NULL,
  video INTEGER NOT NULL,
  type INTEGER NOT NULL,
  trusted INTEGER NOT NULL
) STRICT;
)";

ServiceTables::ServiceTables(Database& database)
    : database_(database),
      insert_(database, "INSERT INTO service(" + columns(", ") + "group_name, key)",
              static_cast<int>(knownFields().size()) + 2, adding),
      insertRaw_(database, "INSERT OR REPLACE INTO raw_field", 3, "keep a field of a service"),
      insertAudio_(database, "INSERT INTO audio_track", 8, "keep an audio track"),
      insertSubtitle_(database, "INSERT INTO subtitle_track", 6, "keep a subtitle track"),
      insertFavourite_(database, "INSERT OR REPLACE INTO favourite", 3, "keep a favourite"),
      insertEntry_(database, "INSERT INTO list_entry", 2, "keep what a list says of a service"),
      insertFootage_(database, "INSERT INTO recording", 5, "keep what plays of a service"),
      remove_(database, "DELETE FROM service WHERE key = ?", "remove a service"),
      lastKey_(database, "SELECT seq FROM sqlite_sequence WHERE name = 'service'", "find a key for a service"),
      read_(database, "SELECT " + columns(", ") + "group_name FROM service WHERE key = ?", reading),
      readRaw_(database, "SELECT field, value FROM raw_field WHERE service = ?", reading),
      readAudio_(database,
                 "SELECT pid, lang, decode_type, audio_mode, audio_type, readable FROM audio_track WHERE service = ?"
                 " ORDER BY position",
                 "read audio tracks"),
      readSubtitles_(database,
                     "SELECT pid, lang, type, readable FROM subtitle_track WHERE service = ? ORDER BY position",
                     "read subtitle tracks"),
      readEntry_(database, "SELECT text FROM list_entry WHERE service = ?", reading),
      readFootage_(database, "SELECT path, video, type, trusted FROM recording WHERE service = ?", reading),
      readFavourites_(database, "SELECT number, member FROM favourite WHERE service = ?", "read favourites") {}

/// Adds the rows of the table `service`, to which the rows of all other tables refer. @return the services that also
/// have fields without a column.
std::vector<KeyedService> ServiceTables::insertFields(std::span<const KeyedService> services) {
  std::vector<KeyedService> others;
  Batch rows(insert_, services.size());
  for (const KeyedService& one : services) {
    const Service& service = *one.service;
    const std::size_t bound = bindFields(rows, service);
    if (bound < service.numbers.size() + service.texts.size()) others.push_back(one);
    rows.add(std::string_view(service.group), one.key);
  }
  rows.finish();
  return others;
}

void ServiceTables::insertRaw(std::span<const KeyedService> services) {
  Batch rows(insertRaw_, services.size());
  for (const auto& [key, service] : services) {
    for (const auto& [id, number] : service->numbers) {
      if (service->texts.contains(id)) refuseTwo(id);
      if (knownField(id) == nullptr) rows.add(key, id, numberColumn(id, number));
    }
    for (const auto& [id, units] : service->texts) {
      if (knownField(id) == nullptr) rows.add(key, id, Bytes(toBytes(units)));
    }
  }
  rows.finish();
}

void ServiceTables::insertTracks(std::span<const KeyedService> services) {
  Batch audio(insertAudio_, services.size());
  Batch subtitles(insertSubtitle_, services.size());
  for (const auto& [key, service] : services) {
    addAudio(audio, key, service->audio);
    addSubtitles(subtitles, key, service->subtitles);
  }
  audio.finish();
  subtitles.finish();
}

void ServiceTables::insertFavourites(std::span<const KeyedService> services) {
  Batch rows(insertFavourite_, services.size());
  for (const auto& [key, service] : services) {
    for (const auto& [group, member] : service->favourites) rows.add(key, int{group}, member);
  }
  rows.finish();
}

/// Adds what is known of where the services come from: their list entries and recordings.
void ServiceTables::insertOrigins(std::span<const KeyedService> services) {
  Batch entries(insertEntry_, services.size());
  Batch recordings(insertFootage_, services.size());
  for (const auto& [key, service] : services) {
    if (!service->listEntry.empty()) entries.add(key, std::as_bytes(std::span(service->listEntry)));
    if (const auto& footage = service->footage) {
      recordings.add(key, std::as_bytes(std::span(footage->path)), footage->video, footage->type, footage->isTrusted);
    }
  }
  entries.finish();
  recordings.finish();
}

void ServiceTables::insert(std::span<const KeyedService> services) {
  insertRaw(insertFields(services));
  insertTracks(services);
  insertFavourites(services);
  insertOrigins(services);
}

void ServiceTables::insert(ServiceKey key, const Service& service) {
  const KeyedService one{key, &service};
  insert({&one, 1});
}

bool ServiceTables::remove(ServiceKey key) {
  return remove_.run(key) > 0;
}

void ServiceTables::clear() {
  database_.execute(
      "DELETE FROM raw_field; DELETE FROM audio_track; DELETE FROM subtitle_track; DELETE FROM favourite;"
      "DELETE FROM list_entry; DELETE FROM recording;"
      "DELETE FROM service; DELETE FROM sqlite_sequence WHERE name = 'service'",
      "remove the services");
}

ServiceKey ServiceTables::lastKey() const {
  Rows rows = lastKey_.query();
  return rows.next() ? rows.integer(0) : 0;
}

std::optional<Service> ServiceTables::read(ServiceKey key) const {
  Service service;
  {
    Rows rows = read_.query(key);
    if (!rows.next()) return std::nullopt;
    const int behind = readFields(rows, service);
    service.group = rows.text(behind);
  }
  readRaw(key, service);
  service.audio = audio(key);
  service.subtitles = subtitles(key);
  service.favourites = favourites(key);
  service.listEntry = listEntry(key);
  service.footage = footage(key);
  return service;
}

std::string ServiceTables::listEntry(ServiceKey key) const {
  Rows rows = readEntry_.query(key);
  if (!rows.next()) return {};
  const Bytes text = rows.bytes(0);
  return {reinterpret_cast<const char*>(text.data()), text.size()};
}

std::optional<Footage> ServiceTables::footage(ServiceKey key) const {
  Rows rows = readFootage_.query(key);
  if (!rows.next()) return std::nullopt;
  const Bytes path = rows.bytes(0);
  return Footage{.path = {reinterpret_cast<const char*>(path.data()), path.size()},
                 .video = static_cast<int>(rows.integer(1)),
                 .type = static_cast<int>(rows.integer(2)),
                 .isTrusted = rows.integer(3) != 0};
}

void ServiceTables::readRaw(ServiceKey key, Service& service) const {
  Rows rows = readRaw_.query(key);
  while (rows.next()) {
    const auto id = static_cast<int>(rows.integer(0));
    if (rows.isInteger(1)) {
      service.numbers[id] = fromColumn(nullptr, rows.integer(1));
    } else {
      service.texts[id] = toUnits(rows.bytes(1));
    }
  }
}

std::vector<AudioTrack> ServiceTables::audio(ServiceKey key) const {
  std::vector<AudioTrack> tracks;
  Rows rows = readAudio_.query(key);
  const auto number = [&](int column) { return static_cast<int>(rows.integer(column)); };
  while (rows.next()) {
    tracks.push_back({.pid = number(0),
                      .lang = number(1),
                      .decodeType = number(2),
                      .audioMode = number(3),
                      .audioType = number(4),
                      .readable = number(5) != 0});
  }
  return tracks;
}

std::vector<SubtitleTrack> ServiceTables::subtitles(ServiceKey key) const {
  std::vector<SubtitleTrack> tracks;
  Rows rows = readSubtitles_.query(key);
  const auto number = [&](int column) { return static_cast<int>(rows.integer(column)); };
  while (rows.next()) {
    tracks.push_back({.pid = number(0), .lang = number(1), .type = number(2), .readable = number(3) != 0});
  }
  return tracks;
}

std::map<std::uint8_t, bool> ServiceTables::favourites(ServiceKey key) const {
  std::map<std::uint8_t, bool> groups;
  Rows rows = readFavourites_.query(key);
  while (rows.next()) groups[static_cast<std::uint8_t>(rows.integer(0))] = rows.integer(1) != 0;
  return groups;
}

void ServiceTables::removeAudio(ServiceKey key) {
  Statement(database_, "DELETE FROM audio_track WHERE service = ?", "remove audio tracks").run(key);
}

void ServiceTables::removeSubtitles(ServiceKey key) {
  Statement(database_, "DELETE FROM subtitle_track WHERE service = ?", "remove subtitle tracks").run(key);
}

void ServiceTables::removeFavourites(ServiceKey key) {
  Statement(database_, "DELETE FROM favourite WHERE service = ?", "remove favourites").run(key);
}

void ServiceTables::insertAudio(ServiceKey key, const std::vector<AudioTrack>& tracks) {
  Batch rows(insertAudio_, tracks.size());
  addAudio(rows, key, tracks);
  rows.finish();
}

void ServiceTables::insertSubtitles(ServiceKey key, const std::vector<SubtitleTrack>& tracks) {
  Batch rows(insertSubtitle_, tracks.size());
  addSubtitles(rows, key, tracks);
  rows.finish();
}

void ServiceTables::setFavourite(ServiceKey key, std::uint8_t group, bool member) {
  insertFavourite_.run(key, int{group}, member);
}

void ServiceTables::setRaw(ServiceKey key, int fieldId, std::uint64_t number) {
  insertRaw_.run(key, fieldId, numberColumn(fieldId, number));
}

void ServiceTables::setRaw(ServiceKey key, int fieldId, std::u16string_view units) {
  insertRaw_.run(key, fieldId, Bytes(toBytes(units)));
}

}  // namespace virtualtv
