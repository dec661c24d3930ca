// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "services/Query.h"
#include "services/Service.h"
#include "services/ServiceImage.h"
#include "services/ServiceTables.h"
#include "store/Database.h"
#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCServiceData.h"

namespace virtualtv {

/// The service tables: the first step of the schema of the database that contains them.
extern const char* const serviceTables;
/// The next step of the schema: adds the channel list entries of services.
extern const char* const listEntries;
/// The step after that: adds the recordings that services play from.
extern const char* const footageTables;

/// The fields of a service that a search compares.
struct ServiceOutline {
  ServiceKey key = 0;
  std::optional<std::u16string> name;
  std::optional<std::uint64_t> channelType;
  std::optional<std::uint64_t> antenna;
  std::optional<std::uint64_t> major;
  std::string group;  ///< UTF-8
};

/// The service database: stores the services of the set and answers the queries of clients. List order sorts by major
/// number, then by minor number, then by key. Services without a number come last.
///
/// Each write is one transaction and is on disk when it returns, unless a `Transaction` is open. All operations throw
/// `StoreError`. Operations that take fields throw std::invalid_argument when a field can't hold its value, with a line
/// that says which field and why.
class ServiceStore {
 public:
  /// The greatest key that a service can have.
  static constexpr ServiceKey greatestKey = (ServiceKey{1} << 28) - 1;

  /// @param database  outlives this object; its schema contains `serviceTables`, `listEntries` and `footageTables`.
  explicit ServiceStore(Database& database);

  // The services.

  std::size_t size() const;
  /// All keys in list order.
  std::vector<ServiceKey> keys() const;
  /// Returns nothing when there is no such service, as for key 0.
  std::optional<Service> read(ServiceKey key) const;
  /// Calls `take` with the outline of each service in list order. This is much cheaper than reading whole services.
  void outline(const std::function<void(const ServiceOutline&)>& take) const;
  /// Calls `take` with each whole service in list order. `keys` must not be called meanwhile.
  void each(const std::function<void(ServiceKey, Service&&)>& take) const;
  /// The services that are in a favourite group.
  std::set<ServiceKey> membersOf(std::uint8_t group) const;
  /// All services by their keys.
  std::map<ServiceKey, Service> all() const;
  /// A copy of the services as they are now. No transaction may be open.
  ServiceImage image() const { return ServiceImage(database_); }
  /// The service with this id: the first in list order if several have it.
  std::optional<ServiceKey> keyOf(std::uint64_t serviceId) const;

  /// Replaces all services. The new ones get the keys from 1 on, in their order.
  void replaceAll(const std::vector<Service>& services);
  /// Replaces all services by these, under the given keys. @throws std::invalid_argument also for a key below 1 or
  /// above `greatestKey`.
  void restoreAll(const std::map<ServiceKey, Service>& services);

  // Importing a channel list. A listed service with the id of a service of the set updates that service. The update
  // preserves the favourites and all fields that no list sets (see `KnownField::listed`), and overwrites the rest.

  /// Adds or updates these services. Services already in the set keep their keys.
  ServiceChanges merge(const std::vector<Service>& services);
  /// Adds or updates these services and removes all others. Keys run from 1 on, in the order of `services`.
  ServiceChanges renew(const std::vector<Service>& services);

  /// Adds a service. @return its key: the next one, or the smallest free key once `greatestKey` was assigned. `merge`
  /// assigns keys in the same way.
  ServiceKey add(const Service& service);
  /// @return false when there is no such service. All methods below that return bool do the same.
  bool remove(ServiceKey key);

  // One field of a service.

  bool set(ServiceKey key, int fieldId, std::uint64_t number);
  bool set(ServiceKey key, int fieldId, std::u16string_view units);
  /// Makes a field absent.
  bool unset(ServiceKey key, int fieldId);

  // The lists of a service. They are empty when there is no such service.

  std::vector<AudioTrack> audio(ServiceKey key) const;
  std::vector<SubtitleTrack> subtitles(ServiceKey key) const;
  bool setAudio(ServiceKey key, const std::vector<AudioTrack>& tracks);
  bool setSubtitles(ServiceKey key, const std::vector<SubtitleTrack>& tracks);
  /// The favourite groups with a value for the service with this id. Returns nothing when there is no such service.
  std::optional<std::map<std::uint8_t, bool>> favourites(std::uint64_t serviceId) const;
  bool setFavourite(std::uint64_t serviceId, std::uint8_t group, bool member);
  /// Replaces all favourite groups of the service.
  bool setFavourites(ServiceKey key, const std::map<std::uint8_t, bool>& favourites);

  // Queries. A record receives the fields that the criteria fetch, in their order, except those that the service lacks.
  // A service matches when all conditions hold. A condition on an absent field fails, except that an absent `HIDDEN`
  // counts as 0. A condition on a text field always fails. The default order is list order, which also breaks ties.
  // Services without the sort field come last. `mode` restricts the services to an antenna and, when its service mode
  // names an operator's list, to that list. (-1, -1) restricts nothing.

  /// @return false when no service matches; `record` is then unchanged. `next`, `previous` and `at` do the same.
  bool first(const TCCriteriaHelper& criteria, const TSTvMode& mode, TCServiceData& record) const;

  /// Appends a new record for each matching service. The caller owns them. @return their number.
  int list(const TCCriteriaHelper& criteria, const TSTvMode& mode, std::list<TCServiceData*>& records) const;

  /// The matching service one step after (before) the service with `currentId`. Steps follow list order, ignore the
  /// order of the criteria, and wrap around at the ends. The current service need not match; it is returned when it is
  /// the only match. An unknown `currentId` counts as the end (start) of the list. Services without an id are skipped,
  /// since nobody could tune to them.
  /// @param skipLocked  skips services whose `LOCK` is not 0.
  bool next(const TCCriteriaHelper& criteria, const TSTvMode& mode, std::uint64_t currentId, bool skipLocked,
            TCServiceData& record) const;
  bool previous(const TCCriteriaHelper& criteria, const TSTvMode& mode, std::uint64_t currentId, bool skipLocked,
                TCServiceData& record) const;

  /// The service with this key, whether or not it matches the conditions of the criteria.
  bool at(ServiceKey key, const TCCriteriaHelper& criteria, TCServiceData& record) const;

 private:
  std::optional<ServiceKey> keyOf(const Service& service) const;

  struct Spot {
    std::int64_t place;
    ServiceKey key;
  };

  std::optional<Spot> spotOf(std::uint64_t serviceId) const;
  std::unordered_map<std::int64_t, ServiceKey> keysByIds() const;
  bool exists(ServiceKey key) const;
  /// The key for a service to add. @param from  where the search for free keys starts; advanced past the keys in use.
  ServiceKey newKey(ServiceKey& from) const;
  bool step(Pick towards, Pick over, std::uint64_t currentId, TCServiceData& record) const;
  Query& ask(Pick pick, const TCCriteriaHelper& criteria, const TSTvMode& mode, bool skipLocked = false) const;
  Query& askAgain(Pick pick) const;

  Database& database_;
  ServiceTables tables_;
  // mutable: running a query does not change the services
  mutable QueryCache queries_;
  mutable Question question_;
  mutable Statement size_;
  mutable Statement keys_;
  mutable Statement outlines_;
  mutable Statement members_;
  mutable Statement spotOf_;
  mutable Statement ids_;
  mutable Statement exists_;
};

}  // namespace virtualtv
