// The found-channel list: how it is filled, against the bare statement; and what an element costs at its far end.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>

#include "support/Television.h"

namespace {

constexpr std::size_t many = 10'000;
constexpr std::size_t most = 100'000;
constexpr const char* everyType = "0";
constexpr const char* ownMode = "1";

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

void statement(benchmark::State& state) {
  bench::Television& television = bench::Television::with(many);
  sqlite3_stmt* made = nullptr;
  const std::string sql = statementOf(television);
  if (sqlite3_prepare_v2(television.database(), sql.c_str(), -1, &made, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sql + ": " + sqlite3_errmsg(television.database()));
  }
  const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> prepared(made, sqlite3_finalize);
  for (auto _ : state) {
    std::size_t rows = 0;
    while (sqlite3_step(made) == SQLITE_ROW) ++rows;
    sqlite3_reset(made);
    if (rows != many) throw std::runtime_error("the statement finds " + std::to_string(rows));
  }
}

BENCHMARK(findChannel)->Unit(benchmark::kMillisecond);
BENCHMARK(statement)->Unit(benchmark::kMillisecond);

void field(benchmark::State& state, const std::string& query) {
  bench::Television& television = bench::Television::with(most);
  find(television);
  const std::string index = std::to_string(state.range(0));
  const std::string reply = television.execute(query, index);
  if (reply == television.execute(query, "-1")) {
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

}  // namespace
