// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "store/Statement.h"

namespace virtualtv {

/// The settings tables: a step of the schema of the database that contains them.
extern const char* const settingsTables;

using Setting = std::variant<int, std::string>;

/// The settings keys of the set. Each key holds a number or a text. A write is on disk when it returns, unless a
/// `Transaction` is open. All operations throw `StoreError`.
class SettingsStore {
 public:
  /// @param database  outlives this object and has `settingsTables`.
  explicit SettingsStore(Database& database);

  /// Returns nothing when the key is not set.
  std::optional<Setting> get(std::string_view key) const;
  /// Sets a key, overwriting an earlier value.
  void set(std::string_view key, const Setting& value);
  /// @return false when the key was not set.
  bool unset(std::string_view key);
  /// All keys.
  std::map<std::string, Setting> list() const;
  /// Replaces all settings keys, in one transaction.
  void replaceAll(const std::map<std::string, Setting>& settings);

 private:
  Database& database_;
  mutable Statement get_;  // mutable: running it does not change the settings
  mutable Statement list_;
  Statement set_;
  Statement unset_;
};

/// The persisted state of the set: texts by name. All operations throw `StoreError`.
class SetStateStore {
 public:
  /// @param database  outlives this object and has `settingsTables`.
  explicit SetStateStore(Database& database);

  /// Replaces the persisted state by `state`, in one transaction. Writes only the rows that differ.
  void setAll(const std::map<std::string, std::string>& state);
  std::map<std::string, std::string> all();

 private:
  /// What to write to persist a state.
  struct Difference {
    std::vector<std::string> removed;
    std::vector<const std::pair<const std::string, std::string>*> changed;  ///< or new
  };
  Difference differenceTo(const std::map<std::string, std::string>& state);

  Database& database_;
  Statement all_;
  Statement set_;
  Statement unset_;
};

}  // namespace virtualtv
