// The found-channel list: how it is filled, against the bare statement; and what an element costs at its far end.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <list>
#include <memory>
#include <stdexcept>
#include <string>

#include "framework/Reply.h"
#include "support/Television.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCNavigationModeHelper.h"
#include "tvservice/TCServiceData.h"
#include "tvservice/TVServiceAPI.h"

namespace {

constexpr std::size_t many = 10'000;
constexpr std::size_t most = 100'000;
constexpr const char* everyType = "0";
constexpr const char* ownMode = "1";

using S = TCServiceData;

/// What FindChannel asks for.
constexpr std::array fields{
    S::SERVICE_ID,   S::CHANNEL_NAME, S::ORIGINAL_NETWORK_ID, S::PROGRAM_NUMBER, S::TRANSPORT_STREAM_ID,
    S::CHANNEL_TYPE, S::PTC,          S::MODULATION,          S::SOURCE_ID,      S::FREQUENCY,
    S::MAJOR,        S::MINOR,        S::SERVICE_FIELD_110};

void find(bench::Television& television) {
  television.require(1, "FindChannel", everyType, ownMode);
}

/// The last statement that a command runs, with its values, as SQL.
std::string statementOf(bench::Television& television) {
  std::string sql;
  const auto note = [](unsigned, void* context, void* statement, void*) {
    const std::unique_ptr<char, decltype(&sqlite3_free)> expanded(
        sqlite3_expanded_sql(static_cast<sqlite3_stmt*>(statement)), sqlite3_free);
    *static_cast<std::string*>(context) = expanded.get();
    return 0;
  };
  sqlite3_trace_v2(television.database(), SQLITE_TRACE_STMT, note, &sql);
  find(television);
  sqlite3_trace_v2(television.database(), 0, nullptr, nullptr);
  return sql;
}

void findChannel(benchmark::State& state) {
  bench::Television& television = bench::Television::with(many);
  const std::string name = "FindChannel";
  const std::string type = everyType;
  const std::string mode = ownMode;
  find(television);
  television.require(many, "GetChannel_Size");
  for (auto _ : state) benchmark::DoNotOptimize(television.execute(name, type, mode));
}

using Prepared = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

/// The statement that finding the services runs.
Prepared prepared(bench::Television& television) {
  sqlite3_stmt* made = nullptr;
  const std::string sql = statementOf(television);
  if (sqlite3_prepare_v2(television.database(), sql.c_str(), -1, &made, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sql + ": " + sqlite3_errmsg(television.database()));
  }
  return Prepared(made, sqlite3_finalize);
}

/// Steps over all rows, with something done at each.
template <typename AtRow>
void step(benchmark::State& state, AtRow atRow) {
  const Prepared statement = prepared(bench::Television::with(many));
  for (auto _ : state) {
    std::size_t rows = 0;
    for (; sqlite3_step(statement.get()) == SQLITE_ROW; ++rows) atRow(statement.get());
    sqlite3_reset(statement.get());
    if (rows != many) throw std::runtime_error("the statement finds " + std::to_string(rows));
  }
}

void statement(benchmark::State& state) {
  step(state, [](sqlite3_stmt*) {});
}

/// What anyone who wants the fields has to ask for, at the least.
void columns(benchmark::State& state) {
  step(state, [](sqlite3_stmt* row) {
    for (int column = 0, count = sqlite3_data_count(row); column < count; ++column) {
      sqlite3_value* const value = sqlite3_column_value(row, column);
      const int type = sqlite3_value_type(value);
      if (type == SQLITE_INTEGER) benchmark::DoNotOptimize(sqlite3_value_int64(value));
      if (type == SQLITE_BLOB) benchmark::DoNotOptimize(sqlite3_value_blob(value));
    }
  });
}

/// The set's own part: the list of records, made and deleted.
void records(benchmark::State& state) {
  bench::Television::with(many);
  IServiceNavigation* navigation = nullptr;
  TVServiceAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &navigation);
  const TSTvMode mode(ANTENNA_TERRESTRIAL, SERVICE_MODE_NONE);
  TCCriteriaHelper criteria;
  TCNavigationModeHelper::GetNavigationCriteria(NAVIGATION_ALL, mode, criteria, ~0ULL);
  for (const int field : fields) criteria.Fetch(field);
  for (auto _ : state) {
    std::list<TCServiceData*> services;
    navigation->GetServiceList(criteria, services, TSTvMode(ANTENNA_NONE, SERVICE_MODE_NONE), 0, 0);
    if (services.size() != many) throw std::runtime_error("the set has " + std::to_string(services.size()));
    for (const TCServiceData* service : services) delete service;
  }
}

BENCHMARK(findChannel)->Unit(benchmark::kMillisecond);
BENCHMARK(statement)->Unit(benchmark::kMillisecond);
BENCHMARK(columns)->Unit(benchmark::kMillisecond);
BENCHMARK(records)->Unit(benchmark::kMillisecond);

/// An answer of none would be as fast at any index.
bool isEmpty(const std::string& reply) {
  const auto decoded = virtualtv::framework::decode(reply);
  return !decoded || virtualtv::framework::bare(*decoded).empty();
}

void field(benchmark::State& state, const std::string& query) {
  bench::Television& television = bench::Television::with(most);
  find(television);
  const std::string index = std::to_string(state.range(0));
  const std::string reply = television.execute(query, index);
  if (isEmpty(reply) || reply == television.execute(query, "-1")) {
    throw std::runtime_error(query + " does not find " + index);
  }
  for (auto _ : state) benchmark::DoNotOptimize(television.execute(query, index));
}

#define FIELD(query) BENCHMARK_CAPTURE(field, query, "GetChannel_" #query)->Arg(0)->Arg(most - 1)

FIELD(Major);
FIELD(Minor);
FIELD(Name);
FIELD(OriginNetID);
FIELD(ProgramNumber);
FIELD(PTC);
FIELD(ServiceName);
FIELD(TransportStreamID);
FIELD(Type);
FIELD(ServiceId);
FIELD(OnTVJson);

}  // namespace
