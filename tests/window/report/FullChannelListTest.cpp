// SPDX-License-Identifier: MIT
// The document of all services of the TV mode.
#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "support/Converter.h"
#include "window/report/Documents.h"

namespace {

using channels::caught;
using channels::ChannelTest;
using channels::join;
using channels::withoutConditions;
using reports::parsed;
using support::Lines;

const std::string threeDocument = R"({
   "ListName" : "ChannelList",
   "TCServiceData" : [
      {
         "CHANNEL_NUMBER" : 34,
         "CHANNEL_TYPE" : 1,
         "FREQUENCY" : 578000,
         "MAJOR" : 7,
         "MINOR" : 0,
         "ORIGINAL_NETWORK_ID" : 8442,
         "PROGRAM_NUMBER" : 44,
         "SERVICE_ID" : "281",
         "SERVICE_NAME" : "News 24"
      },
      {
         "CHANNEL_NUMBER" : 35,
         "CHANNEL_TYPE" : 2,
         "FREQUENCY" : 586000,
         "MAJOR" : 8,
         "MINOR" : 0,
         "ORIGINAL_NETWORK_ID" : 8442,
         "PROGRAM_NUMBER" : 20,
         "SERVICE_ID" : "282",
         "SERVICE_NAME" : "Radio 5"
      },
      {
         "CHANNEL_NUMBER" : 36,
         "CHANNEL_TYPE" : 1,
         "FREQUENCY" : 594000,
         "MAJOR" : 9,
         "MINOR" : 0,
         "ORIGINAL_NETWORK_ID" : 8442,
         "PROGRAM_NUMBER" : 30,
         "SERVICE_ID" : "283",
         "SERVICE_NAME" : ""
      }
   ]
}
)";

const std::string emptyElement = R"({
   "ListName" : "ChannelList",
   "TCServiceData" : [
      {
         "CHANNEL_NUMBER" : 65535,
         "CHANNEL_TYPE" : -1,
         "FREQUENCY" : -1,
         "MAJOR" : 65535,
         "MINOR" : 65535,
         "ORIGINAL_NETWORK_ID" : 65535,
         "PROGRAM_NUMBER" : 255,
         "SERVICE_ID" : "18446744073709551615",
         "SERVICE_NAME" : ""
      }
   ]
}
)";

const std::string begun = "3 This is GetFullChannelList";
const std::string asking = "3 execute GetServiceList";
const std::string modeCall = "IServiceNavigation[main#1]::GetTvMode() mode=0,1 -> 1";
const std::string criteriaCall =
    "TCNavigationModeHelper::GetNavigationCriteria(navigation=0, mode=0,1, service=18446744073709551615) "
    "criteria=CRITERIA -> 1";
const std::string listCall =
    "IServiceNavigation[main#1]::GetServiceList(CRITERIA, fetch 12 16 13 14 1 4 2 15 41, mode=-1,-1, 0, 0) ";

std::string length(int units) {
  return "3 len = " + std::to_string(units) + ", c_len=" + std::to_string(2 * units);
}

std::string told(const std::string& document) {
  return "3 Lenght = " + std::to_string(document.size()) + ",strChannelInfo = " + document;
}

class FullChannelList : public ChannelTest {
 protected:
  int get() { return worker.GetFullChannelList(list); }
  int getUnder(const std::string& words) {
    return under(words, [this] { return get(); });
  }
  /// The document of a set with these records; the operation must succeed.
  std::string listOf(const std::string& records) {
    EXPECT_EQ(getUnder("IServiceNavigation::GetServiceList out.services=[" + records + "]"), 1);
    return list;
  }
  /// Expects a failure: no document was written, and these lines were logged.
  void expectNone(int result, const Lines& lines) {
    EXPECT_EQ(result, 0);
    EXPECT_EQ(list, "as it was");
    EXPECT_EQ(logs(), lines);
  }
  Json::Value elementOf(const std::string& record) { return parsed(listOf(record))["TCServiceData"][0]; }

  std::string list = "as it was";
};

TEST_F(FullChannelList, HoldsTheServicesOfTheModeInTheSetsOrder) {
  EXPECT_EQ(get(), 1);
  EXPECT_EQ(list, threeDocument);
  EXPECT_EQ(logs(), Lines({begun, asking, "3 ServiceList size = 3", length(7),
                           "3 SERVICE_ID = 281,tmpName = News 24, MAJOR = 7,MINOR = 0, CHANNEL_TYPE = 1, FREQUENCY = "
                           "578000, CHANNEL_NUMBER = 34, PROGRAM_NUMBER= 44, ORIGINAL_NETWORK_ID = 8442",
                           length(7),
                           "3 SERVICE_ID = 282,tmpName = Radio 5, MAJOR = 8,MINOR = 0, CHANNEL_TYPE = 2, FREQUENCY = "
                           "586000, CHANNEL_NUMBER = 35, PROGRAM_NUMBER= 20, ORIGINAL_NETWORK_ID = 8442",
                           "3 SERVICE_ID = 283,tmpName = , MAJOR = 9,MINOR = 0, CHANNEL_TYPE = 1, FREQUENCY = "
                           "594000, CHANNEL_NUMBER = 36, PROGRAM_NUMBER= 30, ORIGINAL_NETWORK_ID = 8442",
                           told(threeDocument)}));
  const Lines asked = withoutConditions(calls());
  ASSERT_EQ(asked.size(), 3U);
  EXPECT_EQ(asked[0], modeCall);
  EXPECT_EQ(asked[1], criteriaCall);
  EXPECT_EQ(asked[2].find(listCall + "services="), 0U) << asked[2];
}

TEST_F(FullChannelList, LeavesTheFoundChannelListAlone) {
  worker.FindChannel(static_cast<_PL_WINDOW_CHANNEL_TYPE>(3), static_cast<_PL_WINDOW_TV_MODE>(1));
  EXPECT_EQ(get(), 1);
  EXPECT_EQ(worker.m_ChannelList.size(), 1U);
}

TEST_F(FullChannelList, HoldsTheDefaultsOfMissingFields) {
  EXPECT_EQ(listOf("{}"), emptyElement);
  EXPECT_EQ(logs(), Lines({begun, asking, "3 ServiceList size = 1",
                           "3 SERVICE_ID = 18446744073709551615,tmpName = , MAJOR = 65535,MINOR = 65535, CHANNEL_TYPE "
                           "= -1, FREQUENCY = -1, CHANNEL_NUMBER = 65535, PROGRAM_NUMBER= 255, ORIGINAL_NETWORK_ID = "
                           "65535",
                           told(emptyElement)}));
}

TEST_F(FullChannelList, EachMissingFieldLeavesTheOthers) {
  const Json::Value whole = elementOf("{12=281,16=\"News\",13=7,14=0,1=1,4=578000,2=34,15=300,41=8442}");
  const std::vector<std::pair<std::string, std::string>> fields{
      {"12=281", "SERVICE_ID"},   {"16=\"News\"", "SERVICE_NAME"}, {"13=7", "MAJOR"},
      {"14=0", "MINOR"},          {"1=1", "CHANNEL_TYPE"},         {"4=578000", "FREQUENCY"},
      {"2=34", "CHANNEL_NUMBER"}, {"15=300", "PROGRAM_NUMBER"},    {"41=8442", "ORIGINAL_NETWORK_ID"}};
  const Json::Value defaults = parsed(emptyElement)["TCServiceData"][0];
  for (const auto& [missing, key] : fields) {
    std::string record;
    for (const auto& [field, unused] : fields) {
      if (field != missing) record += (record.empty() ? "" : ",") + field;
    }
    Json::Value expected = whole;
    expected[key] = defaults[key];
    EXPECT_EQ(elementOf("{" + record + "}"), expected) << key;
  }
}

TEST_F(FullChannelList, ProgramNumbersKeepTheirLowest8Bits) {
  for (const auto& [stored, shown] :
       std::vector<std::pair<std::string, int>>{{"0", 0}, {"255", 255}, {"256", 0}, {"300", 44}, {"65535", 255}}) {
    EXPECT_EQ(elementOf("{15=" + stored + "}")["PROGRAM_NUMBER"], Json::Value(shown)) << stored;
  }
}

TEST_F(FullChannelList, NamesBeyondAsciiAreEscaped) {
  const std::string text = listOf("{16=\"Новости\"}");
  EXPECT_EQ(parsed(text)["TCServiceData"][0]["SERVICE_NAME"], Json::Value("Новости"));
  EXPECT_NE(text.find(R"("SERVICE_NAME" : "\u041d\u043e\u0432\u043e\u0441\u0442\u0438")"), std::string::npos);
}

TEST_F(FullChannelList, LongNamesAreCutWhereTheRoomOfTheConversionEnds) {
  for (const int units : {257, 258, 514, 515, 5000}) {
    const auto count = static_cast<std::size_t>(units);
    const Json::Value element = elementOf("{16=" + channels::quoted(std::u16string(count, u'a')) + "}");
    EXPECT_EQ(element["SERVICE_NAME"], Json::Value(std::string(std::min<std::size_t>(count, 514), 'a')));
    Lines expected{begun, asking, "3 ServiceList size = 1", length(units)};
    if (units > 514) expected.push_back("3 iconv failed: " + std::to_string(E2BIG));
    Lines lines = logs();
    ASSERT_EQ(lines.size(), expected.size() + 2);
    EXPECT_NE(lines[expected.size()].find(",tmpName = " + element["SERVICE_NAME"].asString() + ", MAJOR = "),
              std::string::npos);
    lines.resize(expected.size());
    EXPECT_EQ(lines, expected);
  }
}

TEST_F(FullChannelList, ANameEndsBeforeASurrogateOrAZero) {
  EXPECT_EQ(elementOf("{16=\"ab\\uD83D\\uDE00cd\"}")["SERVICE_NAME"], Json::Value("ab"));
  EXPECT_EQ(elementOf("{16=\"ab\\u0000cd\"}")["SERVICE_NAME"], Json::Value("ab"));
}

TEST_F(FullChannelList, ANameThatCanNotBeConvertedIsTheEmptyTextAndTheNextIsItsOwn) {
  EXPECT_EQ(parsed(listOf("{16=\"long\\u0020name\"},{16=\"\\uD800\"},{}"))["TCServiceData"][1]["SERVICE_NAME"],
            Json::Value(""));
  converter::Spy spy;
  spy.use.failOpen = EMFILE;
  converter::onNewThread([&] { EXPECT_EQ(elementOf("{16=\"News\"}")["SERVICE_NAME"], Json::Value("")); });
}

TEST_F(FullChannelList, AttachedTextsAreNotMerged) {
  EXPECT_EQ(listOf("{110=" + channels::quoted(u"{\"MAJOR\":5}") + "}"), emptyElement);
}

TEST_F(FullChannelList, EachFailedCallAnswers0WithItsOwnLineAndLeavesTheTextAsItWas) {
  struct Step {
    std::string call;
    Lines before;
    std::string line;
    std::size_t made;
  };
  const std::string criteria = "TCNavigationModeHelper::GetNavigationCriteria";
  const std::vector<Step> steps{{"IServiceNavigation::GetTvMode", {begun}, "0 GetTvMode failed", 1},
                                {criteria, {begun}, "0 Get navigation criteria failed", 2},
                                {"IServiceNavigation::GetServiceList", {begun, asking}, "0 GetServiceList failed", 3}};
  for (const Step& step : steps) {
    for (const std::string way : {"result=0", "result=-1", "result=throw"}) {
      if (step.call == criteria && way == "result=-1") continue;  // this is a success of that call
      SCOPED_TRACE(step.call + " " + way);
      const Lines thrown = way == "result=throw" ? Lines{caught("GetFullChannelList", step.call)} : Lines{};
      expectNone(getUnder(step.call + " " + way), join({step.before, thrown, {step.line}}));
      EXPECT_EQ(calls().size(), step.made);
    }
  }
  EXPECT_EQ(getUnder(criteria + " result=-1"), 1);
}

TEST_F(FullChannelList, ListsOfNothingAndRecordsOfAFailedLookupAreFailures) {
  const Lines failed{begun, asking, "0 GetServiceList failed"};
  for (const std::string way : {"result=unwritten", "out.services=[null]", "out.services=[null,null]",
                                "result=0 out.services=[{12=5},{12=6}]", "result=0 out.services=[null,{12=6}]"}) {
    SCOPED_TRACE(way);
    expectNone(getUnder("IServiceNavigation::GetServiceList " + way), failed);
  }
  tv().adjust([](virtualtv::TvState& state) { state[virtualtv::WindowId::main].mode = {2, 7}; });
  forget();
  expectNone(get(), failed);
}

TEST_F(FullChannelList, AModeThatTheSetDoesNotWriteIsAskedForAsNotKnown) {
  getUnder("IServiceNavigation::GetTvMode result=unwritten");
  EXPECT_NE(calls()[1].find("GetNavigationCriteria(navigation=0, mode=-1,-1, "), std::string::npos);
}

TEST_F(FullChannelList, ANullIsNoRecord) {
  EXPECT_EQ(listOf("null,{},null,null"), emptyElement);
  EXPECT_EQ(logs()[2], "3 ServiceList size = 1");
}

TEST_F(FullChannelList, WithoutNavigationProxyAnswers0) {
  loseNavigation();
  expectNone(get(), join({{begun}, channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
}

TEST_F(FullChannelList, WithoutTheMainWindowsNavigationAnswers0AndMakesNone) {
  worker.svc_navi_proxy_main = nullptr;
  expectNone(get(), {begun, asking, "0 GetServiceList failed"});
  EXPECT_EQ(withoutConditions(calls()), Lines({modeCall, criteriaCall}));
}

TEST_F(FullChannelList, OfThePictureInPictureHasItsModeButAsksTheMainWindowsNavigation) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  forget();
  get();
  const Lines asked = calls();
  ASSERT_EQ(asked.size(), 3U);
  EXPECT_EQ(asked[0].find("IServiceNavigation[pip#"), 0U);
  EXPECT_EQ(asked[2].find("IServiceNavigation[main#1]::GetServiceList"), 0U);
}

/// This number of services, each with its own id and a name that resembles the syntax of the document.
std::string manyServices(int count) {
  std::string records;
  for (int id = 1; id <= count; ++id) {
    records += (id == 1 ? "{12=" : ",{12=") + std::to_string(id) + R"(,13=5,16="]},[{\u0020\u0022\u0020)" +
               std::to_string(id) + "\"}";
  }
  return records;
}

TEST_F(FullChannelList, IsTheSameDocumentHoweverManyServicesThereAre) {
  for (const int count : {1, 2, 63, 64, 65, 127, 128, 129, 300}) {
    SCOPED_TRACE(count);
    const std::string text = listOf(manyServices(count));
    const Json::Value document = parsed(text);
    EXPECT_EQ(reports::written(document), text);
    const Json::Value& elements = document["TCServiceData"];
    ASSERT_EQ(elements.size(), static_cast<Json::ArrayIndex>(count));
    for (int id = 1; id <= count; ++id) {
      const Json::Value& element = elements[id - 1];
      EXPECT_EQ(element["SERVICE_ID"], Json::Value(std::to_string(id)));
      EXPECT_EQ(element["SERVICE_NAME"], Json::Value("]},[{ \" " + std::to_string(id)));
      EXPECT_EQ(element["MAJOR"], Json::Value(5));
      EXPECT_EQ(element["MINOR"], Json::Value(65535));
    }
  }
}

TEST_F(FullChannelList, ThatCanNotBeWrittenAnswersMinus1AndHasLoggedAllItsServices) {
  const reports::WriterFault fault;
  EXPECT_EQ(getUnder("IServiceNavigation::GetServiceList out.services=[" + manyServices(200) + "]"), -1);
  EXPECT_TRUE(fault.hit());
  EXPECT_EQ(list, "as it was");
  const Lines lines = logs();
  ASSERT_EQ(lines.size(), 3 + 2 * 200 + 1U);
  EXPECT_EQ(lines[lines.size() - 2].find("3 SERVICE_ID = 200,"), 0U);
  EXPECT_EQ(lines.back(), reports::notWritten("GetFullChannelList"));
}

}  // namespace
