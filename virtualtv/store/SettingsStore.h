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

/// The tables of this room, for the schema of the database that they stand in.
extern const char* const settingsTables;

using Setting = std::variant<int, std::string>;

/// The settings keys of the set, each with a number or a text. A write is on the disk when it returns, unless a
/// `Transaction` is under way. All operations throw `StoreError`.
class SettingsStore {
 public:
  /// @param database  outlives this object and has `settingsTables`.
  explicit SettingsStore(Database& database);

  /// Nothing when the key is not set.
  std::optional<Setting> get(std::string_view key) const;
  /// Sets a key, whatever it held before.
  void set(std::string_view key, const Setting& value);
  /// @return false when the key was not set.
  bool unset(std::string_view key);
  /// All keys.
  std::map<std::string, Setting> list() const;
  /// Puts these in place of all that were set, in one transaction.
  void replaceAll(const std::map<std::string, Setting>& settings);

 private:
  Database& database_;
  mutable Statement get_;  // mutable: what runs it does not change the settings
  mutable Statement list_;
  Statement set_;
  Statement unset_;
};

/// What the set remembers of itself: texts by name. All operations throw `StoreError`.
class SetStateStore {
 public:
  /// @param database  outlives this object and has `settingsTables`.
  explicit SetStateStore(Database& database);

  /// Keeps `state` in place of all that was kept, in one transaction. Rows that stay the same are not written.
  void setAll(const std::map<std::string, std::string>& state);
  std::map<std::string, std::string> all();

 private:
  /// What to write for a state to be kept.
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
