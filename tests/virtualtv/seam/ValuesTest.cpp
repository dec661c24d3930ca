// SPDX-License-Identifier: MIT
// The form of values in a trace.
#include "seam/Values.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "seam/Seam.h"

namespace virtualtv::seam {
namespace {

using Data = TCServiceData;

constexpr auto minusOne = std::numeric_limits<unsigned long long>::max();
constexpr auto highBit = 1ULL << 63;

TEST(Values, AServiceIdHasNoSignInARecord) {
  TCServiceData record;
  record.Set(Data::SERVICE_ID, minusOne - 1);
  EXPECT_EQ(print(record), "{12=18446744073709551614}");
  record.Set(Data::SERVICE_ID, highBit);
  EXPECT_EQ(print(record), "{12=9223372036854775808}");
}

TEST(Values, OtherNumbersHaveTheirSignInARecord) {
  TCServiceData record;
  record.Set(Data::FREQUENCY, minusOne);
  record.Set(Data::PTC, 65535);
  record.Set(300, highBit);
  EXPECT_EQ(print(record), "{4=-1,2=65535,300=-9223372036854775808}");
}

TEST(Values, NumbersOfRecordsInAListAreWrittenAlike) {
  TCServiceData record;
  record.Set(Data::SERVICE_ID, minusOne);
  record.Set(Data::ANTENNA_MODE, minusOne);
  EXPECT_EQ(print(std::list<TCServiceData*>{&record}), "[{12=18446744073709551615,115=-1}]");
}

TEST(Values, NumbersOfConditionsAreWrittenAlike) {
  TCCriteriaHelper criteria;
  criteria.Where(Data::PTC, -1);
  criteria.Where(Data::PTC, -7);
  criteria.Where(Data::FREQUENCY, std::numeric_limits<int>::min());
  criteria.Where(Data::SERVICE_ID, minusOne - 1);
  criteria.Where(Data::SERVICE_ID, 281);
  EXPECT_EQ(print(criteria),
            "where 2=-1, where 2=-7, where 4=-2147483648, where 12=18446744073709551614, where 12=281");
}

TEST(Values, AWrittenRecordReadsAsTheSame) {
  TCServiceData record;
  record.Set(Data::SERVICE_ID, minusOne - 1);
  record.Set(Data::FREQUENCY, minusOne);
  TCServiceData read;
  ASSERT_TRUE(parse(print(record), read));
  EXPECT_EQ(print(read), print(record));
}

/// Parses records from a text, and prints them again.
std::string readAgain(const std::string& text) {
  std::list<TCServiceData*> records;
  if (!parse(text, records)) return "can't be read";
  std::list<std::unique_ptr<TCServiceData>> owned;
  for (TCServiceData* record : records) owned.emplace_back(record);
  return print(records);
}

TEST(Values, AListMayHoldNullRecords) {
  for (const char* text : {"[null]", "[{12=281},null]", "[null,null,{}]", "[null,{16=\"null\"}]"}) {
    EXPECT_EQ(readAgain(text), text);
  }
}

TEST(Values, AListWithAnythingElseThanRecordsAndNullCantBeRead) {
  for (const char* text : {"null", "[nul]", "[null", "[nullnull]", "[null{}]", "[{12=281},]", "[NULL]", "[{null}]"}) {
    EXPECT_EQ(readAgain(text), "can't be read") << text;
  }
}

TEST(Values, ANumberThatTheValueCantHoldCantBeRead) {
  int number = 7;
  EXPECT_FALSE(parse("2147483648", number));
  EXPECT_EQ(number, 7);
  unsigned char strength = 7;
  EXPECT_FALSE(parse("256", strength));
  EXPECT_FALSE(parse("-1", strength));
  EXPECT_TRUE(parse("255", strength));
  EXPECT_EQ(strength, 255);
  std::map<unsigned char, bool> groups;
  EXPECT_FALSE(parse("{256=1}", groups));
  EXPECT_FALSE(parse("{1=2}", groups));
  TCServiceData record;
  EXPECT_FALSE(parse("{4294967297=1}", record));
  EXPECT_FALSE(parse("{12=-18446744073709551615}", record));
}

TEST(Values, ARecordThatStandsAloneCantBeNull) {
  TCServiceData record;
  EXPECT_FALSE(parse("null", record));
}

TEST(Values, AFaultPutsNullRecordsIntoAListAndTheTraceShowsThem) {
  Seam& seam = Seam::instance();
  seam.reset();
  std::vector<Call> calls;
  seam.onCall([&](const Call& call) { calls.push_back(call); });
  seam.add(parseFault({"IServiceNavigation::GetServiceList", "out.services=[{12=281},null]"}));
  EXPECT_EQ(describe(seam.faults().front()), "IServiceNavigation::GetServiceList times=1 out.services=[{12=281},null]");

  std::list<TCServiceData*> records{new TCServiceData};
  pass(op("IServiceNavigation::GetServiceList"), {}, args(out("services", records)), [] { return 1; });
  ASSERT_EQ(records.size(), 2U);
  const std::unique_ptr<TCServiceData> first(records.front());
  EXPECT_EQ(print(*first), "{12=281}");
  EXPECT_EQ(records.back(), nullptr);
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(line(calls.front()), "IServiceNavigation::GetServiceList() services=[{12=281},null] -> 1 [fault]");
  seam.reset();
}

}  // namespace
}  // namespace virtualtv::seam
