// SPDX-License-Identifier: MIT
// Properties that all queries for a field of a channel share, and the queries for numbers.
#include <climits>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "window/channel/FieldQueries.h"

namespace {

using channels::Family;
using channels::fieldQueries;
using channels::FieldQuery;
using channels::FieldTest;
using channels::join;
using channels::Output;
using channels::Reading;
using support::Lines;

std::string text(int number) {
  return std::to_string(number);
}

/// A field in a record, the number read from it, and the answer.
struct Value {
  std::string stored;  ///< as in `13=7` without the id; empty for a missing field
  int read;
  int answered;
};

/// The values of fields for each kind of query.
const std::map<Reading, std::vector<Value>>& values() {
  static const std::map<Reading, std::vector<Value>> all = [] {
    const std::vector<std::tuple<std::string, int, int>> numbers{{"", 65535, -1},
                                                                 {"0", 0, 0},
                                                                 {"7", 7, 7},
                                                                 {"255", 255, 255},
                                                                 {"300", 300, 300},
                                                                 {"32768", 32768, 32768},
                                                                 {"65535", 65535, 65535},
                                                                 {"65536", 0, 65536},
                                                                 {"70000", 4464, 70000},
                                                                 {"2147483647", 65535, INT_MAX},
                                                                 {"-2", 65534, -2},
                                                                 {"4294967296", 0, 0},
                                                                 {"\"7\"", 65535, -1}};  // a text is not a number
    const std::vector<std::pair<int, int>> types{{-1, 0},  {0, 0},   {1, 2},   {2, 3},  {3, 4},   {4, 5},   {5, 12},
                                                 {6, 13},  {7, 8},   {8, 10},  {9, 28}, {10, 21}, {11, 23}, {12, 0},
                                                 {13, 19}, {19, 24}, {20, 25}, {99, 0}, {-2, 0}};
    std::map<Reading, std::vector<Value>> made{{Reading::type, {{"", -1, 0}}}};
    for (const auto& [stored, unsigned16, signed32] : numbers) {
      made[Reading::unsigned16].push_back({stored, unsigned16, unsigned16});
      made[Reading::signed32].push_back({stored, signed32, signed32});
    }
    for (const auto& [stored, mapped] : types) made[Reading::type].push_back({text(stored), stored, mapped});
    return made;
  }();
  return all;
}

/// The record with the id 281, the major number 5 and this field, unless it is missing.
std::string recordWith(int field, const std::string& stored) {
  const std::string id = "{12=281";
  const std::string major = field == TCServiceData::MAJOR ? "" : ",13=5";
  return id + major + (stored.empty() ? "" : "," + text(field) + "=" + stored) + "}";
}

/// Asks for a number and holds result and answer against what is expected.
void expectNumber(support::WorkerProbe& worker, const FieldQuery& query, int answered) {
  Output output;
  EXPECT_EQ(query.ask(worker, &output), 1);
  EXPECT_EQ(output.value(), answered);
}

TEST(FieldQueries, AreTwentyTwo) {
  EXPECT_EQ(fieldQueries().size(), 22U);
}

TEST_F(FieldTest, FieldsAreReadAtTheirFamilysWidthAndMissingOnesAsItsDefault) {
  for (const FieldQuery& query : fieldQueries()) {
    if (query.isName()) continue;
    for (const Value& value : values().at(query.reading)) {
      SCOPED_TRACE(query.name + " " + value.stored);
      give(recordWith(query.field, value.stored));
      expectNumber(worker, query, value.answered);
      // The lookup logs the major number, cut to 16 bits.
      const int major = query.field == TCServiceData::MAJOR ? value.read & 0xFFFF : 5;
      EXPECT_EQ(logs(), join({channels::begin(query), channels::lookup(query, "281", text(major)),
                              channels::end(query, "281", value.read, value.answered)}));
    }
  }
}

TEST_F(FieldTest, AMissingServiceIdIsLoggedAsAllOnes) {
  const std::string ones = "18446744073709551615";
  for (const FieldQuery& query : fieldQueries()) {
    if (query.isName() || query.family != Family::indexed) continue;
    SCOPED_TRACE(query.name);
    give("{}");
    Output output;
    EXPECT_EQ(query.ask(worker, &output), 1);
    const int read = query.reading == Reading::type ? -1 : 65535;
    EXPECT_EQ(logs(), join({channels::begin(query), channels::end(query, ones, read, output.value())}));
  }
}

TEST_F(FieldTest, ANullOutputAnswersMinus3BeforeAnyLookup) {
  for (const FieldQuery& query : fieldQueries()) {
    SCOPED_TRACE(query.name);
    forget();
    EXPECT_EQ(query.ask(worker, nullptr), -3);
    EXPECT_EQ(logs(), join({channels::begin(query), channels::nullOutput(query)}));
    EXPECT_EQ(calls(), Lines{});
  }
}

TEST_F(FieldTest, WithoutTheChannelAnswersMinus1AndLeavesTheOutputAsItWas) {
  const Lines current{"0 Fail to get current service data\n"};
  const Lines start{"3 serviceId = 281, source = 0", "0 Fail to FindService!!!"};
  fault("IServiceNavigation::GetCurrentService always result=0");
  fault("IService::FindService always result=0");
  for (const FieldQuery& query : fieldQueries()) {
    SCOPED_TRACE(query.name);
    forget();
    Output output;
    EXPECT_EQ(query.ask(worker, &output), -1);
    EXPECT_EQ(output.number, Output::untouched);
    EXPECT_EQ(output.type, Output::untouched);
    EXPECT_EQ(output.units[0], 0);
    const Lines& failed = query.family == Family::current ? current : query.family == Family::start ? start : Lines{};
    EXPECT_EQ(logs(), join({channels::begin(query), failed, channels::noChannel(query)}));
  }
}

TEST_F(FieldTest, EveryPositionOutsideTheListIsWithoutAChannel) {
  give("{12=281,13=7}");
  for (const int position : {-1, 2, 2147483647, -2147483647 - 1}) {
    int major = 5;
    EXPECT_EQ(worker.GetChannel_Major(position, &major), -1) << position;
    EXPECT_EQ(major, 5);
  }
  EXPECT_NE(logs().back().find("[Idx:-2147483648] Failed to get data."), std::string::npos);
}

TEST_F(FieldTest, WithoutProxiesAnswersMinus1) {
  loseNavigation();
  const Lines lost = join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}});
  for (const FieldQuery& query : fieldQueries()) {
    if (query.family == Family::indexed) continue;
    SCOPED_TRACE(query.name);
    Output output;
    EXPECT_EQ(query.ask(worker, &output), -1);
    EXPECT_EQ(output.value(), Output::untouched);
    EXPECT_EQ(logs(), join({channels::begin(query), lost, channels::noChannel(query)}));
  }
}

TEST_F(FieldTest, OnlyTheChannelIsAskedFor) {
  give("{12=281,13=7,16=\"News\"}");
  for (const FieldQuery& query : fieldQueries()) {
    SCOPED_TRACE(query.name);
    forget();
    Output output;
    EXPECT_EQ(query.ask(worker, &output), 1);
    const Lines asked = calls();
    if (query.family == Family::indexed) {
      EXPECT_EQ(asked, Lines{});
      continue;
    }
    ASSERT_EQ(asked.size(), 2U);
    const bool current = query.family == Family::current;
    EXPECT_EQ(asked[0], current ? "IServiceNavigation[main#1]::GetTvMode() mode=0,1 -> 1"
                                : "IServiceNavigation[main#1]::GetStartService() serviceId=281 source=0 -> 1");
    EXPECT_EQ(asked[1].find(current ? "IServiceNavigation[main#1]::GetCurrentService(mode=0,1, fetch 12 16 41 15 "
                                    : "IService[set#1]::FindService(fetch 16 13 14 1 12, where 12=281, count=1)"),
              0U)
        << asked[1];
  }
}

}  // namespace
