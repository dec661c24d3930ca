#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "import/Import.h"
#include "import/LamedbValues.h"
#include "import/Lines.h"

namespace virtualtv::import {

/// Starts a file that `joinedLists` puts behind a lamedb; its name follows.
inline constexpr std::string_view joinedFile = "#BOUQUET ";

/// Reads a directory with a lamedb, or a lamedb5 where there is none, as one text: the bouquets that `bouquets.tv` and
/// `bouquets.radio` name follow it, with a line in front of each that says which file it is.
/// @param read  the file of a name in that directory; nothing where there is none.
/// @return nothing where there is no lamedb.
std::optional<std::string> joinedLists(const std::function<std::optional<std::string>(const std::string&)>& read);

/// What the bouquets behind a lamedb say of its services.
class Bouquets {
 public:
  /// Reads them. @param lines  stands at the line that starts the first; is gone through to its end.
  void read(Lines& lines, Problems& problems);

  /// The bouquet that a service is in, the first of several; nothing where it is in none.
  std::optional<std::string_view> groupOf(const LamedbKey& service) const;
  bool isFavourite(const LamedbKey& service) const { return favourites_.contains(service); }

  /// Adds a problem for each line that names a service which no lamedb has.
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
  std::vector<std::pair<std::string_view, std::string>> wanted_;  ///< files, and where each is named
  std::vector<Mention> mentions_;
};

}  // namespace virtualtv::import
