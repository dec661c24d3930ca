// SPDX-License-Identifier: MIT
// The resolution as the plug-in's number.
#include <climits>
#include <map>

#include "Resolution.h"

namespace {

using resolution::noAvControl;
using resolution::tells;
using support::banner;
using support::caught;
using support::join;
using support::Lines;
using support::place;
using virtualtv::WindowId;

const std::string askResolution = "IAVControl[main#1]::GetResolution() ";
const Lines failed{place("GetResolution"), banner(0, "GetResolution")};

/// The numbers of codes that have one of their own, and the number of all other codes.
constexpr int unknown = 20;
const std::map<int, int> numbers{{-1, 21}, {0, 2},   {1, 5},   {2, 6},   {3, 7},    {4, 8},   {5, 9},
                                 {10, 10}, {11, 11}, {15, 14}, {16, 15}, {17, 16},  {18, 14}, {19, 17},
                                 {21, 12}, {22, 13}, {29, 22}, {134, 1}, {135, 19}, {137, 0}};

int numberOf(int code) {
  const auto found = numbers.find(code);
  return found == numbers.end() ? unknown : found->second;
}

std::string told(int code, int number) {
  return "3 resolution=[" + std::to_string(code) + "] *peResolution=[" + std::to_string(number) + "]";
}

class CodeTest : public resolution::ResolutionTest {
 protected:
  int ask() { return worker.GetResolution(&value); }
  int askUnder(const std::string& words) {
    return under(words, [this] { return ask(); });
  }

  static constexpr auto untouched = static_cast<_PL_WINDOW_RESOLUTION>(-77);
  _PL_WINDOW_RESOLUTION value = untouched;
};

TEST_F(CodeTest, AnswersTheNumberOfTheCodeThatTheTvServiceTells) {
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(value, 8);
  EXPECT_EQ(calls(), Lines{askResolution + "code=4 resolution=1920,1080,60,67500 -> 0"});
  EXPECT_EQ(logs(), (Lines{place("GetResolution"), told(4, 8)}));
}

TEST_F(CodeTest, EveryCodeHasItsNumber) {
  for (int code = -3; code <= 200; ++code) {
    EXPECT_EQ(support::WorkerProbe::t_getPLResolution(static_cast<EResolution>(code)), numberOf(code)) << code;
    EXPECT_EQ(askUnder(tells(code)), 1) << code;
    EXPECT_EQ(value, numberOf(code)) << code;
    EXPECT_EQ(logs(), (Lines{place("GetResolution"), told(code, numberOf(code))}));
  }
  for (const int code : {INT_MIN, INT_MAX, 256, 1000, -1000}) {
    EXPECT_EQ(askUnder(tells(code)), 1) << code;
    EXPECT_EQ(value, unknown) << code;
  }
}

TEST_F(CodeTest, ACodeThatIsNotWrittenIsUnknown) {
  EXPECT_EQ(askUnder("IAVControl::GetResolution result=unwritten"), 1);
  EXPECT_EQ(value, unknown);
  EXPECT_EQ(calls(), Lines{askResolution + "code=136 resolution=0,0,0,0 -> 0 [fault]"});
  EXPECT_EQ(logs(), (Lines{place("GetResolution"), told(136, unknown)}));
}

TEST_F(CodeTest, AnyResultButZeroAndAnExceptionAreFailures) {
  for (const std::string result : {"1", "-1", "2", "2147483647", "-2147483648"}) {
    EXPECT_EQ(askUnder("IAVControl::GetResolution out.code=4 result=" + result), -1) << result;
    EXPECT_EQ(logs(), failed) << result;
  }
  EXPECT_EQ(askUnder("IAVControl::GetResolution result=throw"), -1);
  EXPECT_EQ(logs(), (Lines{failed[0], caught("GetResolution", "IAVControl::GetResolution"), failed[1]}));
  EXPECT_EQ(value, untouched);
}

TEST_F(CodeTest, ASetWithoutAPictureFails) {
  tv().deactivate(WindowId::main);
  forget();
  EXPECT_EQ(ask(), -1);
  EXPECT_EQ(logs(), failed);
}

TEST_F(CodeTest, WithoutAvControlAnswersMinusOneWhateverThePointer) {
  for (const std::string way : {"result=1", "result=-1", "result=null", "result=unwritten", "result=throw"}) {
    for (_PL_WINDOW_RESOLUTION* const out : {&value, static_cast<_PL_WINDOW_RESOLUTION*>(nullptr)}) {
      SCOPED_TRACE(way);
      worker.av_ctrl_proxy = nullptr;
      EXPECT_EQ(under("TVServiceAPI::CreateAVControl " + way, [&] { return worker.GetResolution(out); }), -1);
      EXPECT_EQ(calls().size(), 1U);
      Lines expected = join({{place("GetResolution")}, noAvControl});
      if (way == "result=throw") {
        expected.insert(expected.begin() + 2, caught("t_CheckAVControlproxy", "TVServiceAPI::CreateAVControl"));
      }
      EXPECT_EQ(logs(), expected);
    }
  }
  EXPECT_EQ(value, untouched);
}

TEST_F(CodeTest, ANullPointerIsRefusedOnceTheAvControlIsThere) {
  EXPECT_EQ(worker.GetResolution(nullptr), -3);
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(logs(), failed);
  worker.av_ctrl_proxy = nullptr;
  EXPECT_EQ(worker.GetResolution(nullptr), -3);
  EXPECT_EQ(calls(), Lines{"TVServiceAPI::CreateAVControl(profile=1, index=0) -> 0"});
  EXPECT_EQ(logs(), (Lines{failed[0], resolution::avMissing, failed[1]}));
}

TEST_F(CodeTest, EachWindowTellsOfItsOwnPictureAndMakesItsMissingAvControl) {
  const std::string told = "::GetResolution() code=29 resolution=3840,2160,50,112500 -> 0";
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  show(WindowId::pip, 14);
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(value, 22);
  EXPECT_EQ(calls(), Lines{"IAVControl[pip#2]" + told});
  worker.av_ctrl_proxy = nullptr;
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(calls(), (Lines{"TVServiceAPI::CreateAVControl(profile=101, index=0) -> 0", "IAVControl[pip#3]" + told}));
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_MAIN), 1);
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(value, 8);
}

TEST_F(CodeTest, AsksTheTvServiceAlsoOnTheIspSource) {
  ASSERT_TRUE(tv().showIsp());
  ASSERT_EQ(textSetting(resolution::lastService), "isp-service");
  forget();
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(value, 8);
  EXPECT_EQ(calls(), Lines{askResolution + "code=4 resolution=1920,1080,60,67500 -> 0"});
}

}  // namespace
