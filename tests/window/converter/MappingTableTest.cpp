// SPDX-License-Identifier: MIT
// The tables that map the plug-in's numbers to the TV service's and back.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "EmpConverterWindow.h"

namespace {

using Pairs = std::vector<std::pair<int, int>>;

/// The converter with access to its tables.
struct Converter : kel::CEmpConverterWindow {
  using CEmpConverterWindow::m_stTable;
  using CEmpConverterWindow::m_stTableSize;
  using CEmpConverterWindow::tableCount;
};

struct Table {
  const char* name;
  _PL_WINDOW_MAPPING_TABLE_ID id;
  int number;
  Pairs pairs;  ///< PL and TC, in the order of the search
};

const Pairs placeholder{{0, 0}};

const std::vector<Table>& tables() {
  static const std::vector<Table> all{
      {"channel type", PL_WINDOW_MAPPING_TABLE_CHANNEL_TYPE, 0, {{0, -1}, {2, 1},   {3, 2},   {4, 3},   {5, 4},
                                                                 {8, 7},  {9, 3},   {10, 8},  {28, 9},  {11, 4},
                                                                 {12, 5}, {13, 6},  {16, 7},  {18, 8},  {19, 13},
                                                                 {20, 9}, {21, 10}, {23, 11}, {24, 19}, {25, 20}}},
      {"navigator mode", PL_WINDOW_MAPPING_TABLE_NAVIGATOR_MODE, 1, placeholder},
      {"position mode", PL_WINDOW_MAPPING_TABLE_POSITION_MODE, 2, placeholder},
      {"rect size mode", PL_WINDOW_MAPPING_TABLE_RECT_SIZE_MODE, 3, placeholder},
      {"seek",
       PL_WINDOW_MAPPING_TABLE_SEEK,
       4,
       {{0, -1},
        {1, -1},
        {2, -1},
        {3, -1},
        {4, -1},
        {5, -1},
        {6, -1},
        {7, -1},
        {8, -1},
        {9, -1},
        {10, -1},
        {11, -1},
        {12, -1}}},
      {"show state", PL_WINDOW_MAPPING_TABLE_SHOW_STATE, 5, placeholder},
      {"show type", PL_WINDOW_MAPPING_TABLE_SHOW_TYPE, 6, placeholder},
      {"resolution", PL_WINDOW_MAPPING_TABLE_RESOLUTION, 7, {{0, 137},  {1, 134}, {2, 0},   {3, 0},   {4, 154},
                                                             {5, 1},    {6, 2},   {7, 3},   {8, 4},   {9, 5},
                                                             {10, 10},  {11, 9},  {12, 21}, {13, 22}, {14, 15},
                                                             {15, 16},  {16, 17}, {17, 19}, {18, -2}, {19, 135},
                                                             {20, 136}, {21, -1}, {22, 29}, {23, -1}}},
      {"source",
       PL_WINDOW_MAPPING_TABLE_SOURCE,
       8,
       {{0, 0},   {1, -1},  {2, -1},  {3, -1},  {4, -1},   {5, -1},  {6, -1},  {7, -1},  {11, -1}, {12, -1},
        {13, -1}, {14, -1}, {15, 1},  {16, 2},  {17, 3},   {19, 4},  {20, 5},  {21, 6},  {23, 7},  {24, 8},
        {25, 9},  {27, 10}, {28, 11}, {29, 12}, {31, 13},  {32, 14}, {33, 15}, {34, 16}, {35, 17}, {36, 18},
        {37, 19}, {39, 20}, {40, 21}, {41, 22}, {43, -1},  {44, -1}, {45, -1}, {46, -1}, {47, -1}, {48, -1},
        {49, -1}, {50, -1}, {51, -1}, {52, -1}, {100, -1}, {53, 31}}},
      {"modulation", PL_WINDOW_MAPPING_TABLE_MODULATION, 9, {{-1, -1}, {0, 0},   {1, 1},   {2, 2},   {3, 3},
                                                             {4, 4},   {5, 5},   {6, 6},   {7, 7},   {8, 8},
                                                             {9, 9},   {10, 10}, {11, 11}, {12, 12}, {13, 13},
                                                             {14, 14}, {15, 15}, {16, 16}, {17, 17}, {18, 18}}},
      {"z-order", PL_WINDOW_MAPPING_TABLE_ZORDER, 10, {{0, 0}, {1, 2}}},
  };
  return all;
}

/// The result of a search from the front.
int firstTc(const Pairs& pairs, int pl) {
  const auto found = std::find_if(pairs.begin(), pairs.end(), [&](const auto& pair) { return pair.first == pl; });
  return found == pairs.end() ? 0 : found->second;
}
int firstPl(const Pairs& pairs, int tc) {
  const auto found = std::find_if(pairs.begin(), pairs.end(), [&](const auto& pair) { return pair.second == tc; });
  return found == pairs.end() ? 0 : found->first;
}

int tc(int pl, _PL_WINDOW_MAPPING_TABLE_ID id) {
  return kel::CEmpConverterWindow::GetTCValue(pl, id);
}
int pl(int tc, _PL_WINDOW_MAPPING_TABLE_ID id) {
  return kel::CEmpConverterWindow::GetPLValue(tc, id);
}

TEST(MappingTable, IsNumberedInTheStatedOrder) {
  ASSERT_EQ(tables().size(), 11U);
  ASSERT_EQ(Converter::tableCount, 11);
  for (const Table& table : tables()) EXPECT_EQ(static_cast<int>(table.id), table.number) << table.name;
}

TEST(MappingTable, HoldsEveryPairInItsOrder) {
  for (const Table& table : tables()) {
    SCOPED_TRACE(table.name);
    const auto* const held = Converter::m_stTable[table.id];
    Pairs pairs;
    for (int at = 0; at < Converter::m_stTableSize[table.id]; ++at) pairs.emplace_back(held[at].pl, held[at].tc);
    EXPECT_EQ(pairs, table.pairs);
  }
}

TEST(MappingTable, TranslatesEveryValueByTheFirstMatchInBothDirections) {
  for (const Table& table : tables()) {
    SCOPED_TRACE(table.name);
    for (int value = -5; value <= 300; ++value) {
      EXPECT_EQ(tc(value, table.id), firstTc(table.pairs, value)) << "PL " << value;
      EXPECT_EQ(pl(value, table.id), firstPl(table.pairs, value)) << "TC " << value;
    }
  }
}

}  // namespace
