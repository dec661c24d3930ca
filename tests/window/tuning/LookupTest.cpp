// SPDX-License-Identifier: MIT
// How each operation finds the service to tune to, and how that can fail.
#include <algorithm>
#include <map>
#include <utility>

#include "Tuning.h"
#include "services/ServiceStore.h"

namespace {

using tuning::askApp;
using tuning::askSource;
using tuning::caught;
using tuning::join;
using tuning::keysOfHdmi;
using tuning::Lines;
using tuning::Lookup;
using tuning::operations;
using tuning::place;

using Data = TCServiceData;

/// A proxy of the worker: its factory, and the log lines when it can't be created.
struct Proxy {
  std::string factory;
  Lines missing;  ///< ends with the operation's own line
  void (*lose)(support::WorkerProbe& worker);
};

const std::map<std::string, Proxy>& proxies() {
  static const std::map<std::string, Proxy> all{
      {"service",
       {"TVServiceAPI::CreateService",
        {"0 src_ctrl_proxy is NULL t_eWindow =0", "0 CEmpTaskWindow svc_proxy create is FAIL!!",
         "0 Serviceproxy is NULL"},
        [](support::WorkerProbe& worker) { worker.svc_proxy = nullptr; }}},
      {"source control",
       {"TVServiceAPI::CreateSourceControl", sources::noSourceControl,
        [](support::WorkerProbe& worker) { worker.src_ctrl_proxy = nullptr; }}},
      {"navigation",
       {"TVServiceAPI::CreateServiceNavigation",
        {"0 svc_navi_proxy is NULL, t_eWindow =0", "0 CEmpTaskWindow svc_navi_proxy create is FAIL!!",
         "0 ServiceNavigationproxy is NULL"},
        [](support::WorkerProbe& worker) { worker.svc_navi_proxy = nullptr; }}},
  };
  return all;
}

class LookupTest : public tuning::EachOperation {
 protected:
  /// The line logged before the proxies are checked, if the operation has one.
  Lines opening() const {
    const Lines first{place(operation().name)};
    return operation().logs.front() == first.front() ? first : Lines{};
  }
  void expectUntouched() {
    EXPECT_EQ(current(), "281");
    EXPECT_EQ(shown(), hdmi);
    EXPECT_EQ(keys(), keysOfHdmi);
  }
};

TEST_P(LookupTest, AFailureLeavesTheSetAndTheKeysAlone) {
  for (const Lookup& lookup : operation().lookups) {
    for (const std::string way : {"0", "-1", "throw"}) {
      SCOPED_TRACE(lookup.call + " " + way);
      const bool zeroOnly = lookup.call.rfind("TCNavigationModeHelper::", 0) == 0;
      if (zeroOnly && way == "-1") continue;
      showHdmi();
      EXPECT_EQ(runUnder(lookup.call + " result=" + way), lookup.result);
      const auto before = static_cast<std::ptrdiff_t>(lookup.after);
      const Lines thrown = way == "throw" ? Lines{caught(operation().name, lookup.call)} : Lines{};
      EXPECT_EQ(logs(), join({{operation().logs.begin(), operation().logs.begin() + before}, thrown, lookup.logs}));
      const Lines made = seen();
      ASSERT_EQ(made.size(), lookup.before.size());
      EXPECT_EQ(Lines(made.begin(), made.end() - 1), Lines(lookup.before.begin(), lookup.before.end() - 1));
      expectUntouched();
    }
  }
}

// Proxies.

TEST_P(LookupTest, OnlyTheFirstMissingProxyIsReported) {
  for (std::size_t from = 0; from < operation().proxies.size(); ++from) {
    SCOPED_TRACE(operation().proxies[from]);
    showHdmi();
    clearFaults();
    for (std::size_t at = from; at < operation().proxies.size(); ++at) {
      const Proxy& proxy = proxies().at(operation().proxies[at]);
      proxy.lose(worker);
      fault(proxy.factory + " always result=-1");
    }
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(calls().size(), 1U) << "nothing but that factory is called";
    EXPECT_EQ(logs(), join({opening(), proxies().at(operation().proxies[from]).missing}));
    expectUntouched();
    clearFaults();
    ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_MAIN), 1);
    ASSERT_TRUE(worker.t_CheckServiceproxy());
  }
}

TEST_P(LookupTest, MissingProxiesAreMadeOnFirstUse) {
  for (const std::string& name : operation().proxies) proxies().at(name).lose(worker);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(current(), "282");
  Lines factories;
  for (const std::string& name : operation().proxies) factories.push_back(proxies().at(name).factory);
  Lines made;
  for (const std::string& call : calls()) {
    if (call.rfind("TVServiceAPI::", 0) == 0) made.push_back(call.substr(0, call.find('(')));
  }
  EXPECT_EQ(made, factories);
}

INSTANTIATE_TEST_SUITE_P(Each, LookupTest, ::testing::ValuesIn(operations()), tuning::nameOf);

// The operations one by one.

class FindTest : public tuning::TuningTest {
 protected:
  /// One of the three services with another id, physical channel, type and number.
  virtualtv::Service service(std::uint64_t id, std::uint64_t ptc, std::uint64_t type, std::uint64_t major,
                             std::uint64_t minor) {
    virtualtv::Service made = channels::threeServices().front();
    made.numbers[Data::SERVICE_ID] = id;
    made.numbers[Data::PTC] = ptc;
    made.numbers[Data::CHANNEL_TYPE] = type;
    made.numbers[Data::MAJOR] = major;
    made.numbers[Data::MINOR] = minor;
    return made;
  }
};

TEST_F(FindTest, ByNumberFetchesTheServiceIdAlone) {
  worker.SetChannel(8, 0);
  const Lines made = calls();
  ASSERT_GE(made.size(), 2U);
  EXPECT_NE(made[0].find("criteria=fetch 12, where "), std::string::npos) << made[0];
  EXPECT_NE(made[1].find("GetOptimumService(fetch 12, where "), std::string::npos) << made[1];
}

TEST_F(FindTest, ByPhysicalChannelTakesTheFirstInTheOrderOfServiceIds) {
  setServices({service(300, 40, 1, 1, 0), service(150, 40, 1, 3, 0), service(200, 40, 1, 2, 0)});
  EXPECT_EQ(worker.SetChannel_PTC(40), 1);
  EXPECT_EQ(current(), "150");
}

TEST_F(FindTest, DirectlyComparesTheMajorParameterWithTheChannelType) {
  setServices({service(1, 10, 2, 5, 1), service(2, 10, 5, 9, 1), service(3, 11, 5, 5, 1), service(4, 10, 5, 5, 2)});
  EXPECT_EQ(worker.SetChannelDirect(10, 5, 1, 2), 1);
  EXPECT_EQ(current(), "2");
  EXPECT_EQ(calls().front(),
            "IService[set#1]::FindService(fetch 12, where 2=10, where 1=5, where 14=1, count=1) service={12=2} -> 1");
}

TEST_F(FindTest, ByServiceIdPassesEveryIdAsItIs) {
  for (const unsigned long long id : {0ULL, 1ULL << 63U, ~0ULL}) {
    forget();
    EXPECT_EQ(worker.SetChannelByServiceid(id), 0);
    EXPECT_EQ(logs()[1], "3 TCServiceId=[" + std::to_string(id) + "]");
    EXPECT_NE(calls().back().find("TuneService(serviceId=" + std::to_string(id) + ", "), std::string::npos);
  }
}

TEST_F(FindTest, ByServiceIdFailsOnTvWithoutNavigation) {
  worker.svc_navi_proxy = nullptr;
  EXPECT_EQ(worker.SetChannelByServiceid(282), 0);
  EXPECT_EQ(calls(), join({{askApp}, askSource(0)})) << "it is not made, either";
  EXPECT_EQ(current(), "281");
}

TEST_F(FindTest, ByServiceIdNeedsNoNavigationForASwitch) {
  showHdmi();
  worker.svc_navi_proxy = nullptr;
  worker.svc_proxy = nullptr;
  EXPECT_EQ(worker.SetChannelByServiceid(282), 1);
  EXPECT_EQ(current(), "282");
  EXPECT_EQ(keys()[0], "0");
}

/// The id of a record without one reads as all ones, and the operation tunes to that.
TEST_F(FindTest, ARecordWithoutAnIdIsTunedToAllTheSame) {
  const std::string ones = "18446744073709551615";
  const std::vector<std::pair<std::string, int (*)(support::WorkerProbe&)>> finders{
      {"IServiceNavigation::GetOptimumService", operations()[0].run},
      {"IService::FindService", operations()[1].run},
      {"IService::FindService", operations()[2].run},
  };
  for (const auto& [call, run] : finders) {
    for (const char* way : {" result=unwritten", " out.service={13=8}", " result=2 out.service={}"}) {
      SCOPED_TRACE(call + way);
      EXPECT_EQ(under(call + way, [&, tune = run] { return tune(worker); }), 0);
      const Lines lines = logs();
      EXPECT_NE(std::find(lines.begin(), lines.end(), "3 SERVICE_ID=[" + ones + "]"), lines.end());
      EXPECT_NE(calls().back().find("TuneService(serviceId=" + ones + ", "), std::string::npos);
      EXPECT_EQ(current(), "281");
    }
  }
}

}  // namespace
