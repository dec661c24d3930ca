// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "EmpAppWindow.h"
#include "framework/Reply.h"
#include "seam/Seam.h"
#include "set/Tv.h"
#include "store/SettingsStore.h"
#include "support/Assembly.h"

/// A set with the plug-in on it, for fuzzing and proof programs. There is one at a time. Log messages are rendered and
/// dropped.
namespace support {

/// The result of a command.
struct Outcome {
  bool accepted = false;
  bool written = false;                              ///< the engine wrote the return string
  std::optional<virtualtv::framework::Reply> reply;  ///< what it wrote, decoded; nothing if it is not a reply

  /// True when the command was accepted with this number as reply.
  bool isNumber(int number) const;
  /// As a transcript shows it.
  std::string shown() const;
};

class Bench {
 public:
  /// @param services  the set's services; the embedded ones when empty.
  /// @param directory  directory for its state; in memory when empty.
  explicit Bench(std::vector<virtualtv::Service> services = {}, const std::filesystem::path& directory = {});

  /// Resets to the initial set without open engines. This is much faster than creating another bench.
  void renew();
  /// The same, but engines stay open.
  void rest();

  virtualtv::Tv& tv() { return television_.tv(); }
  kel::CEmpAppWindow& app() { return television_.app; }
  virtualtv::Storage& storage() { return *television_.storage; }
  virtualtv::device::Device& device() { return television_.device; }

  /// Stops rendering log messages.
  void logNoMore() { log_.end(); }

  /// Opens the engine for commands. @return false when it can't be created.
  bool open();
  bool close();

  /// Wraps the engine's execution of a command.
  using Around = std::function<bool(const std::function<bool()>& run)>;

  /// Runs a command. @param parameters  four at most; the others are empty.
  Outcome execute(const std::string& command, const std::vector<std::string>& parameters = {},
                  const Around& around = {});
  Outcome executeWithParamList(const std::string& command, const std::vector<std::string>& parameters,
                               const Around& around = {});

  /// The secondary TV stack shows the ISP source, with an audio track and a subtitle.
  void showIsp();

  /// Selects the main window, runs two queries without faults, and compares the replies with the state of the set.
  /// @return what is wrong; empty on success.
  std::string unhealthy();

  /// True when the set equals the content of its storage.
  bool isKept();

 private:
  Assembly<kel::CEmpAppWindow> television_;
  virtualtv::notify::Subscription log_;
  virtualtv::TvState firstState_;
  std::map<std::string, virtualtv::Setting> firstSettings_;
  std::vector<virtualtv::Service> services_;
  bool servicesChanged_ = false;
  virtualtv::notify::Subscription subscription_;

  void furnish();
  Outcome run(const std::function<bool(kel::CEmpEngineBase&, std::string& ret)>& command, const Around& around);
};

/// Checks that an answer to `command`, through the four-parameter entry, is of a kind that the catalogue names for it,
/// whatever the set does. Returns what is wrong; empty when the answer is valid.
std::string undocumented(const std::string& command, const Outcome& outcome);

}  // namespace support
