// SPDX-License-Identifier: MIT
// The index that each of the plug-in's queries uses, on a database without statistics of its own list.
#include <gtest/gtest.h>

#include "store/Statement.h"
#include "virtualtv/services/Support.h"

namespace virtualtv::test {
namespace {

using Data = TCServiceData;

struct Question {
  const char* name;
  Pick pick;
  std::vector<int> fetch;
  std::vector<int> where;
  std::vector<QueryShape::Order> order;
  const char* index;
  bool sorts;  ///< the query may sort the few rows that the index selects
  bool skipLocked = false;
};

const std::vector<int> full{12, 16, 41, 15, 18, 1, 2, 6, 37, 4, 13, 14, 110};
const std::vector<int> report{12, 16, 13, 14, 1, 4, 2, 15, 41};
const std::vector<int> antenna{Data::ANTENNA_MODE, HIDDEN};
const std::vector<int> operatorsList{Data::ANTENNA_MODE, SERVICE_MODE, HIDDEN};
const std::vector<int> antennaAndType{Data::ANTENNA_MODE, HIDDEN, Data::CHANNEL_TYPE};
const std::vector<int> operatorsListAndType{Data::ANTENNA_MODE, SERVICE_MODE, HIDDEN, Data::CHANNEL_TYPE};
const std::vector<QueryShape::Order> byId{{Data::SERVICE_ID, false}};

const std::vector<Question> questions{
    {"listOfAnAntenna", Pick::list, full, antenna, {}, "service_by_antenna", false},
    {"listOfAnAntennaByType", Pick::list, full, antennaAndType, {}, "service_by_antenna", false},
    {"listOfAnOperator", Pick::list, full, operatorsList, {}, "service_by_mode", false},
    {"listOfAnOperatorByType", Pick::list, full, operatorsListAndType, {}, "service_by_mode", false},
    {"reportOfAnAntenna", Pick::list, report, antenna, {}, "service_by_antenna", false},
    {"reportOfAnOperator", Pick::list, report, operatorsList, {}, "service_by_mode", false},
    {"serviceById", Pick::first, {16, 13, 14, 1, 12}, {12}, {}, "service_by_id", true},
    {"serviceByPtc", Pick::first, {12, 41, 18, 2}, {2}, byId, "service_by_ptc", true},
    {"serviceByPtcTypeAndMinor", Pick::first, {12}, {2, 1, 14}, {}, "service_by_ptc", true},
    {"serviceByNumber", Pick::first, {12, 13, 14}, {13, 14}, byId, "service_by_number", true},
    {"serviceByNumberAndType", Pick::first, {12, 13, 14}, {13, 14, 1}, byId, "service_by_number", true},
    {"serviceByNumberTypeAndAntenna", Pick::first, {12, 13, 14}, {13, 14, 1, 115}, byId, "service_by_number", true},
    {"serviceByNumberInAList", Pick::first, {12}, {13, 14, 115, HIDDEN}, {}, "service_by_number", true},
    {"serviceByNumberInAnOperatorsList",
     Pick::first,
     {12},
     {13, 14, 115, SERVICE_MODE, HIDDEN},
     {},
     "service_by_number",
     true},
    {"satelliteService", Pick::first, {12}, {1, 6, 7, 2, 15, 1, 14}, {}, "service_by_ptc", true},
    {"satelliteServiceOfAnyModulation", Pick::first, {12}, {1, 7, 2, 15, 1}, {}, "service_by_ptc", true},
    {"nextOnAnAntenna", Pick::after, {1, 12, 22}, antenna, {}, "service_by_antenna", false},
    {"previousOnAnAntenna", Pick::before, {1, 12, 22}, antenna, {}, "service_by_antenna", false},
    {"firstOnAnAntenna", Pick::start, {1, 12, 22}, antenna, {}, "service_by_antenna", false},
    {"lastOnAnAntenna", Pick::end, {1, 12, 22}, antenna, {}, "service_by_antenna", false},
    {"nextUnlockedOnAnAntenna", Pick::after, {1, 12, 22}, antenna, {}, "service_by_antenna", false, true},
    {"previousUnlockedOnAnAntenna", Pick::before, {1, 12, 22}, antenna, {}, "service_by_antenna", false, true},
    {"nextOfAnOperator", Pick::after, {1, 12, 22}, operatorsList, {}, "service_by_mode", false},
    {"previousOfAnOperator", Pick::before, {1, 12, 22}, operatorsList, {}, "service_by_mode", false},
    {"firstOfAnOperator", Pick::start, {1, 12, 22}, operatorsList, {}, "service_by_mode", false},
    {"lastOfAnOperator", Pick::end, {1, 12, 22}, operatorsList, {}, "service_by_mode", false},
    {"currentService", Pick::at, full, {}, {}, "INTEGER PRIMARY KEY", false},
    {"fieldsOfAnyId", Pick::first, {12, 300}, {300}, {}, "INTEGER PRIMARY KEY", true},
    {"listOfAll", Pick::list, report, {}, {}, "service_by_place", false},
};

std::vector<std::string> planOf(Database& database, const std::string& sql) {
  Statement statement(database, "EXPLAIN QUERY PLAN " + sql, "explain");
  std::vector<std::string> plan;
  Rows rows = statement.query();
  while (rows.next()) plan.push_back(rows.text(3));
  return plan;
}

class QueryPlan : public testing::TestWithParam<Question> {};

void expectGoodPlan(Database& database, const Question& question) {
  const QueryShape shape{question.pick, question.skipLocked, question.fetch, question.where, question.order};
  const auto plan = planOf(database, sqlOf(shape));
  ASSERT_FALSE(plan.empty());
  EXPECT_NE((plan.front() + " ").find(std::string(question.index) + " "), std::string::npos) << plan.front();
  for (const std::string& step : plan) {
    const bool scans = step.starts_with("SCAN");
    EXPECT_EQ(scans, scans && question.where.empty()) << step;
    EXPECT_TRUE(question.sorts || step.find("B-TREE") == std::string::npos) << step;
  }
}

TEST_P(QueryPlan, GoesThroughItsIndex) {
  Database memory(Database::inMemory, serviceSchema);
  expectGoodPlan(memory, GetParam());
}

TEST_P(QueryPlan, IsTheSameOnceTheDatabaseWasOpenedAgain) {
  TemporaryDirectory directory;
  { Database database(directory / "a.db", serviceSchema); }
  Database database(directory / "a.db", serviceSchema);
  expectGoodPlan(database, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Each, QueryPlan, testing::ValuesIn(questions),
                         [](const auto& question) { return question.param.name; });

TEST(QueryPlan, AStepStartsAtThePlaceOfTheCurrentService) {
  Database memory(Database::inMemory, serviceSchema);
  const auto bounds = [&](Pick pick) { return planOf(memory, sqlOf({pick, false, {12}, antenna, {}})).front(); };
  EXPECT_NE(bounds(Pick::after).find("place>?"), std::string::npos) << bounds(Pick::after);
  EXPECT_NE(bounds(Pick::before).find("place<?"), std::string::npos) << bounds(Pick::before);
}

}  // namespace
}  // namespace virtualtv::test
