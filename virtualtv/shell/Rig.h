#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "framework/Log.h"
#include "kel/CEmpAppBase.h"
#include "seam/Seam.h"
#include "set/Tv.h"
#include "store/SettingsStore.h"

/// The set with the plug-in's engines on it, and a record of what the last step on them did.
namespace virtualtv::shell {

/// A settings key that changed; nothing for a key that was not set or is not set any more.
struct KeyChange {
  std::string key;
  std::optional<Setting> before;
  std::optional<Setting> after;
};

/// What a step did to the set.
struct Deed {
  std::string engine;         ///< the engine in use
  std::uint64_t command = 0;  ///< number of its last command
  std::vector<seam::Call> calls;
  std::vector<framework::LogLine> log;
  std::vector<KeyChange> keys;
};

/// Who a client says that it is.
struct Application {
  std::string appId;
  std::string widgetId;
};

/// There is one at a time: it makes the process's `Tv`, and has the seam and the log for itself.
class Rig {
 public:
  static constexpr const char* firstEngine = "main";

  /// Switches the set on. @param app, storage  outlive it. @throws StoreError when the storage can't be read.
  Rig(kel::CEmpAppBase& app, Storage& storage);
  Rig(const Rig&) = delete;
  Rig& operator=(const Rig&) = delete;
  /// Closes the engines, switches the set off.
  ~Rig();

  /// @throws std::runtime_error when a failed restart has left no set.
  Tv& tv();

  /// Also tells this listener of log messages up to a level, as they come.
  void tellLog(int level, std::function<void(const framework::LogLine&)> listener);

  // Engines. Operations that open one throw std::runtime_error when it can't be opened.

  /// Name of the engine in use.
  const std::string& engine() const { return engine_; }
  const std::set<std::string>& openEngines() const { return open_; }
  /// Takes another engine into use, which is opened if it is not open.
  void use(const std::string& engine);
  /// Closes the engine in use, if it is open, and opens a new one.
  void reopen();
  /// Tells the engine in use which application calls it; kept for when it is opened again.
  void setApplication(const Application& application);

  /// Runs a command on the engine in use, which is opened first if it is not open.
  /// @param words  name and parameters; up to four of these unless `list` is true.
  /// @param ret  receives the encoded reply; left as it is when there is none.
  /// @return the engine's answer. What the engine throws passes.
  bool execute(const std::vector<std::string>& words, bool list, std::string& ret);

  /// Closes all engines.
  void closeEngines();

  // The set.

  /// Switches the set off and on. Engines are closed, faults and latencies are gone.
  void restart();
  /// Back to the embedded set, as on the first day.
  void reset();

  /// Runs a step and answers what it did, also when it throws: the exception then follows in `thrown`.
  Deed watch(const std::function<void()>& step, std::exception_ptr& thrown);

  /// Complaints of the set since the last call.
  std::vector<std::string> takeComplaints();

 private:
  void switchOn();
  void switchOff();
  void openEngine();
  std::vector<seam::Call> takeCalls();
  std::map<std::string, Setting> settings();

  kel::CEmpAppBase& app_;
  Storage& storage_;
  std::optional<Tv> tv_;
  std::string engine_ = firstEngine;
  std::set<std::string> open_;
  std::map<std::string, Application> applications_;  ///< by engine
  std::vector<seam::Call> calls_;                    ///< of the step, from before the set was switched off
  std::vector<framework::LogLine> log_;
  std::vector<std::string> complaints_;
  int toldLevel_ = -1;
  std::function<void(const framework::LogLine&)> told_;
};

}  // namespace virtualtv::shell
