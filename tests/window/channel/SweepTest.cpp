// SPDX-License-Identifier: MIT
// Every command about channels, with every call that it makes to the set failing in every way, one at a time.
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/Channels.h"

namespace {

using channels::ChannelEngineTest;
using support::Lines;
using virtualtv::seam::Operation;
using virtualtv::seam::Returns;

struct Command {
  std::string name;
  Lines parameters;
};

const std::vector<Command> commands{
    {"FindChannel", {"0", "1"}},
    {"FindChannel", {"3", "9"}},
    {"GetTVMode", {}},
    {"SetTVMode", {"1"}},
    {"SetTVMode", {"24"}},
    {"GetChannel_Size", {}},
    {"GetChannel_Type", {"0"}},
    {"GetChannel_Name", {"0"}},
    {"GetChannel_ServiceId", {"0"}},
    {"GetChannel_ServiceId", {"7", "0", "2"}},
    {"GetChannel_ServiceId", {"7", "0", "20"}},
    {"GetChannel_OnTVJson", {"0"}},
    {"GetCurrentChannel_Major", {}},
    {"GetCurrentChannel_Minor", {}},
    {"GetCurrentChannel_OriginNetID", {}},
    {"GetCurrentChannel_ProgramNumber", {}},
    {"GetCurrentChannel_PTC", {}},
    {"GetCurrentChannel_TransportStreamID", {}},
    {"GetCurrentChannel_Type", {}},
    {"GetCurrentChannel_Name", {}},
    {"GetCurrentChannel_ServiceName", {}},
    {"GetStartChannel_Type", {}},
    {"GetStartChannel_Major", {}},
    {"GetStartChannel_Minor", {}},
    {"GetStartChannel_Name", {}},
    {"GetStartChannel_ServiceId", {}},
    {"GetStartChannel_Info", {}},
    {"GetCurrentChannelInfo", {}},
    {"GetPreviousChannelInfo", {}},
    {"GetFullChannelList", {}},
};

const Lines keys{"db/emp/mainsource", "db/emp/previousmainsource", "db/emp/pipsource", "db/emp/previouspipsource",
                 "db/kel/current_source_type"};

/// The ways in which an operation fails.
Lines waysOf(const Operation& operation) {
  Lines ways{"throw"};
  if (operation.returnsNumber()) {
    for (const int result : {-2147483647, -1, 0, 1, 2147483647}) ways.push_back(std::to_string(result));
  }
  if (!operation.written().empty()) ways.emplace_back("unwritten");
  if (operation.returns == Returns::text) ways.emplace_back("null");
  return ways;
}

class CommandSweep : public ChannelEngineTest {
 protected:
  void SetUp() override {
    ChannelEngineTest::SetUp();
    ASSERT_EQ(execute("FindChannel", {"0", "1"}), "int 1");
    forget();
  }

  std::map<std::string, std::optional<int>> settings() {
    std::map<std::string, std::optional<int>> values;
    for (const std::string& key : keys) values[key] = intSetting(key);
    return values;
  }

  /// The operations that a command calls, with how often.
  std::map<const Operation*, int> callsOf(const Command& command) {
    takeCalls();
    execute(command.name, command.parameters);
    std::map<const Operation*, int> counts;
    for (const virtualtv::seam::Call& call : takeCalls()) ++counts[call.operation];
    return counts;
  }

  /// Runs a command under a fault. It must answer, and must not leave an exception to the engine.
  void runUnder(const Command& command, const std::string& words) {
    SCOPED_TRACE(command.name + ", " + words);
    fault(words);
    const support::Answer answer = ask(command.name, command.parameters);
    EXPECT_TRUE(faultsHit());
    clearFaults();
    EXPECT_TRUE(answer.accepted && answer.reply) << answer.shown();
    for (const std::string& line : logs()) {
      EXPECT_EQ(line.find("Exception Handled by Execute"), std::string::npos) << line;
    }
  }
};

TEST_F(CommandSweep, EveryCallFailingInEveryWayIsAnsweredAndLeavesTheSettings) {
  const auto before = settings();
  for (const Command& command : commands) {
    for (const auto& [operation, count] : callsOf(command)) {
      for (int nth = 1; nth <= count; ++nth) {
        for (const std::string& way : waysOf(*operation)) {
          runUnder(command, std::string(operation->name) + " nth=" + std::to_string(nth) + " result=" + way);
        }
      }
    }
    EXPECT_EQ(settings(), before) << command.name;
  }
}

TEST_F(CommandSweep, RecordsOfAnyContentAreAnswered) {
  const Lines records{"{}",
                      "{12=18446744073709551615,16=\"\",110=\"\"}",
                      "{1=-2147483648,2=-1,4=2147483647,6=-99,13=4294967295,14=-1,15=65536,18=-1,22=-1,37=-1,41=-1}",
                      "{1=\"text\",12=\"text\",13=\"text\",16=7,110=7}",
                      "{12=281,16=\"\\uD800\\uDC00\\uDFFF\",110=\"{\\uD800\"}",
                      "{12=281,16=\"%s%n%d\",110=\"%s%n%d\"}"};
  for (const std::string& record : records) {
    fault("IServiceNavigation::GetServiceList always out.services=[" + record + "," + record + "]");
    fault("IServiceNavigation::GetCurrentService always out.service=" + record);
    fault("IService::FindService always out.service=" + record);
    ASSERT_EQ(execute("FindChannel", {"0", "1"}), "int 1");
    for (const Command& command : commands) {
      const support::Answer answer = ask(command.name, command.parameters);
      EXPECT_TRUE(answer.accepted && answer.reply) << command.name << " " << record << ": " << answer.shown();
    }
    clearFaults();
  }
}

}  // namespace
