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

/// The tables of this room, for the schema of the database that they stand in.
extern const char* const serviceTables;
/// What they lacked at first, for the step of the schema that comes next: what lists said of services.
extern const char* const listEntries;
/// Adds the recordings that services play from; the next version.
extern const char* const footageTables;

/// What a search looks at in a service.
struct ServiceOutline {
  ServiceKey key = 0;
  std::optional<std::u16string> name;
  std::optional<std::uint64_t> channelType;
  std::optional<std::uint64_t> antenna;
  std::optional<std::uint64_t> major;
  std::string group;  ///< UTF-8
};

/// The service database: what the set knows of its services, and the queries of clients on it. List order is by major,
/// then by minor number, services without one last, then by key.
///
/// A write is one transaction, all of it or nothing, and on the disk when it returns, unless a `Transaction` is under
/// way. All operations throw `StoreError`; those that take fields throw std::invalid_argument when a field can't hold
/// what it is given, with a line that says which and why.
class ServiceStore {
 public:
  /// The greatest key that a service can have.
  static constexpr ServiceKey greatestKey = (ServiceKey{1} << 28) - 1;

  /// @param database  outlives this object and has `serviceTables` with `listEntries` and `footageTables`.
  explicit ServiceStore(Database& database);

  // The services.

  std::size_t size() const;
  /// All keys in list order.
  std::vector<ServiceKey> keys() const;
  /// Nothing when there is no such service; the same for 0.
  std::optional<Service> read(ServiceKey key) const;
  /// Calls back with each service in list order, which takes far less than reading all of it.
  void outline(const std::function<void(const ServiceOutline&)>& take) const;
  /// The same with all of it. Nobody may ask for the keys meanwhile.
  void each(const std::function<void(ServiceKey, Service&&)>& take) const;
  /// The services that are in a favourite group.
  std::set<ServiceKey> membersOf(std::uint8_t group) const;
  /// All services by their keys.
  std::map<ServiceKey, Service> all() const;
  /// The services as they are now, to be read later. No transaction may be under way.
  ServiceImage image() const { return ServiceImage(database_); }
  /// The service of an id, the first in list order should several have it.
  std::optional<ServiceKey> keyOf(std::uint64_t serviceId) const;

  /// Keeps these in place of all there were, with keys from 1 on in their order.
  void replaceAll(const std::vector<Service>& services);
  /// The same with the keys that are given. @throws std::invalid_argument also for a key below 1 or above
  /// `greatestKey`.
  void restoreAll(const std::map<ServiceKey, Service>& services);

  // The services of a channel list. One whose id the set has is that service: it keeps its favourites and all fields
  // that no list tells (see `KnownField::listed`), whatever the new one has there; all else is the new one's.

  /// Adds these to those there are. A service that the set has already stays under its key.
  ServiceChanges merge(const std::vector<Service>& services);
  /// Keeps these alone, with keys from 1 on in their order.
  ServiceChanges renew(const std::vector<Service>& services);

  /// @return its key: the next one, or the least that is free where `greatestKey` was given already. So in `merge`.
  ServiceKey add(const Service& service);
  /// @return false when there is no such service. So below.
  bool remove(ServiceKey key);

  // One field of a service.

  bool set(ServiceKey key, int fieldId, std::uint64_t number);
  bool set(ServiceKey key, int fieldId, std::u16string_view units);
  /// Makes a field absent.
  bool unset(ServiceKey key, int fieldId);

  // What a service has beside its fields. Empty where there is no such service.

  std::vector<AudioTrack> audio(ServiceKey key) const;
  std::vector<SubtitleTrack> subtitles(ServiceKey key) const;
  bool setAudio(ServiceKey key, const std::vector<AudioTrack>& tracks);
  bool setSubtitles(ServiceKey key, const std::vector<SubtitleTrack>& tracks);
  /// Favourite groups that hold a value for the service of an id; nothing when there is no such service.
  std::optional<std::map<std::uint8_t, bool>> favourites(std::uint64_t serviceId) const;
  bool setFavourite(std::uint64_t serviceId, std::uint8_t group, bool member);
  /// Keeps these in place of all there were.
  bool setFavourites(ServiceKey key, const std::map<std::uint8_t, bool>& favourites);

  // Queries. A record gets the fields that the criteria fetch, in their order, as far as the service has them. All
  // conditions must hold; one on an absent field does not, but for `HIDDEN`, whose absence counts as 0; one on a text
  // never does. Without an order to sort by it is list order, which also settles ties; services without the field that
  // is sorted by come last. `mode` limits the services to an antenna and, where the service mode names an operator's
  // list, to that; (-1, -1) does not.

  /// @return false when there is none; `record` is then as it was. So below.
  bool first(const TCCriteriaHelper& criteria, const TSTvMode& mode, TCServiceData& record) const;

  /// Appends a new record for each service; the caller owns them. @return how many.
  int list(const TCCriteriaHelper& criteria, const TSTvMode& mode, std::list<TCServiceData*>& records) const;

  /// The service one step behind (before) the one of `currentId` in list order, starting over at the other end of the
  /// list, among those that the criteria select. The current one need not be selected; it is answered when it is the
  /// only one. An id that no service has stands at the end (start) of the list. Criteria's order is passed over.
  /// Goes past services without a service id, which nobody could tune to.
  /// @param skipLocked  goes past services whose `LOCK` is not 0.
  bool next(const TCCriteriaHelper& criteria, const TSTvMode& mode, std::uint64_t currentId, bool skipLocked,
            TCServiceData& record) const;
  bool previous(const TCCriteriaHelper& criteria, const TSTvMode& mode, std::uint64_t currentId, bool skipLocked,
                TCServiceData& record) const;

  /// The service with a key, whether or not it meets the conditions of the criteria.
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
  /// The key of a service that is to be added. @param from  where free keys are looked for; moves on.
  ServiceKey newKey(ServiceKey& from) const;
  bool step(Pick towards, Pick over, std::uint64_t currentId, TCServiceData& record) const;
  Query& ask(Pick pick, const TCCriteriaHelper& criteria, const TSTvMode& mode, bool skipLocked = false) const;
  Query& askAgain(Pick pick) const;

  Database& database_;
  ServiceTables tables_;
  // mutable: what runs them does not change the services
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
