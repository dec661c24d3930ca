// SPDX-License-Identifier: MIT
// A record of a service: what it holds, in which order, and that copies are independent.
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tvservice/TCServiceData.h"

namespace {

using Units = std::vector<unsigned short>;

void setText(TCServiceData& record, int fieldId, const Units& units) {
  record.Set(fieldId, units.data(), static_cast<int>(units.size()));
}

std::vector<int> idsOf(const TCServiceData& record) {
  std::vector<int> ids;
  for (const TCServiceData::Field& field : record.Fields()) ids.push_back(field.id);
  return ids;
}

/// The number of a field, or `missing`.
unsigned long long numberOf(const TCServiceData& record, int fieldId, unsigned long long missing) {
  record.Get(fieldId, missing);
  return missing;
}

/// The text of a field; `missing` when it is absent.
Units textOf(const TCServiceData& record, int fieldId) {
  Units units(static_cast<std::size_t>(record.GetLength(fieldId)));
  if (!record.Get(fieldId, units.data())) units.assign(1, 0xDEAD);
  return units;
}

const Units missing{0xDEAD};

TEST(Record, IsEmptyAtFirst) {
  const TCServiceData record;
  EXPECT_TRUE(idsOf(record).empty());
  EXPECT_EQ(numberOf(record, 12, 7), 7U);
  EXPECT_EQ(record.GetLength(16), 0);
  EXPECT_EQ(textOf(record, 16), missing);
}

TEST(Record, HoldsItsFieldsInTheOrderInWhichTheyWereSet) {
  TCServiceData record;
  record.Set(14, 2);
  setText(record, 16, {1, 2, 3});
  record.Set(-5, 3);
  setText(record, 110, {});
  EXPECT_EQ(idsOf(record), (std::vector<int>{14, 16, -5, 110}));
  EXPECT_EQ(numberOf(record, 14, 0), 2U);
  EXPECT_EQ(numberOf(record, -5, 0), 3U);
  EXPECT_EQ(textOf(record, 16), (Units{1, 2, 3}));
  EXPECT_EQ(textOf(record, 110), Units());
}

TEST(Record, AFieldThatIsSetAgainMovesToTheEnd) {
  TCServiceData record;
  for (const int id : {1, 2, 3}) record.Set(id, 10);
  record.Set(1, 11);
  EXPECT_EQ(idsOf(record), (std::vector<int>{2, 3, 1}));
  EXPECT_EQ(numberOf(record, 1, 0), 11U);
}

TEST(Record, ATextReplacesANumberAndTheOtherWayRound) {
  TCServiceData record;
  record.Set(16, 5);
  setText(record, 18, {9});
  setText(record, 16, {1, 2});
  record.Set(18, 6);
  EXPECT_EQ(idsOf(record), (std::vector<int>{16, 18}));
  EXPECT_EQ(textOf(record, 16), (Units{1, 2}));
  EXPECT_EQ(numberOf(record, 16, 77), 77U);
  EXPECT_EQ(numberOf(record, 18, 77), 6U);
  EXPECT_EQ(textOf(record, 18), missing);
}

TEST(Record, TellsIdsApartThatAreAlikeInTheirLastDigits) {
  TCServiceData record;
  const std::array ids{0, 64, 128, -64, std::numeric_limits<int>::min()};
  for (const int id : ids) record.Set(id, static_cast<unsigned long long>(id));
  EXPECT_EQ(idsOf(record), std::vector<int>(ids.begin(), ids.end()));
  for (const int id : ids) EXPECT_EQ(numberOf(record, id, 1), static_cast<unsigned long long>(id));
  EXPECT_EQ(numberOf(record, 192, 1), 1U);
}

TEST(Record, GrowsWithFieldsAndTextsInTurns) {
  TCServiceData record;
  for (int id = 0; id < 200; id += 2) {
    record.Set(id, static_cast<unsigned long long>(id) * 3);
    setText(record, id + 1, Units(static_cast<std::size_t>(id), static_cast<unsigned short>(id)));
  }
  for (int id = 0; id < 200; id += 2) {
    EXPECT_EQ(numberOf(record, id, 1), static_cast<unsigned long long>(id) * 3);
    EXPECT_EQ(textOf(record, id + 1), Units(static_cast<std::size_t>(id), static_cast<unsigned short>(id)));
  }
}

TEST(Record, GrowsWithTextsAlone) {
  TCServiceData record;
  for (int id = 0; id < 100; ++id) setText(record, id, {static_cast<unsigned short>(id)});
  for (int id = 0; id < 100; ++id) EXPECT_EQ(textOf(record, id), Units{static_cast<unsigned short>(id)});
}

TEST(Record, CutsANumberToTheLowBitsOfTheOutput) {
  TCServiceData record;
  record.Set(12, 0x1122334455667788ULL);
  unsigned char byte = 0;
  unsigned short word = 0;
  int number = 0;
  EXPECT_TRUE(record.Get(12, byte) && record.Get(12, word) && record.Get(12, number));
  EXPECT_EQ(byte, 0x88);
  EXPECT_EQ(word, 0x7788);
  EXPECT_EQ(number, 0x55667788);
}

TEST(Record, HoldsNothingOnceCleared) {
  TCServiceData record;
  record.Set(12, 1);
  setText(record, 16, {1});
  record.Clear();
  EXPECT_TRUE(idsOf(record).empty());
  EXPECT_EQ(numberOf(record, 12, 7), 7U);
  setText(record, 16, {2, 3});
  EXPECT_EQ(textOf(record, 16), (Units{2, 3}));
}

class RecordCopy : public testing::Test {
 protected:
  RecordCopy() {
    record.Set(12, 1);
    setText(record, 16, {1, 2, 3});
  }
  static void expectWhole(const TCServiceData& record) {
    EXPECT_EQ(idsOf(record), (std::vector<int>{12, 16}));
    EXPECT_EQ(numberOf(record, 12, 0), 1U);
    EXPECT_EQ(textOf(record, 16), (Units{1, 2, 3}));
  }

  TCServiceData record;
};

TEST_F(RecordCopy, StandsForItself) {
  TCServiceData copy(record);
  expectWhole(copy);
  copy.Set(12, 9);
  setText(copy, 16, Units(100, 5));
  copy.Set(13, 4);
  expectWhole(record);
  EXPECT_EQ(numberOf(copy, 13, 0), 4U);
}

TEST_F(RecordCopy, OfAnEmptyOneIsEmptyAndCanBeFilled) {
  const TCServiceData empty;
  TCServiceData copy(empty);
  EXPECT_TRUE(idsOf(copy).empty());
  copy.Set(12, 1);
  EXPECT_EQ(numberOf(copy, 12, 0), 1U);
}

TEST_F(RecordCopy, AssignedTakesThePlaceOfWhatWasThere) {
  TCServiceData other;
  other.Set(300, 3);
  other = record;
  expectWhole(other);
  expectWhole(record);
  EXPECT_EQ(numberOf(other, 300, 7), 7U);
}

TEST_F(RecordCopy, AssignedToItselfStays) {
  TCServiceData& same = record;
  record = same;
  expectWhole(record);
}

class RecordInOneBlock : public RecordCopy {
 protected:
  const std::unique_ptr<TCServiceData> made{TCServiceData::New({record.Fields(), record.Units()})};
};

TEST_F(RecordInOneBlock, HoldsWhatItWasMadeOf) {
  record.Clear();
  expectWhole(*made);
  EXPECT_EQ(numberOf(*made, 12 + 64, 7), 7U);
}

TEST_F(RecordInOneBlock, GrowsAsAnyOther) {
  made->Set(13, 4);
  setText(*made, 110, Units(100, 5));
  EXPECT_EQ(idsOf(*made), (std::vector<int>{12, 16, 13, 110}));
  EXPECT_EQ(numberOf(*made, 12, 0), 1U);
  EXPECT_EQ(textOf(*made, 16), (Units{1, 2, 3}));
  EXPECT_EQ(textOf(*made, 110), Units(100, 5));
}

TEST_F(RecordInOneBlock, IsCopiedAndAssigned) {
  TCServiceData copy(*made);
  *made = TCServiceData();
  EXPECT_TRUE(idsOf(*made).empty());
  expectWhole(copy);
  copy.Set(300, 3);
  *made = copy;
  EXPECT_EQ(numberOf(*made, 300, 7), 3U);
}

TEST_F(RecordInOneBlock, MayBeEmpty) {
  const std::unique_ptr<TCServiceData> empty(TCServiceData::New({TCServiceData().Fields(), TCServiceData().Units()}));
  EXPECT_TRUE(idsOf(*empty).empty());
  empty->Set(12, 1);
  EXPECT_EQ(numberOf(*empty, 12, 0), 1U);
}

TEST(Record, FindsAFieldWhereverTheLastRecordHadIt) {
  TCServiceData one;
  for (const int id : {1, 2, 3}) one.Set(id, static_cast<unsigned long long>(id));
  TCServiceData other;
  for (const int id : {3, 2, 66}) other.Set(id, static_cast<unsigned long long>(id) * 10);
  TCServiceData shorter;
  shorter.Set(3, 300);
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(numberOf(one, 3, 0), 3U);
    EXPECT_EQ(numberOf(other, 3, 0), 30U);
    EXPECT_EQ(numberOf(one, 3, 0), 3U);
    EXPECT_EQ(numberOf(shorter, 3, 0), 300U);
    EXPECT_EQ(numberOf(other, 66, 0), 660U);
    EXPECT_EQ(numberOf(one, 66, 7), 7U);
    EXPECT_EQ(numberOf(one, 2, 0), 2U);
  }
}

}  // namespace
