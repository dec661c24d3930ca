// SPDX-License-Identifier: MIT
#include "services/ServiceStore.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>

#include "services/FieldNumbers.h"
#include "services/Fields.h"
#include "store/Transaction.h"

namespace virtualtv {

namespace {

constexpr const char* changing = "change a field of a service";

void requireKey(ServiceKey key) {
  if (key >= 1 && key <= ServiceStore::greatestKey) return;
  throw std::invalid_argument("no service can have the key " + std::to_string(key));
}

std::int64_t idColumn(std::uint64_t serviceId) {
  return *toColumn(knownField(TCServiceData::SERVICE_ID), serviceId);
}

/// True when the service already plays from the same recording, and that recording is trusted. `footage` itself need
/// not be trusted.
bool isKnown(Footage footage, const std::optional<Footage>& before) {
  footage.isTrusted = true;
  return footage == before;
}

/// The service `before`, updated from a channel list.
Service updated(const Service& before, const Service& listed) {
  const auto isUsers = [](const auto& field) {
    const KnownField* known = knownField(field.first);
    return known == nullptr || !known->listed;
  };
  const auto keepUsers = [&](auto& fields, const auto& fieldsBefore) {
    std::erase_if(fields, isUsers);
    std::copy_if(fieldsBefore.begin(), fieldsBefore.end(), std::inserter(fields, fields.end()), isUsers);
  };
  Service service = listed;
  keepUsers(service.numbers, before.numbers);
  keepUsers(service.texts, before.texts);
  service.favourites = before.favourites;
  if (!service.footage || isKnown(*service.footage, before.footage)) service.footage = before.footage;
  return service;
}

// Reads the first row of a run into a record, if there is one.
bool readOne(Query& query, Rows rows, TCServiceData& record) {
  if (!rows.next()) return false;
  record.Assign(query.read(rows));
  return true;
}

}  // namespace

ServiceStore::ServiceStore(Database& database)
    : database_(database),
      tables_(database),
      queries_(database),
      size_(database, "SELECT count(*) FROM service", "count the services"),
      keys_(database, "SELECT key FROM service ORDER BY place", "read the services"),
      outlines_(database,
                "SELECT key, channel_name, channel_type, antenna_mode, major, group_name FROM service ORDER BY place",
                "read the services"),
      members_(database, "SELECT service FROM favourite WHERE number = ? AND member", "read a favourite group"),
      spotOf_(database, "SELECT place, key FROM service WHERE service_id = ?", "look up a service"),
      ids_(database, "SELECT service_id, key FROM service WHERE service_id IS NOT NULL ORDER BY place",
           "look up services"),
      exists_(database, "SELECT 1 FROM service WHERE key = ?", "look up a service") {}

std::size_t ServiceStore::size() const {
  Rows rows = size_.query();
  rows.next();
  return static_cast<std::size_t>(rows.integer(0));
}

std::vector<ServiceKey> ServiceStore::keys() const {
  std::vector<ServiceKey> keys;
  Rows rows = keys_.query();
  while (rows.next()) keys.push_back(rows.integer(0));
  return keys;
}

void ServiceStore::outline(const std::function<void(const ServiceOutline&)>& take) const {
  const auto number = [](const Rows& rows, int column) {
    return rows.isNull(column) ? std::nullopt : std::optional(static_cast<std::uint64_t>(rows.integer(column)));
  };
  Rows rows = outlines_.query();
  while (rows.next()) {
    ServiceOutline outline;
    outline.key = rows.integer(0);
    if (!rows.isNull(1)) outline.name = toUnits(rows.bytes(1));
    outline.channelType = number(rows, 2);
    outline.antenna = number(rows, 3);
    outline.major = number(rows, 4);
    outline.group = rows.text(5);
    take(outline);
  }
}

std::set<ServiceKey> ServiceStore::membersOf(std::uint8_t group) const {
  std::set<ServiceKey> members;
  Rows rows = members_.query(std::int64_t{group});
  while (rows.next()) members.insert(rows.integer(0));
  return members;
}

std::optional<Service> ServiceStore::read(ServiceKey key) const {
  return tables_.read(key);
}

std::map<ServiceKey, Service> ServiceStore::all() const {
  std::map<ServiceKey, Service> services;
  each([&](ServiceKey key, Service&& service) { services.emplace(key, std::move(service)); });
  return services;
}

/// Reads the services while the query for the keys is still running: otherwise SQLite would check the file again for
/// each service.
void ServiceStore::each(const std::function<void(ServiceKey, Service&&)>& take) const {
  Rows rows = keys_.query();
  while (rows.next()) {
    const ServiceKey key = rows.integer(0);
    if (auto service = read(key)) take(key, std::move(*service));
  }
}

/// Few services share an id, so picking the first one here is cheap. Sorting in SQLite would take ten times as long as
/// the rest.
std::optional<ServiceStore::Spot> ServiceStore::spotOf(std::uint64_t serviceId) const {
  std::optional<Spot> first;
  Rows rows = spotOf_.query(idColumn(serviceId));
  while (rows.next()) {
    const Spot spot{rows.integer(0), rows.integer(1)};
    if (!first || spot.place < first->place) first = spot;
  }
  return first;
}

std::optional<ServiceKey> ServiceStore::keyOf(std::uint64_t serviceId) const {
  const auto spot = spotOf(serviceId);
  if (!spot) return std::nullopt;
  return spot->key;
}

std::optional<ServiceKey> ServiceStore::keyOf(const Service& service) const {
  const auto id = service.numbers.find(TCServiceData::SERVICE_ID);
  if (id == service.numbers.end()) return std::nullopt;
  return keyOf(id->second);
}

/// The keys of all services by the column values of their ids. If several services have the same id, only the first in
/// list order is included.
std::unordered_map<std::int64_t, ServiceKey> ServiceStore::keysByIds() const {
  std::unordered_map<std::int64_t, ServiceKey> keys;
  Rows rows = ids_.query();
  while (rows.next()) keys.emplace(rows.integer(0), rows.integer(1));
  return keys;
}

bool ServiceStore::exists(ServiceKey key) const {
  return exists_.query(key).next();
}

/// Keys of removed services are reused only after `greatestKey` was assigned.
ServiceKey ServiceStore::newKey(ServiceKey& from) const {
  const ServiceKey last = tables_.lastKey();
  if (last < greatestKey) return last + 1;
  while (exists(from)) ++from;
  requireKey(from);
  return from;
}

void ServiceStore::replaceAll(const std::vector<Service>& services) {
  Transaction transaction(database_, "replace the services");
  tables_.clear();
  std::vector<KeyedService> keyed;
  keyed.reserve(services.size());
  for (const Service& service : services) keyed.push_back({std::ssize(keyed) + 1, &service});
  tables_.insert(keyed);
  transaction.commit();
}

void ServiceStore::restoreAll(const std::map<ServiceKey, Service>& services) {
  Transaction transaction(database_, "replace the services");
  tables_.clear();
  std::vector<KeyedService> keyed;
  for (const auto& [key, service] : services) {
    requireKey(key);
    keyed.push_back({key, &service});
  }
  tables_.insert(keyed);
  transaction.commit();
}

ServiceChanges ServiceStore::merge(const std::vector<Service>& services) {
  Transaction transaction(database_, "merge services");
  ServiceChanges changes;
  ServiceKey from = 1;
  for (const Service& listed : services) {
    const auto key = keyOf(listed);
    if (!key) {
      tables_.insert(newKey(from), listed);
      ++changes.added;
      continue;
    }
    const Service before = tables_.read(*key).value();
    const Service service = updated(before, listed);
    if (service == before) continue;
    tables_.remove(*key);
    tables_.insert(*key, service);
    ++changes.changed;
  }
  transaction.commit();
  return changes;
}

ServiceChanges ServiceStore::renew(const std::vector<Service>& services) {
  Transaction transaction(database_, "renew the services");
  ServiceChanges changes;
  std::vector<KeyedService> renewed;
  const auto renew = [&](const Service& service) { renewed.push_back({std::ssize(renewed) + 1, &service}); };
  std::deque<Service> updates;
  std::set<ServiceKey> found;
  const std::unordered_map<std::int64_t, ServiceKey> keys = keysByIds();
  for (const Service& listed : services) {
    const auto id = listed.numbers.find(TCServiceData::SERVICE_ID);
    const auto known = id == listed.numbers.end() ? keys.end() : keys.find(idColumn(id->second));
    if (known == keys.end()) {
      renew(listed);
      ++changes.added;
      continue;
    }
    const ServiceKey key = known->second;
    found.insert(key);
    const Service before = tables_.read(key).value();
    renew(updates.emplace_back(updated(before, listed)));
    if (updates.back() != before) {
      ++changes.changed;
    } else if (key != renewed.back().key) {
      ++changes.moved;
    }
  }
  changes.gone = size() - found.size();
  tables_.clear();
  tables_.insert(renewed);
  transaction.commit();
  return changes;
}

ServiceKey ServiceStore::add(const Service& service) {
  Transaction transaction(database_, "add a service");
  ServiceKey from = 1;
  const ServiceKey key = newKey(from);
  tables_.insert(key, service);
  transaction.commit();
  return key;
}

bool ServiceStore::remove(ServiceKey key) {
  return tables_.remove(key);
}

bool ServiceStore::set(ServiceKey key, int fieldId, std::uint64_t number) {
  const std::int64_t value = numberColumn(fieldId, number);
  if (const KnownField* field = knownField(fieldId)) {
    return Statement(database_, std::string("UPDATE service SET ") + field->column + " = ? WHERE key = ?", changing)
               .run(value, key) > 0;
  }
  if (!exists(key)) return false;
  tables_.setRaw(key, fieldId, number);
  return true;
}

bool ServiceStore::set(ServiceKey key, int fieldId, std::u16string_view units) {
  requireText(fieldId);
  if (const KnownField* field = knownField(fieldId)) {
    return Statement(database_, std::string("UPDATE service SET ") + field->column + " = ? WHERE key = ?", changing)
               .run(Bytes(toBytes(units)), key) > 0;
  }
  if (!exists(key)) return false;
  tables_.setRaw(key, fieldId, units);
  return true;
}

bool ServiceStore::unset(ServiceKey key, int fieldId) {
  if (const KnownField* field = knownField(fieldId)) {
    return Statement(database_, std::string("UPDATE service SET ") + field->column + " = NULL WHERE key = ?", changing)
               .run(key) > 0;
  }
  Statement(database_, "DELETE FROM raw_field WHERE service = ? AND field = ?", changing).run(key, fieldId);
  return exists(key);
}

std::vector<AudioTrack> ServiceStore::audio(ServiceKey key) const {
  return tables_.audio(key);
}
std::vector<SubtitleTrack> ServiceStore::subtitles(ServiceKey key) const {
  return tables_.subtitles(key);
}

bool ServiceStore::setAudio(ServiceKey key, const std::vector<AudioTrack>& tracks) {
  if (!exists(key)) return false;
  Transaction transaction(database_, "keep audio tracks");
  tables_.removeAudio(key);
  tables_.insertAudio(key, tracks);
  transaction.commit();
  return true;
}

bool ServiceStore::setSubtitles(ServiceKey key, const std::vector<SubtitleTrack>& tracks) {
  if (!exists(key)) return false;
  Transaction transaction(database_, "keep subtitle tracks");
  tables_.removeSubtitles(key);
  tables_.insertSubtitles(key, tracks);
  transaction.commit();
  return true;
}

std::optional<std::map<std::uint8_t, bool>> ServiceStore::favourites(std::uint64_t serviceId) const {
  const auto key = keyOf(serviceId);
  if (!key) return std::nullopt;
  return tables_.favourites(*key);
}

bool ServiceStore::setFavourite(std::uint64_t serviceId, std::uint8_t group, bool member) {
  const auto key = keyOf(serviceId);
  if (key) tables_.setFavourite(*key, group, member);
  return key.has_value();
}

bool ServiceStore::setFavourites(ServiceKey key, const std::map<std::uint8_t, bool>& favourites) {
  if (!exists(key)) return false;
  Transaction transaction(database_, "keep favourites");
  tables_.removeFavourites(key);
  for (const auto& [group, member] : favourites) tables_.setFavourite(key, group, member);
  transaction.commit();
  return true;
}

Query& ServiceStore::ask(Pick pick, const TCCriteriaHelper& criteria, const TSTvMode& mode, bool skipLocked) const {
  virtualtv::ask(pick, criteria, mode, skipLocked, question_);
  return queries_.find(question_.shape);
}

// Repeats the last question with another pick.
Query& ServiceStore::askAgain(Pick pick) const {
  question_.shape.pick = pick;
  return queries_.find(question_.shape);
}

bool ServiceStore::first(const TCCriteriaHelper& criteria, const TSTvMode& mode, TCServiceData& record) const {
  Query& query = ask(Pick::first, criteria, mode);
  return readOne(query, query.start(question_.values), record);
}

int ServiceStore::list(const TCCriteriaHelper& criteria, const TSTvMode& mode,
                       std::list<TCServiceData*>& records) const {
  Query& query = ask(Pick::list, criteria, mode);
  Rows rows = query.start(question_.values);
  int count = 0;
  for (; rows.next(); ++count) {
    std::unique_ptr<TCServiceData> record(TCServiceData::New(query.read(rows)));
    records.push_back(record.get());
    static_cast<void>(record.release());
  }
  return count;
}

bool ServiceStore::next(const TCCriteriaHelper& criteria, const TSTvMode& mode, std::uint64_t currentId,
                        bool skipLocked, TCServiceData& record) const {
  virtualtv::ask(Pick::after, criteria, mode, skipLocked, question_);
  return step(Pick::after, Pick::start, currentId, record);
}

bool ServiceStore::previous(const TCCriteriaHelper& criteria, const TSTvMode& mode, std::uint64_t currentId,
                            bool skipLocked, TCServiceData& record) const {
  virtualtv::ask(Pick::before, criteria, mode, skipLocked, question_);
  return step(Pick::before, Pick::end, currentId, record);
}

// Skips services that share the current id: otherwise a step could return to where it started.
bool ServiceStore::step(Pick towards, Pick over, std::uint64_t currentId, TCServiceData& record) const {
  const std::int64_t current = idColumn(currentId);
  if (const auto spot = spotOf(currentId)) {
    Query& query = askAgain(towards);
    if (readOne(query, query.start(question_.values, spot->place, current), record)) return true;
  }
  Query& query = askAgain(over);
  if (readOne(query, query.start(question_.values, current), record)) return true;
  // No other service matches. Search again without excluding the current one: it is the answer if it matches.
  return readOne(query, query.start(question_.values, nullptr), record);
}

bool ServiceStore::at(ServiceKey key, const TCCriteriaHelper& criteria, TCServiceData& record) const {
  Query& query = ask(Pick::at, criteria, TSTvMode(ANTENNA_NONE, SERVICE_MODE_NONE));
  return readOne(query, query.start(question_.values, key), record);
}

}  // namespace virtualtv
