// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "import/Import.h"
#include "import/LamedbValues.h"

namespace virtualtv::import {

/// Starts the line in front of each file that `joinedLists` appends to a lamedb. The name of the file completes the
/// line.
inline constexpr std::string_view joinedFile = "#BOUQUET ";

/// Reads a directory with a lamedb, or else a lamedb5, as one text. The bouquets named in `bouquets.tv` and
/// `bouquets.radio` are appended, each after a line with the name of its file. @param read  returns the content of the
/// file with a name in that directory, or nothing when there is none. @return nothing when there is no lamedb.
std::optional<std::string> joinedLists(const std::function<std::optional<std::string>(const std::string&)>& read);

/// The offset, in bytes, of the first bouquet in a text as `joinedLists` returns it; the size of the text when it has
/// no bouquets. The lamedb in front of them may be cut off.
std::size_t startOfBouquets(std::string_view content);

/// The bouquets that follow a lamedb, and the groups that they assign to services.
class Bouquets {
 public:
  /// Reads the bouquets. @param files  as `joinedLists` appends them; outlive this object.
  void read(std::string_view files, Problems& problems);

  /// The first bouquet that contains a service; nothing when there is none.
  std::optional<std::string_view> groupOf(const LamedbKey& service) const;
  bool isFavourite(const LamedbKey& service) const { return favourites_.contains(service); }

  /// Adds a problem for each line that names a service missing in the lamedb.
  void report(const std::function<bool(const LamedbKey&)>& exists, Problems& problems) const;

 private:
  struct Mention {
    LamedbKey service;
    std::string at;
  };

  void readLine(std::string_view line);
  void readService(std::string_view reference);
  void mention(std::string_view file);
  std::string place() const;

  std::string_view file_;
  int line_ = 0;
  std::string_view name_;
  std::map<LamedbKey, std::string_view> groups_;
  std::set<LamedbKey> favourites_;
  std::set<std::string_view> files_;
  std::vector<std::pair<std::string_view, std::string>> wanted_;  ///< files, with the place that names each
  std::vector<Mention> mentions_;
};

}  // namespace virtualtv::import
