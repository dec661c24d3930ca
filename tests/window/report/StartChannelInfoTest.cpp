// SPDX-License-Identifier: MIT
// The document of the channel that the set starts with.
#include <string>
#include <utility>
#include <vector>

#include "support/Converter.h"
#include "window/report/Documents.h"

namespace {

using channels::ChannelTest;
using channels::join;
using reports::parsed;
using support::Lines;

const std::string newsDocument = R"({
   "channelName" : "News 24",
   "major" : 7,
   "minor" : 0,
   "serviceId" : "281",
   "type" : 2
}
)";

const std::string emptyDocument = R"({
   "channelName" : "",
   "major" : 65535,
   "minor" : 65535,
   "serviceId" : "18446744073709551615",
   "type" : 0
}
)";

const std::string found = "3 serviceId = 281, source = 0";
const std::string failed = "0 Get start service failed";

std::string told(const std::string& document) {
  return "3 [CEmpTaskWindow::GetStartChannel_Info] channelJson = " + document + "!!";
}

class StartChannelInfo : public ChannelTest {
 protected:
  /// The document of a start service with this record; the operation must succeed.
  std::string infoOf(const std::string& record) {
    EXPECT_EQ(under("IService::FindService out.service=" + record, [&] { return worker.GetStartChannel_Info(info); }),
              1);
    return info;
  }

  std::string info = "as it was";
};

TEST_F(StartChannelInfo, HoldsFiveMembersSortedByKey) {
  EXPECT_EQ(worker.GetStartChannel_Info(info), 1);
  EXPECT_EQ(info, newsDocument);
  EXPECT_EQ(logs(), Lines({found, told(newsDocument)}));
  const Lines asked = calls();
  ASSERT_EQ(asked.size(), 2U);
  EXPECT_EQ(asked[0], "IServiceNavigation[main#1]::GetStartService() serviceId=281 source=0 -> 1");
  EXPECT_EQ(asked[1].find("IService[set#1]::FindService(fetch 16 13 14 1 12, where 12=281, count=1)"), 0U);
}

TEST_F(StartChannelInfo, HasNumbersAsIntegersAndTheIdAsText) {
  const Json::Value document = parsed(infoOf("{12=9223372036854775808,13=70000,14=65535,1=3,16=\"é\"}"));
  EXPECT_EQ(document["serviceId"], Json::Value("9223372036854775808"));
  EXPECT_EQ(document["major"], Json::Value(4464)) << "16 bits, as in the other documents";
  EXPECT_EQ(document["minor"], Json::Value(65535));
  EXPECT_EQ(document["type"], Json::Value(4));
  EXPECT_EQ(document["channelName"], Json::Value("é"));
}

TEST_F(StartChannelInfo, HoldsTheDefaultsOfMissingFields) {
  EXPECT_EQ(infoOf("{}"), emptyDocument);
  EXPECT_EQ(logs(), Lines({found, told(emptyDocument)}));
  EXPECT_EQ(infoOf("{16=\"\"}"), emptyDocument);
}

TEST_F(StartChannelInfo, DoesNotMergeAnAttachedText) {
  EXPECT_EQ(infoOf("{110=" + channels::quoted(u"{\"major\":5,\"logo\":\"x\"}") + "}"), emptyDocument);
  EXPECT_EQ(infoOf("{110=\"[1]\"}"), emptyDocument);
}

TEST_F(StartChannelInfo, LongNamesAreCutWhereTheRoomOfTheConversionEnds) {
  for (const std::size_t length : std::vector<std::size_t>{257, 300, 514, 515, 5000}) {
    const Json::Value document = parsed(infoOf("{16=" + channels::quoted(std::u16string(length, u'a')) + "}"));
    EXPECT_EQ(document["channelName"], Json::Value(std::string(std::min<std::size_t>(length, 514), 'a')));
  }
}

TEST_F(StartChannelInfo, ANameThatCanNotBeConvertedIsTheEmptyText) {
  converter::Spy spy;
  spy.use.failOpen = EMFILE;
  converter::onNewThread([&] { EXPECT_EQ(parsed(infoOf("{16=\"News\"}"))["channelName"], Json::Value("")); });
}

TEST_F(StartChannelInfo, WithoutTheChannelAnswersMinus1AndLeavesTheTextAsItWas) {
  const std::vector<std::pair<std::string, Lines>> steps{
      {"IServiceNavigation::GetStartService", {"0 Fail to GetStartService!!!"}},
      {"IService::FindService", {"0 Fail to FindService!!!"}}};
  for (const auto& [call, lines] : steps) {
    for (const std::string way : {"result=0", "result=-1", "result=throw"}) {
      SCOPED_TRACE(call + " " + way);
      EXPECT_EQ(under(call + " " + way, [&] { return worker.GetStartChannel_Info(info); }), -1);
      EXPECT_EQ(info, "as it was");
      const Lines begun = call == "IService::FindService" ? Lines{found} : Lines{};
      const Lines thrown = way == "result=throw" ? Lines{channels::caught("t_GetStartService", call)} : Lines{};
      EXPECT_EQ(logs(), join({begun, thrown, lines, {failed}}));
    }
  }
}

TEST_F(StartChannelInfo, WithoutProxiesAnswersMinus1) {
  loseService();
  EXPECT_EQ(worker.GetStartChannel_Info(info), -1);
  EXPECT_EQ(logs(), join({channels::noService(), {"0 ServiceNavigationproxy is NULL", failed}}));
  loseNavigation();
  EXPECT_EQ(worker.GetStartChannel_Info(info), -1);
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL", failed}}));
  EXPECT_EQ(info, "as it was");
}

TEST_F(StartChannelInfo, ThatCanNotBeWrittenAnswersMinus1) {
  const reports::WriterFault fault;
  EXPECT_EQ(worker.GetStartChannel_Info(info), -1);
  EXPECT_TRUE(fault.hit());
  EXPECT_EQ(info, "as it was");
  EXPECT_EQ(logs(), Lines({found, reports::notWritten("GetStartChannel_Info")}));
}

}  // namespace
