// SPDX-License-Identifier: MIT
// The picture's size and frequencies as a document, from the TV service or, on the ISP source, the secondary stack.
#include <array>

#include "Resolution.h"
#include "store/SettingsStore.h"
#include "window/report/Documents.h"

namespace {

using reports::notWritten;
using reports::WriterFault;
using resolution::lastService;
using resolution::noAvControl;
using resolution::tells;
using support::caught;
using support::join;
using support::Lines;
using virtualtv::WindowId;

/// The document with these numbers: horizontal, vertical, frequency, horizontal frequency.
std::string document(const std::array<unsigned, 4>& numbers) {
  const auto member = [](const std::string& name, unsigned number) {
    return "   \"" + name + "\" : " + std::to_string(number);
  };
  return "{\n" + member("frequency", numbers[2]) + ",\n" + member("hFrequency", numbers[3]) + ",\n" +
         member("horizontal", numbers[0]) + ",\n" + member("vertical", numbers[1]) + "\n}\n";
}

const std::string allZero = document({0, 0, 0, 0});

const std::string askLast = "vconf_get_str(key=\"db/boot/last_service\") -> ";
const std::string askResolution = "IAVControl[main#1]::GetResolution() ";
const std::string askManager = "CD2tvMgrProxy::GetInstance(client=\"EMP_WINDOW\") -> ";
const std::string askStack = "CD2tvMgrProxy[set#1]::GetVideoResolution() ";

const Lines onTv{"3 CEmpTaskWindow::IsSourceISP:: Source is in ISP source of sourceType - (hdmi-service)",
                 "3 CEmpTaskWindow::IsSourceISP::Source is Not in ISP source"};
const std::string onIsp = "3 CEmpTaskWindow::IsSourceISP:: Source is in ISP source of sourceType - (isp-service)";

const std::string stackAsked = "3 CEmpTaskWindow::GetResolutionDetail_D2TV::Start of  GetResolutionDetail_D2TV \n ";
const std::string noManager = "0 Invalid Channel Manager Instance.";
const std::string stackFailed = "0 CEmpTaskWindow::GetResolutionDetail_D2TV=>GetResolution  fail to return   ";
const std::string ispDone = "3 Successfull  get the audio information in CEmpTaskWindow::GetResolutionDetail_D2TV";
const std::string ispFailed = "0 Fail to get the audio information in CEmpTaskWindow::GetResolutionDetail_D2TV";

std::string stackTold(const std::string& horizontal, const std::string& vertical) {
  return "3 CEmpTaskWindow::GetResolutionDetail_D2TV=>GetResolution sucessufully returned : horizontal==> " +
         horizontal + ", vertical==> " + vertical + " ";
}
std::string told(const std::string& text) {
  return "3 GetResolutionDetail : " + text;
}

class DetailTest : public resolution::ResolutionTest {
 protected:
  void SetUp() override {
    ResolutionTest::SetUp();
    setSetting(lastService, "hdmi-service");
    forget();
  }

  void showIsp() {
    ASSERT_TRUE(tv().showIsp());
    forget();
  }

  int ask() { return worker.GetResolutionDetail(text); }
  int askUnder(const std::string& words) {
    text = untouched;
    return under(words, [this] { return ask(); });
  }

  static constexpr const char* untouched = "nobody wrote this";
  std::string text = untouched;
};

// From the TV service.

TEST_F(DetailTest, TellsWhatTheTvServiceTells) {
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(text, document({1920, 1080, 60, 67500}));
  EXPECT_EQ(calls(),
            (Lines{askLast + "\"hdmi-service\"", askResolution + "code=4 resolution=1920,1080,60,67500 -> 0"}));
  EXPECT_EQ(logs(), join({onTv, {told(text)}}));
}

TEST_F(DetailTest, NumbersAreUnsigned) {
  EXPECT_EQ(askUnder(tells(4, "4294967295,2147483648,4294967294,3000000000")), 1);
  EXPECT_EQ(text, document({4294967295U, 2147483648U, 4294967294U, 3000000000U}));
}

TEST_F(DetailTest, TheCodeDoesNotMatter) {
  for (const int code : {-3, -1, 0, 18, 136, 200}) {
    EXPECT_EQ(askUnder(tells(code, "1,2,3,4")), 1) << code;
    EXPECT_EQ(text, document({1, 2, 3, 4})) << code;
  }
}

TEST_F(DetailTest, NumbersThatAreNotWrittenAreZerosEachTime) {
  ASSERT_EQ(ask(), 1);
  EXPECT_EQ(askUnder("IAVControl::GetResolution result=unwritten"), 1);
  EXPECT_EQ(text, allZero) << "nothing is left of the time before";
  EXPECT_EQ(calls().back(), askResolution + "code=136 resolution=0,0,0,0 -> 0 [fault]");
}

TEST_F(DetailTest, AnyResultButZeroFailsAndLeavesTheText) {
  for (const std::string result : {"1", "-1", "2", "-2147483648"}) {
    EXPECT_EQ(askUnder("IAVControl::GetResolution out.code=4 out.resolution=1,2,3,4 result=" + result), -1) << result;
    EXPECT_EQ(text, untouched) << result;
    EXPECT_EQ(logs(), join({onTv, {"0 GetResolution fails"}}));
  }
  EXPECT_EQ(askUnder("IAVControl::GetResolution result=throw"), -1);
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(),
            join({onTv, {caught("GetResolutionDetail", "IAVControl::GetResolution"), "0 GetResolution fails"}}));
}

TEST_F(DetailTest, WithoutAvControlFailsAndLeavesTheText) {
  for (const std::string way : {"result=1", "result=-1", "result=null", "result=unwritten", "result=throw"}) {
    SCOPED_TRACE(way);
    worker.av_ctrl_proxy = nullptr;
    EXPECT_EQ(askUnder("TVServiceAPI::CreateAVControl " + way), -1);
    EXPECT_EQ(text, untouched);
    EXPECT_EQ(calls().size(), 2U);
    Lines expected = join({onTv, noAvControl});
    if (way == "result=throw") {
      expected.insert(expected.begin() + 3, caught("t_CheckAVControlproxy", "TVServiceAPI::CreateAVControl"));
    }
    EXPECT_EQ(logs(), expected);
  }
}

TEST_F(DetailTest, ADocumentThatCannotBeWrittenFailsAndLeavesTheText) {
  {
    const WriterFault writer;
    EXPECT_EQ(ask(), -1);
    EXPECT_TRUE(writer.hit());
  }
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), join({onTv, {notWritten("GetResolutionDetail")}}));
  EXPECT_EQ(ask(), 1);
}

TEST_F(DetailTest, EachWindowTellsOfItsOwnPicture) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  show(WindowId::pip, 14);
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(text, document({3840, 2160, 50, 112500}));
  EXPECT_EQ(calls().back(), "IAVControl[pip#2]::GetResolution() code=29 resolution=3840,2160,50,112500 -> 0");
}

TEST_F(DetailTest, AsksTheTvServiceWhereTheLastServiceIsUnknown) {
  tv().removeSetting(lastService);
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(text, document({1920, 1080, 60, 67500}));
  fault("vconf_get_str result=throw");
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(text, document({1920, 1080, 60, 67500}));
}

// From the secondary stack.

TEST_F(DetailTest, OnTheIspSourceTellsWhatTheSecondaryStackTells) {
  tv().adjust([](virtualtv::TvState& state) {
    state.isp.width = 1280;
    state.isp.height = 720;
  });
  showIsp();
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(text, document({1280, 720, 0, 0}));
  EXPECT_EQ(calls(),
            (Lines{askLast + "\"isp-service\"", askManager + "made", askStack + "width=1280 height=720 -> 0"}));
  EXPECT_EQ(logs(), (Lines{onIsp, stackAsked, stackTold("1280", "720"), told(text), ispDone}));
}

TEST_F(DetailTest, OnTheIspSourceNeitherTheTvServicesControlNorTheWindowMatters) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  showIsp();
  worker.av_ctrl_proxy = nullptr;
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(text, document({1920, 1080, 0, 0}));
  EXPECT_EQ(calls().size(), 3U);
  EXPECT_EQ(worker.av_ctrl_proxy, nullptr);
}

TEST_F(DetailTest, WithoutAManagerTheDocumentIsAllZero) {
  setSetting(lastService, "isp-service");
  EXPECT_EQ(askUnder("CD2tvMgrProxy::GetInstance result=throw"), 0);
  EXPECT_EQ(text, allZero);
  EXPECT_EQ(logs(), (Lines{onIsp, stackAsked, caught("GetResolutionDetail_D2TV", "CD2tvMgrProxy::GetInstance"),
                           noManager, ispFailed}));
  tv().adjust([](virtualtv::TvState& state) { state.isp.present = false; });
  text = untouched;
  forget();
  EXPECT_EQ(ask(), 0);
  EXPECT_EQ(text, allZero);
  EXPECT_EQ(calls(), (Lines{askLast + "\"isp-service\"", askManager + "null"})) << "nothing is called through it";
  EXPECT_EQ(logs(), (Lines{onIsp, stackAsked, noManager, ispFailed}));
}

TEST_F(DetailTest, AStackThatCannotTellGivesADocumentThatIsAllZero) {
  showIsp();
  for (const std::string result : {"1", "-1", "2", "-2147483648"}) {
    EXPECT_EQ(askUnder("CD2tvMgrProxy::GetVideoResolution out.width=7 out.height=8 result=" + result), 0) << result;
    EXPECT_EQ(text, allZero) << result;
    EXPECT_EQ(logs(), (Lines{onIsp, stackAsked, stackFailed, ispFailed}));
  }
  EXPECT_EQ(askUnder("CD2tvMgrProxy::GetVideoResolution result=throw"), 0);
  EXPECT_EQ(text, allZero);
  EXPECT_EQ(logs(), (Lines{onIsp, stackAsked, caught("GetResolutionDetail_D2TV", "CD2tvMgrProxy::GetVideoResolution"),
                           stackFailed, ispFailed}));
}

TEST_F(DetailTest, ASizeThatTheStackDoesNotWriteIsZero) {
  showIsp();
  EXPECT_EQ(askUnder("CD2tvMgrProxy::GetVideoResolution result=unwritten"), 1);
  EXPECT_EQ(text, allZero);
  EXPECT_EQ(logs(), (Lines{onIsp, stackAsked, stackTold("0", "0"), told(allZero), ispDone}));
}

TEST_F(DetailTest, ASizeBeyondIntIsWrittenWholeAndLoggedSigned) {
  showIsp();
  EXPECT_EQ(askUnder("CD2tvMgrProxy::GetVideoResolution result=0 out.width=4294967295 out.height=2147483648"), 1);
  EXPECT_EQ(text, document({4294967295U, 2147483648U, 0, 0}));
  EXPECT_EQ(logs(), (Lines{onIsp, stackAsked, stackTold("-1", "-2147483648"), told(text), ispDone}));
}

TEST_F(DetailTest, OnTheIspSourceADocumentThatCannotBeWrittenFails) {
  showIsp();
  const WriterFault writer;
  EXPECT_EQ(ask(), 0);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  const std::string function = "GetResolutionDetail_D2TV";
  EXPECT_EQ(logs(), (Lines{onIsp, stackAsked, stackTold("1920", "1080"), notWritten(function), ispFailed}));
  EXPECT_EQ(askUnder("CD2tvMgrProxy::GetVideoResolution result=1"), 0);
  EXPECT_EQ(logs(), (Lines{onIsp, stackAsked, stackFailed, notWritten(function), ispFailed}));
  EXPECT_EQ(askUnder("CD2tvMgrProxy::GetInstance result=null"), 0);
  EXPECT_EQ(logs(), (Lines{onIsp, stackAsked, noManager, notWritten(function), ispFailed}));
}

TEST_F(DetailTest, TheStacksOwnOperationFailsWithMinusOneAndADocumentUnlessNoneCanBeWritten) {
  showIsp();
  EXPECT_EQ(worker.GetResolutionDetail_D2TV(text), 1);
  EXPECT_EQ(text, document({1920, 1080, 0, 0}));
  for (const std::string words :
       {"GetVideoResolution result=1", "GetVideoResolution result=-1", "GetInstance result=null"}) {
    EXPECT_EQ(under("CD2tvMgrProxy::" + words, [this] { return worker.GetResolutionDetail_D2TV(text); }), -1) << words;
    EXPECT_EQ(text, allZero) << words;
  }
  text = untouched;
  const WriterFault writer;
  EXPECT_EQ(worker.GetResolutionDetail_D2TV(text), -1);
  EXPECT_EQ(text, untouched);
}

}  // namespace
