// SPDX-License-Identifier: MIT
// The ISP source: checking whether it is on screen, switching to it, and the manager of the stack that shows it.
#include <string>

#include "store/SettingsStore.h"
#include "support/LogLines.h"
#include "support/TvTest.h"

namespace {

using support::caught;
using support::Lines;
using support::place;

constexpr const char* lastService = "db/boot/last_service";
const std::string notThere = "3 CEmpTaskWindow::IsSourceISP:: sourceType is NULL";
const std::string isOther = "3 CEmpTaskWindow::IsSourceISP::Source is Not in ISP source";

std::string told(const std::string& service) {
  return "3 CEmpTaskWindow::IsSourceISP:: Source is in ISP source of sourceType - (" + service + ")";
}

using IspTest = support::WorkerTest;

// Checking whether it is on screen.

TEST_F(IspTest, IsTheSourceWhenThePlatformsLastServiceSaysSoAndForNoOther) {
  setSetting(lastService, "isp-service");
  EXPECT_TRUE(worker.IsSourceISP());
  EXPECT_EQ(logs(), Lines{told("isp-service")});
  for (const std::string service : {"tv-service", "", " ", "isp-service ", " isp-service", "ISP-service", "isp-Service",
                                    "isp-servic", "isp-service1", "isp_service", "isp-service\n", "\xff\xfe", "%s%n"}) {
    setSetting(lastService, service);
    EXPECT_FALSE(worker.IsSourceISP()) << service;
    EXPECT_EQ(logs(), (Lines{told(service), isOther}));
  }
  const std::string service(5000, 'x');
  setSetting(lastService, service);
  EXPECT_FALSE(worker.IsSourceISP());
  EXPECT_EQ(logs(), (Lines{told(service), isOther})) << "logged whole";
}

TEST_F(IspTest, IsNotTheSourceWhenTheLastServiceCannotBeRead) {
  const auto ask = [this] { return worker.IsSourceISP(); };
  setSetting(lastService, "isp-service");
  EXPECT_FALSE(under("vconf_get_str result=null", ask));
  EXPECT_EQ(logs(), Lines{notThere});
  EXPECT_FALSE(under("vconf_get_str result=throw", ask));
  EXPECT_EQ(logs(), (Lines{caught("IsSourceISP", "vconf_get_str", 3), notThere}));
  setSetting(lastService, 48);
  EXPECT_FALSE(ask()) << "a number is no text";
  EXPECT_EQ(logs(), Lines{notThere});
}

// Switching to it.

const Lines switching{place("SetSource_D2TV", 3, "Window/Src/EmpTaskWindow_D2TV"),
                      "3 CEmpTaskWindow::SetSource : [SetISPSource]"};
const std::string notSwitched = "3 CEmpTaskWindow::SetSource : Fail to Set ISP Source";

TEST_F(IspTest, AnyResultButOneIsAFailedSwitch) {
  EXPECT_TRUE(worker.SetSource_D2TV());
  EXPECT_EQ(logs(), switching);
  const auto ask = [this] { return worker.SetSource_D2TV(); };
  for (const std::string result : {"0", "2", "-1", "48", "2147483647"}) {
    EXPECT_FALSE(under("D2TVCAPI_setSourceISP result=" + result, ask)) << result;
    EXPECT_EQ(logs(), support::join({switching, {notSwitched}}));
  }
  EXPECT_FALSE(under("D2TVCAPI_setSourceISP result=throw", ask));
  EXPECT_EQ(logs(), support::join({switching, {caught("SetSource_D2TV", "D2TVCAPI_setSourceISP", 3), notSwitched}}));
}

// The manager of the stack.

const std::string made = "3 CEmpTaskWindow:: pCHMgr=>>CIptvMgrProxy :Create pCHMgr successfully ";
const std::string notMade = "3 CEmpTaskWindow:: pCHMgr=>>CIptvMgrProxy :Create pCHMgr Failed ";
const std::string askManager = "CD2tvMgrProxy::GetInstance(client=\"EMP_WINDOW\") -> ";
const std::string destroyManager = "CD2tvMgrProxy::DestroyInstance()";

TEST_F(IspTest, TheManagerIsAskedForInThePluginsName) {
  worker.CreateD2TVManagerInstance();
  EXPECT_EQ(calls(), Lines{askManager + "made"});
  EXPECT_EQ(logs(), Lines{made});
}

TEST_F(IspTest, AManagerThatCannotBeHadIsTold) {
  fault("CD2tvMgrProxy::GetInstance result=null");
  worker.CreateD2TVManagerInstance();
  EXPECT_EQ(calls(), Lines{askManager + "null [fault]"});
  EXPECT_EQ(logs(), Lines{notMade});
  fault("CD2tvMgrProxy::GetInstance result=throw");
  worker.CreateD2TVManagerInstance();
  EXPECT_EQ(logs(), (Lines{caught("CreateD2TVManagerInstance", "CD2tvMgrProxy::GetInstance", 3), notMade}));
}

TEST_F(IspTest, DestroyingTheManagerIsSilentAndAnExceptionStaysInside) {
  worker.DestroyD2TVManagerInstance();
  EXPECT_EQ(calls(), Lines{destroyManager});
  EXPECT_EQ(logs(), Lines());
  fault("CD2tvMgrProxy::DestroyInstance result=throw");
  worker.DestroyD2TVManagerInstance();
  EXPECT_EQ(logs(), Lines{caught("DestroyD2TVManagerInstance", "CD2tvMgrProxy::DestroyInstance", 3)});
}

const Lines destroyed{"3 [CEmpTaskWindow::Destroy][*] begin.", "3 [CEmpTaskWindow::Destroy][*] end."};

TEST_F(IspTest, DestroyDropsTheManagerWhetherThereIsOneOrNot) {
  worker.Destroy();
  EXPECT_EQ(calls(), Lines{destroyManager});
  EXPECT_EQ(logs(), destroyed);
  worker.CreateD2TVManagerInstance();
  forget();
  worker.Destroy();
  EXPECT_EQ(calls(), Lines{destroyManager});
}

TEST_F(IspTest, DestroyEndsAlsoWhenTheManagerCannotBeDropped) {
  fault("CD2tvMgrProxy::DestroyInstance result=throw");
  worker.Destroy();
  EXPECT_EQ(logs(), (Lines{destroyed[0], caught("DestroyD2TVManagerInstance", "CD2tvMgrProxy::DestroyInstance", 3),
                           destroyed[1]}));
}

TEST_F(IspTest, ClosingAnEngineDropsTheManagerTwice) {
  ASSERT_TRUE(open());
  forget();
  ASSERT_TRUE(close());
  EXPECT_EQ(calls(), (Lines{destroyManager, destroyManager}));
}

}  // namespace
