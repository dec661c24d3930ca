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

/// The plug-in on the set in software, held against the model: the same lines to both, and after each line all that can
/// be seen of the two.
namespace comparison {

using Script = std::vector<std::string>;

/// How much of the two is held against each other behind a line. Answers, calls and the set's state always are.
enum class Depth {
  state,     ///< that alone
  settings,  ///< the settings keys as well
  services,  ///< and what the services have beside their fields, which takes long
};

/// What can differ beside the reply.
struct Parts {
  bool calls = false;
  bool state = false;
  bool settings = false;  ///< keys
  bool services = false;  ///< what they have beside their fields
};

/// The plug-in on a set of its own, and the model of both. There is one at a time.
class Pair {
 public:
  Pair();
  Pair(const Pair&) = delete;
  Pair& operator=(const Pair&) = delete;
  ~Pair();

  /// Both as on the first day, with no engine open.
  void restart();
  /// Both with these services and no others, with no engine open.
  void restart(const std::vector<model::Service>& services);
  /// Both sets become this one, which has the same services but for their tracks and favourites. Engines stay.
  void turnTo(const model::Set& set);

  model::World& world() { return world_; }
  virtualtv::Tv& tv();

  /// Runs a line, as `model::run` knows them, on both. @return what differs, empty when nothing does.
  std::string run(const std::string& line, Depth depth = Depth::settings);
  // Of the last line.

  /// What the engine answered, and what it should have; nothing where the line was none for an engine.
  const std::optional<Answer>& answer() const { return answer_; }
  const std::optional<Answer>& expected() const { return expected_; }
  const std::vector<virtualtv::seam::Call>& calls() const { return calls_; }
  const std::vector<virtualtv::framework::LogLine>& log() const { return log_; }
  const Parts& differing() const { return differing_; }
  /// Log lines are kept; they take time to make.
  void keepLog(bool keep);
  /// The model's calls have their outputs; that takes time, too.
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

/// Where the two differ.
struct Difference {
  std::size_t line;         ///< of the script, counted from 0
  std::string expectation;  ///< the script so far as a transcript, by the model, which fails where it differs
  std::string details;      ///< what differs, a line each
};

/// The set that scripts start with, as the model's.
model::Set startingSet();

/// What commands answered, by their names, over many scripts.
using Replies = std::map<std::string, std::set<std::string>>;

/// Runs a script on both, from the built-in set on. After each line these agree: the reply, the calls made, the
/// settings keys, the state of the set with the tracks in use. Tracks and favourites of services agree after each line
/// that is about them, and at the end.
/// @param spoil  changes the model before the script, for tests of the comparison.
/// @return the first difference, nothing when there is none.
std::optional<Difference> compare(Pair& pair, const Script& script, Replies* replies = nullptr,
                                  const std::function<void(model::World&)>& spoil = {});
/// The same on a pair made for it.
std::optional<Difference> compare(const Script& script, Replies* replies = nullptr,
                                  const std::function<void(model::World&)>& spoil = {});

/// Drops lines from a script for as long as `fails` holds for what is left. @return a script from which no single line
/// can be dropped.
Script shrunk(Script script, const std::function<bool(const Script&)>& fails);

}  // namespace comparison
