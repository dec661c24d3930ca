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

/// Tells what happens on a device as a transcript does: inputs that do it again, in one session with all engines, and
/// what they print. Engines of sessions with a name are called by a number in its place, as in `2:main`.
class Scribe {
 public:
  /// @param keep  keeps content beside the transcript, under a name that ends so. @return the name that inputs use.
  explicit Scribe(std::function<std::string(std::string_view content, const char* end)> keep)
      : keep_(std::move(keep)) {}

  /// The next thing that happened, with its time as a comment. @return no lines for what only comes of something else.
  Lines tell(const device::Happening& happening);
  /// An input that makes a set what a snapshot says.
  Lines restore(const Snapshot& snapshot);

 private:
  template <typename Other>
  void put(const Other&) {}  // comes of what is put
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
  std::map<std::string, std::string> clients_;  ///< numbers of sessions, by name
  std::set<std::string> open_;                  ///< keys of engines
  std::string inUse_ = device::Session::firstEngine;
  std::map<std::string, device::Application> applications_;  ///< by engine
  Lines lines_;                                              ///< of what is being told
};

}  // namespace virtualtv::shell
