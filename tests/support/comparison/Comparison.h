// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "device/Feed.h"
#include "framework/Log.h"
#include "notify/Listeners.h"
#include "support/comparison/Shown.h"
#include "support/model/World.h"

namespace virtualtv {
class Tv;
}

/// Compares the plug-in on the set in software with the model: runs the same lines on both, and compares everything
/// observable after each line.
namespace comparison {

using Script = std::vector<std::string>;

/// How much to compare after a line. Answers, calls and the set's state are always compared.
enum class Depth {
  state,     ///< only these
  settings,  ///< the settings keys as well
  services,  ///< also the lists of services, which takes long
};

/// The parts that can differ, besides the reply.
struct Parts {
  bool calls = false;
  bool state = false;
  bool settings = false;  ///< keys
  bool services = false;  ///< lists of services
};

/// The plug-in on a set of its own, and the model of both. There is one at a time.
class Pair {
 public:
  Pair();
  Pair(const Pair&) = delete;
  Pair& operator=(const Pair&) = delete;
  ~Pair();

  /// Resets both to the initial set, with no engine open.
  void restart();
  /// Resets both to these services, with no engine open.
  void restart(const std::vector<model::Service>& services);
  /// Changes both to this set, whose services differ only in tracks and favourites. Engines stay open.
  void turnTo(const model::Set& set);

  model::World& world() { return world_; }
  virtualtv::Tv& tv();

  /// Runs a line, as `model::run` knows them, on both. @return what differs, empty when nothing does.
  std::string run(const std::string& line, Depth depth = Depth::settings);
  // Results of the last line.

  /// The answers of the engine and of the model; null when the line was not for an engine.
  const std::optional<Answer>& answer() const { return answer_; }
  const std::optional<Answer>& expected() const { return expected_; }
  const std::vector<virtualtv::seam::Call>& calls() const { return calls_; }
  const std::vector<virtualtv::framework::LogLine>& log() const { return log_; }
  const Parts& differing() const { return differing_; }
  /// Switches the recording of log lines, which takes time, on or off.
  void keepLog(bool keep);
  /// Records the outputs of the model's calls as well, which also takes time.
  void noteOutputs(bool note) { notesOutputs_ = note; }

 private:
  class Plugin;

  std::string compareKept(Depth depth);
  std::string compareServices();
  void takeCalls();

  std::unique_ptr<Plugin> plugin_;
  model::Set first_;
  model::World world_;
  std::optional<Answer> answer_;
  std::optional<Answer> expected_;
  std::vector<virtualtv::seam::Call> calls_;
  std::vector<virtualtv::framework::LogLine> log_;
  Parts differing_;
  bool notesOutputs_ = false;
  std::shared_ptr<virtualtv::device::Feed> recorded_;
  virtualtv::notify::Subscription keepsLog_;
};

/// Where plug-in and model differ.
struct Difference {
  std::size_t line;         ///< number of the line in the script, counted from 0
  std::string expectation;  ///< the script up to that line as a transcript of the model's results; it fails there
  std::string details;      ///< what differs, one line each
};

/// The set that scripts start with, as the model's.
model::Set startingSet();

/// The answers of commands, by name, over many scripts.
using Replies = std::map<std::string, std::set<std::string>>;

/// Runs a script on both, starting with the built-in set. After each line these must agree: the reply, the calls, the
/// settings keys, and the state of the set with the tracks in use. Tracks and favourites of services are compared after
/// each line about them, and at the end.
/// @param spoil  changes the model before the script, for tests of the comparison.
/// @return the first difference, nothing when there is none.
std::optional<Difference> compare(Pair& pair, const Script& script, Replies* replies = nullptr,
                                  const std::function<void(model::World&)>& spoil = {});
/// The same with a temporary pair.
std::optional<Difference> compare(const Script& script, Replies* replies = nullptr,
                                  const std::function<void(model::World&)>& spoil = {});

/// Removes lines from a script as long as `fails` holds for the rest. @return a script from which no single line can be
/// removed.
Script shrunk(Script script, const std::function<bool(const Script&)>& fails);

}  // namespace comparison
