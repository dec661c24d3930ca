// SPDX-License-Identifier: MIT
// Fills the found-channel list, for valgrind's callgrind to count: the plug-in's command, the set's part of it, and
// SQLite's part of that.
#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <exception>
#include <iostream>
#include <list>
#include <memory>
#include <stdexcept>
#include <string>

#include "support/Counted.h"
#include "support/Television.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCNavigationModeHelper.h"
#include "tvservice/TCServiceData.h"
#include "tvservice/TVServiceAPI.h"

namespace {

constexpr std::size_t services = 10'000;
constexpr int warming = 2;
constexpr int counted = 1;
constexpr const char* everyType = "0";
constexpr const char* ownMode = "1";

using S = TCServiceData;

/// The fields that FindChannel fetches.
constexpr std::array fields{
    S::SERVICE_ID,   S::CHANNEL_NAME, S::ORIGINAL_NETWORK_ID, S::PROGRAM_NUMBER, S::TRANSPORT_STREAM_ID,
    S::CHANNEL_TYPE, S::PTC,          S::MODULATION,          S::SOURCE_ID,      S::FREQUENCY,
    S::MAJOR,        S::MINOR,        S::SERVICE_FIELD_110};

void requireAll(std::size_t found) {
  if (found != services) throw std::runtime_error("there are " + std::to_string(found) + " services");
}

void find(bench::Television& television) {
  television.require(1, "FindChannel", everyType, ownMode);
}

/// The last statement that FindChannel runs, with its values, as SQL.
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

using Prepared = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

Prepared prepared(bench::Television& television) {
  sqlite3_stmt* made = nullptr;
  const std::string sql = statementOf(television);
  if (sqlite3_prepare_v2(television.database(), sql.c_str(), -1, &made, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sql + ": " + sqlite3_errmsg(television.database()));
  }
  return Prepared(made, sqlite3_finalize);
}

/// Steps through a statement and reads each column once: the least work that any reader of these fields must do.
void readColumns(sqlite3_stmt* statement) {
  std::size_t rows = 0;
  for (; sqlite3_step(statement) == SQLITE_ROW; ++rows) {
    for (int column = 0, count = sqlite3_data_count(statement); column < count; ++column) {
      sqlite3_value* const value = sqlite3_column_value(statement, column);
      const int type = sqlite3_value_type(value);
      if (type == SQLITE_INTEGER) sqlite3_value_int64(value);
      if (type == SQLITE_BLOB) sqlite3_value_blob(value);
    }
  }
  sqlite3_reset(statement);
  requireAll(rows);
}

/// Has the set create the list, and deletes it like the plug-in.
void listServices(IServiceNavigation& navigation, TCCriteriaHelper& criteria) {
  std::list<TCServiceData*> list;
  navigation.GetServiceList(criteria, list, TSTvMode(ANTENNA_NONE, SERVICE_MODE_NONE), 0, 0);
  requireAll(list.size());
  for (const TCServiceData* service : list) delete service;
}

void run() {
  bench::Television television(services);
  IServiceNavigation* navigation = nullptr;
  TVServiceAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &navigation);
  TCCriteriaHelper criteria;
  TCNavigationModeHelper::GetNavigationCriteria(NAVIGATION_ALL, TSTvMode(ANTENNA_TERRESTRIAL, SERVICE_MODE_NONE),
                                                criteria, ~0ULL);
  for (const int field : fields) criteria.Fetch(field);
  bench::count("set", warming, counted, [&] { listServices(*navigation, criteria); });
  const Prepared statement = prepared(television);
  bench::count("SQLite", warming, counted, [&] { readColumns(statement.get()); });
  bench::count("plug-in", warming, counted, [&] { find(television); });
  television.require(services, "GetChannel_Size");
}

}  // namespace

int main() {
  try {
    run();
    return 0;
  } catch (const std::exception& exception) {
    std::cerr << "bench_found: " << exception.what() << '\n';
    return 1;
  }
}
