// SPDX-License-Identifier: MIT
// Channel lists: importing one into a set on a disk, compared with SQLite alone writing the same rows; and exporting
// the same services, compared with writing the bare document.
#include <benchmark/benchmark.h>
#include <json/json.h>
#include <sqlite3.h>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "channels/ExportList.h"
#include "channels/ImportList.h"
#include "support/Directory.h"
#include "support/Television.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace {

constexpr std::size_t many = 20'000;
constexpr std::size_t few = 1;

/// An invented channels.conf in the size of a satellite list, with groups, several languages, and ids of conditional
/// access.
const std::string& list() {
  static const std::string text = [] {
    std::string lines;
    for (std::size_t number = 0; number < many; ++number) {
      const std::size_t transponder = number / 12;
      const auto at = [](std::size_t value) { return std::to_string(value); };
      const auto pid = [&](std::size_t offset) { return at(100 + number % 12 * 10 + offset); };
      if (number % 100 == 0) lines += ":Group " + at(number / 100 + 1) + "\n";
      lines += "Made-up " + at(1'000'000 + number) + ";Provider " + at(transponder % 40) + ":";
      lines +=
          at(10'700 + transponder % 1000) + ":" + (transponder % 2 == 0 ? "H" : "V") + "C56M5O35P0S1:S19.2E:22000:";
      lines += pid(0) + "=27:" + pid(1) + "=deu@3," + pid(2) + "=eng@3;" + pid(3) + "=deu@106:" + pid(4) + ";";
      lines += pid(5) + "=deu:1833,1843:" + at(number + 1) + ":1:" + at(transponder + 1) + ":0\n";
    }
    return lines;
  }();
  return text;
}

void importInto(virtualtv::Tv& tv) {
  const virtualtv::ImportReport report = virtualtv::importServices(tv, "list", list(), {});
  if (report.imported != many || report.problems.count() > 0) throw std::runtime_error(report.summary());
}

/// A copy of all rows of the service tables, which can be inserted again.
class Kept {
 public:
  explicit Kept(sqlite3* database) : database_(database) {
    for (const char* name : {"service", "raw_field", "audio_track", "subtitle_track", "favourite", "list_entry"}) {
      tables_.push_back(read(name));
    }
  }

  /// Inserts the rows into empty tables, in one transaction.
  void insert() const {
    run("BEGIN IMMEDIATE");
    for (const Table& table : tables_) insert(table);
    run("COMMIT");
  }

 private:
  using Prepared = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;
  using Value = std::unique_ptr<sqlite3_value, decltype(&sqlite3_value_free)>;

  struct Table {
    std::string insert;
    std::size_t columns;
    std::vector<Value> values;  ///< row by row
  };

  void require(bool is) const {
    if (!is) throw std::runtime_error(sqlite3_errmsg(database_));
  }

  void run(const char* sql) const { require(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) == SQLITE_OK); }

  Prepared prepared(const std::string& sql) const {
    sqlite3_stmt* made = nullptr;
    require(sqlite3_prepare_v2(database_, sql.c_str(), -1, &made, nullptr) == SQLITE_OK);
    return {made, sqlite3_finalize};
  }

  /// The stored columns of a table; generated columns are left out.
  std::vector<std::string> columnsOf(const std::string& table) const {
    std::vector<std::string> columns;
    const Prepared names = prepared("SELECT name FROM pragma_table_info('" + table + "')");
    while (sqlite3_step(names.get()) == SQLITE_ROW) {
      columns.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(names.get(), 0)));
    }
    return columns;
  }

  Table read(const std::string& name) const {
    std::string columns;
    std::string marks;
    const std::vector<std::string> names = columnsOf(name);
    for (const std::string& column : names) {
      columns.append(columns.empty() ? "" : ", ").append(column);
      marks += marks.empty() ? "?" : ", ?";
    }
    Table table{"INSERT INTO " + name + "(" + columns + ") VALUES(" + marks + ")", names.size(), {}};
    const Prepared rows = prepared("SELECT " + columns + " FROM " + name);
    while (sqlite3_step(rows.get()) == SQLITE_ROW) {
      for (std::size_t column = 0; column < names.size(); ++column) {
        sqlite3_value* const value = sqlite3_column_value(rows.get(), static_cast<int>(column));
        table.values.emplace_back(sqlite3_value_dup(value), sqlite3_value_free);
      }
    }
    return table;
  }

  void insert(const Table& table) const {
    const Prepared statement = prepared(table.insert);
    for (auto value = table.values.begin(); value != table.values.end();) {
      for (std::size_t column = 1; column <= table.columns; ++column, ++value) {
        require(sqlite3_bind_value(statement.get(), static_cast<int>(column), value->get()) == SQLITE_OK);
      }
      require(sqlite3_step(statement.get()) == SQLITE_DONE);
      sqlite3_reset(statement.get());
    }
  }

  sqlite3* database_;
  std::vector<Table> tables_;
};

/// A set on a disk, without services.
class Empty {
 public:
  Empty() : directory_(BENCH_SCRATCH) {
    bench::Television::drop();
    television_ = std::make_unique<bench::Television>(few, directory_.path());
    clear();
  }
  void clear() { television_->tv().removeServices(); }
  virtualtv::Tv& tv() { return television_->tv(); }
  sqlite3* database() { return television_->database(); }

 private:
  bench::Directory directory_;
  std::unique_ptr<bench::Television> television_;
};

void import(benchmark::State& state) {
  Empty set;
  for (auto _ : state) {
    importInto(set.tv());
    state.PauseTiming();
    set.clear();
    state.ResumeTiming();
  }
}

void insert(benchmark::State& state) {
  Empty set;
  importInto(set.tv());
  const Kept kept(set.database());
  set.clear();
  for (auto _ : state) {
    kept.insert();
    state.PauseTiming();
    if (set.tv().services().size() != many) throw std::runtime_error("not all services are there");
    set.clear();
    state.ResumeTiming();
  }
}

/// An export in the default format, which holds all data of a service.
std::string exported(virtualtv::Tv& tv) {
  const auto report = virtualtv::exportServices(tv.services(), virtualtv::defaultExportFormat());
  if (report.exported.services != many) throw std::runtime_error(report.summary());
  return report.exported.content;
}

void exportJson(benchmark::State& state) {
  Empty set;
  importInto(set.tv());
  for (auto _ : state) benchmark::DoNotOptimize(exported(set.tv()));
}

/// Writes the same document with the JSON library's writer alone.
void writeJson(benchmark::State& state) {
  Empty set;
  importInto(set.tv());
  Json::Value tree;
  Json::StreamWriterBuilder writer;
  writer["indentation"] = "";
  if (!Json::Reader().parse(exported(set.tv()), tree)) throw std::runtime_error("there is no document");
  for (auto _ : state) benchmark::DoNotOptimize(Json::writeString(writer, tree));
}

BENCHMARK(import)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(insert)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(exportJson)->Unit(benchmark::kMillisecond);
BENCHMARK(writeJson)->Unit(benchmark::kMillisecond);

}  // namespace
