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

/// Who a client says that it is.
struct Application {
  std::string appId;
  std::string widgetId;

  bool operator==(const Application&) const = default;
};

/// What a step did to the set and the plug-in.
struct Deed {
  std::string engine;         ///< the engine in use
  std::uint64_t command = 0;  ///< number of its last command
  bool ran = false;           ///< the step ran a command, which may have failed
  std::vector<seam::Call> calls;
  std::vector<framework::LogLine> log;
  std::vector<SettingChanged> keys;  ///< those that hold something else now, by their names
};

/// The most parameters that a command is given, unless they are given as a list.
inline constexpr std::size_t mostParameters = 4;

/// A command was given more than that.
struct TooManyParameters : std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};

/// What a client has of its own on a device: its engines, and who it says that it is. Ends with the client, engines
/// included. Used on the device's thread.
class Session {
 public:
  static constexpr const char* firstEngine = "main";

  /// @param device  outlives it.
  /// @param name  tells its engines from those of others: no other session has it.
  explicit Session(Device& device, std::string name = {});
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  Device& device() { return device_; }
  const std::string& name() const { return name_; }

  // Operations that open an engine throw std::runtime_error when it can't be opened.

  /// Name of the engine in use.
  const std::string& engine() const { return engine_; }
  /// Names of those that are open.
  std::vector<std::string> openEngines();
  /// Takes another engine into use, which is opened if it is not open.
  void use(const std::string& engine);
  /// Closes the engine in use, if it is open, and opens a new one.
  void reopen();
  /// Closes an engine; a command on it opens a new one. @return false when it is not open.
  bool close(const std::string& engine);
  /// Tells the engine in use which application calls it; kept for when it is opened again.
  void setApplication(const Application& application);

  /// Runs a command on the engine in use, which is opened first if it is not open.
  /// @param words  name and parameters; up to `mostParameters` of these unless `list` is true.
  /// @param ret  receives the encoded reply; left as it is when there is none.
  /// @return the engine's answer. What the engine throws passes.
  /// @throws std::invalid_argument when there is no name, TooManyParameters when there are too many.
  bool execute(const std::vector<std::string>& words, bool list, std::string& ret);

  /// Has no more engines than these open at a time from now on: those that open one throw std::invalid_argument.
  void limitEngines(std::size_t most) { mostEngines_ = most; }

  /// The last command that an engine of this session was given, by its number on the device; 0 for none, and where
  /// the device holds none.
  std::uint64_t lastCommand() const { return lastCommand_; }

  /// Closes the engines of this session. @param why  in a word or two.
  void closeEngines(const std::string& why);
  /// Back to the start: the first engine in use, no application.
  void forget();

  /// Runs a step. @return what it did, also when it throws: the exception then follows in `thrown`.
  Deed watch(const std::function<void()>& step, std::exception_ptr& thrown);

  /// A command that the device holds, as `CommandRun` tells it, and what it did.
  struct Recalled {
    std::vector<std::string> words;
    bool list = false;
    Deed deed;
  };
  /// @return nothing when it is not held.
  std::optional<Recalled> recall(std::uint64_t command) const;

  /// What the framework knows an engine of this session by.
  std::string key(const std::string& engine) const;
  /// The engine of this session that a key stands for; nothing where it is another's.
  std::optional<std::string> engineOf(const std::string& key) const;

 private:
  bool run(const std::string& key, const std::vector<std::string>& words, bool list, std::string& ret);
  void openEngine(const std::string& key);

  Device& device_;
  std::string name_;
  std::string engine_ = firstEngine;
  std::size_t mostEngines_ = std::numeric_limits<std::size_t>::max();
  std::map<std::string, Application> applications_;  ///< by engine
  std::uint64_t commands_ = 0;                       ///< that were run
  std::uint64_t lastCommand_ = 0;
};

}  // namespace virtualtv::device
