// How the values of calls are written in a trace.
#include "seam/Values.h"

#include <gtest/gtest.h>

#include <limits>

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

}  // namespace
}  // namespace virtualtv::seam
