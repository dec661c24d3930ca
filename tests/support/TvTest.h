// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "EmpAppWindow.h"
#include "framework/Log.h"
#include "framework/Reply.h"
#include "kel/CEmpEngineBase.h"
#include "seam/Seam.h"
#include "services/Service.h"
#include "set/Tv.h"
#include "support/Assembly.h"
#include "support/WorkerProbe.h"

/// The basis of the plug-in's tests: a TV set for each test with the plug-in on it, and everything that can be
/// observed: replies, calls to the set, settings keys, log lines.
namespace support {

/// Lines in the order in which they were seen.
using Lines = std::vector<std::string>;

/// Parameters that are not whole numbers.
inline const Lines noNumbers{"",    " ", "a", "1x",         " 1",          "1 ",  "0x1",
                             "1.0", "+", "-", "2147483648", "-2147483649", "\xff"};

/// The result of a command.
struct Answer {
  bool accepted = false;
  bool written = false;                              ///< the engine wrote the return string
  std::optional<virtualtv::framework::Reply> reply;  ///< what it wrote, decoded

  /// As a transcript shows it: `int 1`, `ascii TEXT`, `unicode "TEXT"`, `refused`, `refused int -1`, `empty`.
  std::string shown() const;
  /// The text of an ascii reply. Fails the test for any other reply.
  std::string text() const;
};

/// A service with these number fields and, unless it is empty, this name.
virtualtv::Service service(std::map<int, std::uint64_t> numbers, std::u16string name = {});

/// A new set for each test: the embedded default, in memory. All calls and log lines are recorded. No engine is open
/// yet. Nothing outlives the test.
class TvTest : public ::testing::Test {
 protected:
  static constexpr const char* appId = "test.app";
  static constexpr const char* widgetId = "test.widget";

  TvTest();
  ~TvTest() override;

  virtualtv::Tv& tv() { return television_.tv(); }
  kel::CEmpAppWindow& app() { return television_.app; }
  virtualtv::device::Device& device() { return television_.device; }

  /// Opens an engine under a name and sends later commands to it.
  bool open(const std::string& name = "emp", const std::string& app = appId, const std::string& widget = widgetId);
  /// Sends later commands to the engine with this name.
  void use(const std::string& name) { engine_ = name; }
  bool close(const std::string& name = "emp");

  /// Runs a command with up to four parameters; the others are empty.
  Answer ask(const std::string& command, const Lines& parameters = {});
  /// The same, as a transcript shows the answer.
  std::string execute(const std::string& command, const Lines& parameters = {}) {
    return ask(command, parameters).shown();
  }
  /// Runs a command with a parameter list.
  Answer askWithParamList(const std::string& command, const Lines& parameters);
  std::string executeWithParamList(const std::string& command, const Lines& parameters) {
    return askWithParamList(command, parameters).shown();
  }

  /// The calls to the set since the last time.
  std::vector<virtualtv::seam::Call> takeCalls();
  /// The same, one line each as in a trace.
  Lines calls();
  /// Only the calls of one operation, as in "SetCropArea" or "IVideoControl[pip#2]::SetCropArea". Drops the others.
  Lines callsOf(const std::string& operation);
  /// The log messages since the last time, as in "0 TEXT", with `*` in place of values that differ from run to run.
  Lines logs();
  /// The same messages with all their data.
  std::vector<virtualtv::framework::LogLine> messages() { return std::exchange(lines_, {}); }
  /// Drops the calls and the log messages so far.
  void forget();
  /// Stops recording calls and log messages for the rest of the test.
  void listenNoMore();

  /// Makes calls of an operation fail, in the words of `.fault`: "IService::FindService nth=2 result=0". Records may be
  /// invalid like those of `oddFault`.
  void fault(const std::string& words);
  void clearFaults();
  /// True when each fault set has hit at least one call.
  bool faultsHit() const;

  /// Runs an operation under a fault, which it must hit. Drops everything observed before.
  template <typename Operation>
  auto under(const std::string& words, Operation operation) {
    clearFaults();
    forget();
    fault(words);
    auto result = operation();
    EXPECT_TRUE(faultsHit()) << words;
    clearFaults();
    return result;
  }

  /// What a command answers under a fault.
  std::string executeUnder(const std::string& words, const std::string& command, const Lines& parameters = {}) {
    return under(words, [&] { return execute(command, parameters); });
  }

  /// Makes the log throw at the next message with this text, masked as in `logs`. The exception says "no log" or has no
  /// message.
  enum class Saying { noLog, nothing };
  void breakLog(const std::string& text, Saying saying = Saying::noLog) {
    breaking_ = text;
    saying_ = saying;
  }

  // The settings keys, bypassing faults and trace. A key of the other type counts as missing.
  std::optional<int> intSetting(const std::string& key);
  std::optional<std::string> textSetting(const std::string& key);
  void setSetting(const std::string& key, int value);
  void setSetting(const std::string& key, const std::string& value);

  /// Shows this source in a window, even if the set does not have it. Drops everything observed so far.
  void showSource(virtualtv::WindowId window, int source);

  /// Replaces the services of the set. The first one determines the TV mode and becomes the start service and the
  /// current one.
  void setServices(const std::vector<virtualtv::Service>& services);

 private:
  std::vector<virtualtv::framework::LogLine> lines_;
  Assembly<kel::CEmpAppWindow> television_;
  std::shared_ptr<virtualtv::device::Feed> calls_;
  virtualtv::notify::Subscription log_;
  std::string engine_;
  std::string breaking_;
  Saying saying_ = Saying::noLog;
};

/// The same with an engine open, its calls and log lines so far dropped.
class EngineTest : public TvTest {
 protected:
  void SetUp() override;
};

/// An engine that only knows its caller.
class BareEngine : public kel::CEmpEngineBase {
 public:
  bool Execute(std::string&, const std::string&, const std::string&, const std::string&, const std::string&,
               const std::string&) override {
    return false;
  }
  bool ExecuteWithParamList(std::string&, const std::string&, const kel::ParamList&) override { return false; }
};

/// A set with a worker that is not yet created.
class BareWorkerTest : public TvTest {
 protected:
  BareWorkerTest();

  bool create() { return worker.Create("CEmpTaskWindow", &engine); }

  BareEngine engine;
  WorkerProbe worker;
};

/// A set with a worker that drives the main window, its calls and log lines so far dropped.
class WorkerTest : public BareWorkerTest {
 protected:
  void SetUp() override;
};

}  // namespace support
