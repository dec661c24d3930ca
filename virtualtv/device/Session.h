// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "device/Device.h"

namespace virtualtv::device {

/// The identity that a client gives.
struct Application {
  std::string appId;
  std::string widgetId;

  bool operator==(const Application&) const = default;
};

/// The effects of a step on the set and the plug-in.
struct Deed {
  std::string engine;         ///< the engine in use
  std::uint64_t command = 0;  ///< number of its last command
  bool ran = false;           ///< the step ran a command, which may have failed
  std::vector<seam::Call> calls;
  std::vector<framework::LogLine> log;
  std::vector<SettingChanged> keys;  ///< changed keys, sorted by name
};

/// The most parameters of a command, unless they are passed as a list.
inline constexpr std::size_t mostParameters = 4;

/// A command was given more parameters than that.
struct TooManyParameters : std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};

/// The state of one client on a device: its engines, and the identity that it gives. The destructor closes the engines.
/// Used on the device's thread.
class Session {
 public:
  static constexpr const char* firstEngine = "main";

  /// @param device  outlives it.
  /// @param name  distinguishes its engines from those of other sessions; must be unique.
  explicit Session(Device& device, std::string name = {});
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  Device& device() { return device_; }
  const std::string& name() const { return name_; }

  // Operations that open an engine throw std::runtime_error when it can't be opened.

  /// Name of the engine in use.
  const std::string& engine() const { return engine_; }
  /// Names of the open engines.
  std::vector<std::string> openEngines();
  /// Selects another engine for use, and opens it if needed.
  void use(const std::string& engine);
  /// Closes the engine in use, if it is open, and opens a new one.
  void reopen();
  /// Closes an engine; a command on it opens a new one. @return false when it is not open.
  bool close(const std::string& engine);
  /// Tells the engine in use which application calls it. The application is remembered for when the engine is opened
  /// again.
  void setApplication(const Application& application);

  /// Runs a command on the engine in use, which is opened first if needed.
  /// @param words  name and parameters; up to `mostParameters` of these unless `list` is true.
  /// @param ret  receives the encoded reply; unchanged when there is none.
  /// @return the result of the engine. Its exceptions propagate.
  /// @throws std::invalid_argument when there is no name, TooManyParameters when there are too many.
  bool execute(const std::vector<std::string>& words, bool list, std::string& ret);

  /// Limits the number of open engines from now on. Opening more throws std::invalid_argument.
  void limitEngines(std::size_t most) { mostEngines_ = most; }

  /// The device's number of the last command that an engine of this session ran; 0 when there was none, or when the
  /// device has no history.
  std::uint64_t lastCommand() const { return lastCommand_; }

  /// Closes the engines of this session. @param why  in a word or two.
  void closeEngines(const std::string& why);
  /// Resets to the start: the first engine in use, no application.
  void forget();

  /// Runs a step. @return its effects. An exception of the step is stored in `thrown`.
  Deed observe(const std::function<void()>& step, std::exception_ptr& thrown);

  /// A command in the device's history, as in `CommandRun`, with its effects.
  struct Recalled {
    std::vector<std::string> words;
    bool list = false;
    Deed deed;
  };
  /// @return nothing when the command is not in the history.
  std::optional<Recalled> recall(std::uint64_t command) const;

  /// The framework's key for an engine of this session.
  std::string key(const std::string& engine) const;
  /// The engine of this session with this key; nothing when the key belongs to another session.
  std::optional<std::string> engineOf(const std::string& key) const;

 private:
  bool run(const std::string& key, const std::vector<std::string>& words, bool list, std::string& ret);
  void openEngine(const std::string& key);

  Device& device_;
  std::string name_;
  std::string engine_ = firstEngine;
  std::size_t mostEngines_ = std::numeric_limits<std::size_t>::max();
  std::map<std::string, Application> applications_;  ///< by engine
  std::uint64_t commands_ = 0;                       ///< number of commands run
  std::uint64_t lastCommand_ = 0;
};

}  // namespace virtualtv::device
