// Every platform call of every command failing in turn, in every way that it can, on both TV stacks.
#include <algorithm>
#include <cctype>
#include <iterator>

#include "support/Commands.h"
#include "support/Tracks.h"

namespace {

using support::Answer;
using support::Lines;
using virtualtv::seam::Call;
using virtualtv::seam::Operation;
using virtualtv::seam::Seam;

class SweepTest : public channels::ChannelEngineTest, public ::testing::WithParamInterface<std::size_t> {
 protected:
  /// The words behind an operation that make it fail.
  static Lines ways(const Operation& operation) {
    Lines all{"result=throw"};
    for (const char* words : {"result=0", "result=-1", "result=1", "result=2", "result=null", "result=unwritten"}) {
      try {
        virtualtv::seam::parseFault({std::string(operation.name), words});
        all.emplace_back(words);
      } catch (const std::invalid_argument&) {  // this operation can't
      }
    }
    return all;
  }

  void SetUp() override {
    ChannelEngineTest::SetUp();
    virtualtv::Service service;
    service.audio = {{255, 5, 1, 0, 0, true}, {256, 6, 1, 0, 0, true}};
    service.subtitles = {{270, 5, 0, true}, {271, 6, 0, true}};
    service.favourites = {{1, true}};
    channels::furnish(tv(), tracks::furnished(service));
    tv().adjust(virtualtv::WindowId::main, [&](virtualtv::TvState& state) {
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

  /// The set as it was at first with a found-channel list, an engine on it, and what the command answers there.
  void prepare() {
    clearFaults();
    close();
    tv().adjust(virtualtv::WindowId::main, [this](virtualtv::TvState& state) { state = fresh_; });
    setSetting(tracks::lastService, lastService_);
    ASSERT_TRUE(open());
    ASSERT_EQ(execute("FindChannel", {"0", "1"}), "int 1");
    forget();
  }

  void sweep();

 private:
  virtualtv::TvState fresh_;
  std::string lastService_ = "tv-service";
};

void SweepTest::sweep() {
  const engine::Call& call = engine::everyCall()[GetParam()];
  prepare();
  const std::string healthy = execute(call.name, call.parameters);
  const std::vector<Call> made = Seam::instance().take();
  std::map<const Operation*, int> counts;
  for (const Call& one : made) {
    const std::string nth = " nth=" + std::to_string(++counts[one.operation]) + " ";
    for (const std::string& way : ways(*one.operation)) {
      const std::string words = std::string(one.operation->name) + nth + way;
      SCOPED_TRACE(call.name + ": " + words);
      prepare();
      fault(words);
      const Answer answer = ask(call.name, call.parameters);
      EXPECT_TRUE(faultsHit());
      EXPECT_TRUE(answer.accepted);
      EXPECT_TRUE(answer.reply.has_value()) << answer.shown();
      EXPECT_NE(finished().find_first_of("0123456789"), std::string::npos);
      clearFaults();
      EXPECT_EQ(execute(call.name, call.parameters), healthy) << "and the next time it is well again";
    }
  }
}

TEST_P(SweepTest, NothingBreaks) {
  sweep();
}

TEST_P(SweepTest, NothingBreaksOnTheIspSource) {
  showIsp();
  sweep();
}

bool isAlphanumeric(char letter) {
  return std::isalnum(static_cast<unsigned char>(letter)) != 0;
}

std::string nameOf(const ::testing::TestParamInfo<std::size_t>& info) {
  const engine::Call& call = engine::everyCall()[info.param];
  std::string name = call.name;
  for (const std::string& parameter : call.parameters) {
    name += "_";
    std::copy_if(parameter.begin(), parameter.end(), std::back_inserter(name), isAlphanumeric);
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Each, SweepTest, ::testing::Range(std::size_t{0}, engine::everyCall().size()), nameOf);

}  // namespace
