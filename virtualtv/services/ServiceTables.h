// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "services/Service.h"
#include "store/Insertion.h"
#include "store/Statement.h"

namespace virtualtv {

/// A service to add, and a free key for it.
struct KeyedService {
  ServiceKey key;
  const Service* service;
};

/// Reads and writes whole services: one row of `service` for the fields with a column, and rows of other tables for the
/// rest. Used by `ServiceStore` alone, which handles transactions. All operations throw `StoreError`. Operations that
/// write also throw std::invalid_argument when a field can't hold its value.
class ServiceTables {
 public:
  explicit ServiceTables(Database& database);

  /// Adds services. Many at once take less time than one by one.
  void insert(std::span<const KeyedService> services);
  /// Adds one service. @param key  a free key.
  void insert(ServiceKey key, const Service& service);
  /// @return false when there was no such service.
  bool remove(ServiceKey key);
  /// Removes all services and resets the keys.
  void clear();
  /// The greatest key ever assigned; 0 for none.
  ServiceKey lastKey() const;
  /// Returns nothing when there is no such service.
  std::optional<Service> read(ServiceKey key) const;

  std::vector<AudioTrack> audio(ServiceKey key) const;
  std::vector<SubtitleTrack> subtitles(ServiceKey key) const;
  std::map<std::uint8_t, bool> favourites(ServiceKey key) const;

  void removeAudio(ServiceKey key);
  void removeSubtitles(ServiceKey key);
  void removeFavourites(ServiceKey key);
  /// Adds tracks to a service that has none.
  void insertAudio(ServiceKey key, const std::vector<AudioTrack>& tracks);
  void insertSubtitles(ServiceKey key, const std::vector<SubtitleTrack>& tracks);
  /// Both overwrite an earlier value.
  void setFavourite(ServiceKey key, std::uint8_t group, bool member);
  void setRaw(ServiceKey key, int fieldId, std::uint64_t number);
  void setRaw(ServiceKey key, int fieldId, std::u16string_view units);

 private:
  std::vector<KeyedService> insertFields(std::span<const KeyedService> services);
  void insertRaw(std::span<const KeyedService> services);
  void insertTracks(std::span<const KeyedService> services);
  void insertFavourites(std::span<const KeyedService> services);
  void insertOrigins(std::span<const KeyedService> services);
  void readRaw(ServiceKey key, Service& service) const;
  std::string listEntry(ServiceKey key) const;
  std::optional<Footage> footage(ServiceKey key) const;

  Database& database_;
  Insertion insert_;
  Insertion insertRaw_;
  Insertion insertAudio_;
  Insertion insertSubtitle_;
  Insertion insertFavourite_;
  Insertion insertEntry_;
  Insertion insertFootage_;
  Statement remove_;
  // mutable: running them does not change the services
  mutable Statement lastKey_;
  mutable Statement read_;
  mutable Statement readRaw_;
  mutable Statement readAudio_;
  mutable Statement readSubtitles_;
  mutable Statement readEntry_;
  mutable Statement readFootage_;
  mutable Statement readFavourites_;
};

}  // namespace virtualtv
