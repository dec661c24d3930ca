// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Disk.h"
#include "EmpAppWindow.h"
#include "set/Tv.h"
#include "shell/Session.h"
#include "support/Assembly.h"

namespace virtualtv::proof {

using Lines = std::vector<std::string>;

/// What a set persists: settings keys, state, and services with everything that belongs to them. One line for each
/// name.
using Content = std::map<std::string, std::string>;

/// The difference between two of them, in words; empty when there is none.
std::string difference(const Content& expected, const Content& found);

/// The outcome of a step on a set.
struct Outcome {
  Lines printed;
  Lines reported;  ///< errors reported by the shell

  bool operator==(const Outcome&) const = default;
};

/// A set with the plug-in on it, on a state directory whose database is on the disk in memory.
class Television {
 public:
  /// Switches the set on. @throws StoreError when the state can't be read.
  explicit Television(const std::filesystem::path& directory);

  /// Runs a line in the shell.
  Outcome run(const std::string& line);

  Content content();
  /// True when a line that restarts the set could not start it again.
  bool isOff();
  /// True when the set reports what its storage holds.
  bool isOfOneMind();

  /// Calls `seen` wherever a write may have ended: after each change of the set and before each call to it.
  void onWrite(const std::function<void()>& seen);

 private:
  support::Assembly<kel::CEmpAppWindow> television_;
  shell::Session session_;
  notify::Subscription subscription_;
};

/// Switches a set on only to read what it has persisted.
Content contentOn(const std::filesystem::path& directory);

/// Puts an image on the disk. @return SQLite's findings about damage in its database files; empty when there are none.
std::string damageOn(const Image& image);

}  // namespace virtualtv::proof
