// SPDX-License-Identifier: MIT
// Makes every platform call of every command fail in turn, in every possible way, on both TV stacks. Checks the source
// lines that the plug-in logs, and the outputs that can be set for calls.
#include <algorithm>
#include <cctype>
#include <iterator>
#include <limits>
#include <set>

#include "Sources.h"
#include "support/Commands.h"
#include "support/Tracks.h"

namespace {

using support::Answer;
using support::Lines;
using virtualtv::framework::LogLine;
using virtualtv::seam::Call;
using virtualtv::seam::Fault;
using virtualtv::seam::Form;
using virtualtv::seam::Operation;
using virtualtv::seam::Output;
using virtualtv::text::Range;

/// A set on which every command succeeds.
class EveryCommandTest : public channels::ChannelEngineTest {
 protected:
  void SetUp() override {
    ChannelEngineTest::SetUp();
    virtualtv::Service service;
    service.audio = {{255, 5, 1, 0, 0, true}, {256, 6, 1, 0, 0, true}};
    service.subtitles = {{270, 5, 0, true}, {271, 6, 0, true}};
    service.favourites = {{1, true}};
    channels::furnish(tv(), tracks::furnished(service));
    tv().adjust([&](virtualtv::TvState& state) {
      state.isp.audio = service.audio;
      state.isp.subtitles = service.subtitles;
    });
    fresh_ = tv().state();
  }

  /// From now on commands find the ISP source on screen.
  void showIsp() {
    fresh_.isp.shown = true;
    lastService_ = "isp-service";
  }

  /// Restores the initial set, and opens an engine with a found-channel list. Drops everything observed so far.
  void prepare() {
    clearFaults();
    close();
    tv().adjust([this](virtualtv::TvState& state) { state = fresh_; });
    setSetting(tracks::lastService, lastService_);
    ASSERT_TRUE(open());
    ASSERT_EQ(execute("FindChannel", {"0", "1"}), "int 1");
    forget();
  }

 private:
  virtualtv::TvState fresh_;
  std::string lastService_ = "tv-service";
};

/// Checks the source lines that the plug-in logs.
class LocationTest : public EveryCommandTest {
 protected:
  /// Requires messages, each with a line of its operation.
  void expectLocations();
  /// Runs an action, then again with each of its calls throwing, and checks the lines each time.
  template <typename Action>
  void sweepLocations(Action action);
};

class SweepTest : public LocationTest, public ::testing::WithParamInterface<std::size_t> {
 protected:
  /// The words of faults that make an operation fail.
  static Lines ways(const Operation& operation) {
    Lines all{"result=throw"};
    for (const char* words : {"result=0", "result=-1", "result=1", "result=2", "result=null", "result=unwritten"}) {
      try {
        virtualtv::seam::parseFault({std::string(operation.name), words});
        all.emplace_back(words);
      } catch (const std::invalid_argument&) {  // this operation can't fail in this way
      }
    }
    return all;
  }

  static const engine::Command& command() { return engine::everyCommand()[GetParam()]; }
  void sweep();
};

void SweepTest::sweep() {
  const engine::Command& swept = command();
  prepare();
  const std::string healthy = execute(swept.name, swept.parameters);
  const std::vector<Call> made = takeCalls();
  std::map<const Operation*, int> counts;
  for (const Call& one : made) {
    const std::string nth = " nth=" + std::to_string(++counts[one.operation]) + " ";
    for (const std::string& way : ways(*one.operation)) {
      const std::string words = std::string(one.operation->name) + nth + way;
      SCOPED_TRACE(swept.name + ": " + words);
      prepare();
      fault(words);
      const Answer answer = ask(swept.name, swept.parameters);
      EXPECT_TRUE(faultsHit());
      EXPECT_TRUE(answer.accepted);
      EXPECT_TRUE(answer.reply.has_value()) << answer.shown();
      EXPECT_NE(finished().find_first_of("0123456789"), std::string::npos);
      clearFaults();
      EXPECT_EQ(execute(swept.name, swept.parameters), healthy) << "and the next time it is well again";
    }
  }
}

void LocationTest::expectLocations() {
  const std::vector<LogLine> told = messages();
  EXPECT_FALSE(told.empty());
  for (const LogLine& line : told) {
    EXPECT_TRUE(engine::isLineOf(line.function.str(), line.place))
        << line.place << " is no line of " << line.function.str() << ", which logs " << line.message.masked();
    if (line.message.format().find("LINE=[%d]") == std::string::npos &&
        line.message.format().find("ERROR") == std::string::npos)
      continue;
    EXPECT_NE(line.message.text().find("[" + std::to_string(line.place) + "]"), std::string::npos)
        << line.message.text();
  }
}

template <typename Action>
void LocationTest::sweepLocations(Action action) {
  prepare();
  action();
  expectLocations();
  std::map<const Operation*, int> counts;
  for (const Call& one : takeCalls()) {
    const std::string nth = " nth=" + std::to_string(++counts[one.operation]);
    const std::string words = std::string(one.operation->name) + nth + " result=throw";
    SCOPED_TRACE(words);
    prepare();
    fault(words);
    action();
    EXPECT_TRUE(faultsHit());
    expectLocations();
  }
}

TEST_P(SweepTest, NothingBreaks) {
  sweep();
}

TEST_P(SweepTest, NothingBreaksOnTheIspSource) {
  showIsp();
  sweep();
}

TEST_P(SweepTest, EachMessageTellsALineOfItsOperation) {
  sweepLocations([this] { ask(command().name, command().parameters); });
}

TEST_P(SweepTest, EachMessageTellsALineOfItsOperationOnTheIspSource) {
  showIsp();
  sweepLocations([this] { ask(command().name, command().parameters); });
}

TEST_F(EveryCommandTest, RecordsOfAnyContentAreAnswered) {
  prepare();
  for (const std::string record :
       {"{}", R"({12=18446744073709551615,16="",110=""})",
        "{1=-2147483648,2=-1,4=2147483647,6=-99,13=4294967295,14=-1,15=65536,18=-1,22=-1,37=-1,41=-1}",
        R"({1="text",12="text",13="text",16=7,110=7})", R"({12=281,16="\uD800\uDC00\uDFFF",110="{\uD800"})",
        R"({12=281,16="%s%n%d",110="%s%n%d"})"}) {
    fault("IServiceNavigation::GetServiceList always out.services=[" + record + "," + record + "]");
    fault("IServiceNavigation::GetCurrentService always out.service=" + record);
    fault("IService::FindService always out.service=" + record);
    for (const engine::Command& command : engine::everyCommand()) {
      const Answer answer = ask(command.name, command.parameters);
      EXPECT_TRUE(answer.accepted && answer.reply) << command.name << " " << record << ": " << answer.shown();
    }
    clearFaults();
  }
}

TEST_F(LocationTest, OfOpeningAndClosingAnEngine) {
  sweepLocations([this] {
    close();
    open();
  });
}

TEST_F(LocationTest, OfAnExceptionThatNoOperationHasCaught) {
  prepare();
  breakLog("[CEmpEngineWindow::Execute][*] [GetSource][][][][],pid = *");
  EXPECT_EQ(execute("GetSource"), "int -1");
  breakLog("CEmpEngineWindow::ExecuteWithParamList[GetSource]\n", Saying::nothing);
  EXPECT_EQ(executeWithParamList("GetSource", {}), "int -1");
  expectLocations();
}

bool isAlphanumeric(char letter) {
  return std::isalnum(static_cast<unsigned char>(letter)) != 0;
}

std::string nameOf(const ::testing::TestParamInfo<std::size_t>& info) {
  const engine::Command& command = engine::everyCommand()[info.param];
  std::string name = command.name;
  for (const std::string& parameter : command.parameters) {
    name += "_";
    std::copy_if(parameter.begin(), parameter.end(), std::back_inserter(name), isAlphanumeric);
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Each, SweepTest, ::testing::Range(std::size_t{0}, engine::everyCommand().size()), nameOf);

std::string least(const Range& range) {
  return std::to_string(range.least);
}
std::string most(const Range& range) {
  return std::to_string(range.most);
}

/// The text of an output with a number for each of its ranges.
std::string textOf(const Output& output, std::string (*number)(const Range&)) {
  std::string text;
  for (const Range& range : output.numbers) text += (text.empty() ? "" : ",") + number(range);
  return text;
}

/// An output's text with one of its numbers replaced.
std::string textWith(const Output& output, const Range& replaced, const std::string& number) {
  std::string text;
  for (const Range& range : output.numbers) {
    text += (text.empty() ? "" : ",") + (&range == &replaced ? number : std::string("0"));
  }
  return text;
}

bool hasNumbers(const Operation& operation) {
  return !operation.written().empty() && operation.written().front().form == Form::numbers;
}

/// The calls fail, so that the plug-in does not use the outputs: it would trust a length of 4294967295.
class OutputTest : public EveryCommandTest {
 protected:
  /// What the first call that a fault hits wrote, as the trace shows it.
  std::string writtenUnder(const engine::Command& command, const Fault& fault) {
    prepare();
    device().addFault(fault);
    ask(command.name, command.parameters);
    for (const Call& call : takeCalls()) {
      if (call.fault) return call.outputs;
    }
    ADD_FAILURE() << command.name << " does not call " << fault.operation->name;
    return {};
  }

  static Lines failing(const Operation& operation) {
    return {std::string(operation.name), "result=" + std::to_string(operation.failure())};
  }

  /// Expects that the least and the greatest numbers are written unchanged.
  void expectEnds(const engine::Command& command, const Operation& operation, std::string (*end)(const Range&)) {
    Lines words = failing(operation);
    std::string expected;
    for (const Output& output : operation.written()) {
      const std::string written = std::string(output.name) + "=" + textOf(output, end);
      words.push_back("out." + written);
      expected += (expected.empty() ? "" : " ") + written;
    }
    EXPECT_EQ(writtenUnder(command, virtualtv::seam::parseFault(words)), expected) << operation.name;
  }

  /// Expects that numbers beyond the ranges are refused, and that the outputs could not hold them either.
  void expectNoneBeyond(const engine::Command& command, const Operation& operation, const Output& output,
                        const Range& range) {
    Lines beyond;
    if (range.most < std::numeric_limits<std::uint64_t>::max()) beyond.push_back(std::to_string(range.most + 1));
    if (range.least > std::numeric_limits<std::int64_t>::min()) beyond.push_back(std::to_string(range.least - 1));
    for (const std::string& number : beyond) {
      const std::string text = textWith(output, range, number);
      Lines words = failing(operation);
      Fault fault = virtualtv::seam::parseFault(words);
      words.push_back("out." + std::string(output.name) + "=" + text);
      EXPECT_THROW(virtualtv::seam::parseFault(words), std::invalid_argument) << operation.name << " " << words.back();
      fault.outputs[std::string(output.name)] = text;
      const std::string written = " " + writtenUnder(command, fault) + " ";
      EXPECT_EQ(written.find(" " + std::string(output.name) + "=" + text + " "), std::string::npos) << operation.name;
    }
  }

  /// Checks the operations that a command calls, unless they were checked before.
  void check(const engine::Command& command) {
    prepare();
    ask(command.name, command.parameters);
    for (const Call& call : takeCalls()) {
      const Operation& operation = *call.operation;
      if (!hasNumbers(operation) || !checkedOutputs.insert(&operation).second) continue;
      expectEnds(command, operation, least);
      expectEnds(command, operation, most);
      for (const Output& output : operation.written()) {
        for (const Range& range : output.numbers) expectNoneBeyond(command, operation, output, range);
      }
    }
  }

  std::set<const Operation*> checkedOutputs;
};

TEST_F(OutputTest, TakesExactlyTheNumbersThatItCanHold) {
  for (const engine::Command& command : engine::everyCommand()) check(command);
  check({"SetDVBSIChannelDirectEx",
         {R"({"TYPE":9,"ModulationType":18,"SymbolRate":22000,"ProgramNumber":28106,"PTC":1,"ProgNum":9,)"
          R"("MINOR_NUMBER_ONE_PART":0,"SatelliteId":"1A","Frequency":10773,"Polarization":0})",
          "0"},
         {}});
  showIsp();
  for (const engine::Command& command : engine::everyCommand()) check(command);
  for (const Operation& operation : virtualtv::seam::operations) {
    EXPECT_EQ(checkedOutputs.count(&operation) > 0, hasNumbers(operation)) << operation.name;
  }
}

}  // namespace
