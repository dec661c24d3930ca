// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "device/Feed.h"
#include "device/Session.h"
#include "shell/Lines.h"

namespace virtualtv::shell {

/// Translates what happens on a device to a transcript: the inputs that repeat it, and their output. All engines belong
/// to the one session that runs the transcript. Their names tell sessions apart by a number, as in `2:main`.
class Scribe {
 public:
  /// @param keep  stores content beside the transcript, under a name that ends in `end`. @return the name that inputs
  /// use.
  explicit Scribe(std::function<std::string(std::string_view content, const char* end)> keep)
      : keep_(std::move(keep)) {}

  /// Translates the next happening, with its time as a comment. @return the lines to append; none for a mere
  /// consequence of another happening.
  Lines tell(const device::Happening& happening);
  /// An input that restores a snapshot.
  Lines restore(const Snapshot& snapshot);

 private:
  template <typename Other>
  void put(const Other&) {}  // consequences of the happenings above
  void put(const device::CommandRun& command);
  void put(const framework::EngineOpened& opened);
  void put(const framework::EngineClosed& closed);
  void put(const device::SetStarted& started);
  void put(const device::FaultSet& fault);
  void put(const device::FaultGone& fault);
  void put(const device::Act& act);
  void put(const device::KnobTurned& turned);
  void put(const device::ServiceEdited& edited);
  void put(const device::SettingGiven& setting);
  void put(const device::ListImported& list);
  void put(const device::ScanImported& scan);
  void put(const device::SnapshotRestored& restored);
  void put(const device::ApplicationGiven& application);

  void putInput(const std::string& start, const Lines& words);
  void putApplication(const std::string& engine, const device::Application& application);
  void use(const std::string& engine);
  std::string nameOf(const std::string& key);

  std::function<std::string(std::string_view, const char*)> keep_;
  std::map<std::string, std::string> clients_;  ///< number of each session, by its name
  std::set<std::string> open_;                  ///< keys of the open engines
  std::string inUse_ = device::Session::firstEngine;
  std::map<std::string, device::Application> applications_;  ///< by engine
  Lines lines_;                                              ///< of the current happening
};

}  // namespace virtualtv::shell
