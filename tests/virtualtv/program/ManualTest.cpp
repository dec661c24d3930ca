// SPDX-License-Identifier: MIT
// The tables of the virtual TV's manual: each row is tried on the program.
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/Statement.h"
#include "virtualtv/program/Program.h"

namespace virtualtv::shell {
namespace {

using Row = std::vector<std::string>;

/// The cells in a line of a table.
Row cellsOf(std::string_view line) {
  Row cells;
  std::string cell;
  for (std::size_t at = 1; at < line.size(); ++at) {
    if (line[at] == '|') {
      cells.push_back(cell.size() < 2 ? "" : cell.substr(1, cell.size() - 2));
      cell.clear();
    } else {
      if (line.substr(at, 2) == "\\|") ++at;
      cell += line[at];
    }
  }
  return cells;
}

/// The rows of the table with these headings.
std::vector<Row> table(const std::string& headings) {
  std::vector<Row> rows;
  const std::string page = test::contentOf(VIRTUAL_TV_PAGE);
  std::size_t start = page.find("\n" + headings + "\n|---");
  if (start == std::string::npos) return rows;
  start = page.find('\n', page.find("\n|---", start) + 1) + 1;
  for (std::size_t end = 0; page[start] == '|'; start = end + 1) {
    end = page.find('\n', start);
    rows.push_back(cellsOf(std::string_view(page).substr(start, end - start)));
  }
  return rows;
}

/// A cell that consists of code only, without its backquotes; empty for other cells.
std::string code(const std::string& cell) {
  const bool isCode = cell.size() > 2 && cell.front() == '`' && cell.find('`', 1) == cell.size() - 1;
  return isCode ? cell.substr(1, cell.size() - 2) : "";
}

using ManualOfTheProgram = ProgramTest;

TEST_F(ManualOfTheProgram, TellsBothNumbersOfEachInput) {
  const std::vector<Row> rows = table("| Input | Knobs, faults, trace | Commands |");
  const std::string knobs = run({}, ".get\n").out;
  std::size_t inputs = 0;
  for (std::size_t at = knobs.find(".plugged = "); at != std::string::npos; at = knobs.find(".plugged = ", at + 1))
    ++inputs;
  EXPECT_EQ(rows.size(), inputs);
  for (const Row& row : rows) {
    const std::string name = ".get input." + row[1] + ".name";
    const std::string set = ".set main.source " + row[1];
    const std::string shown =
        "> " + name + "\ninput." + row[1] + ".name = " + row[0] + "\n> " + set + "\n> GetSource\nint " + row[2] + "\n";
    EXPECT_EQ(run({}, name + "\n" + set + "\nGetSource\n").out, shown);
  }
}

TEST_F(ManualOfTheProgram, TellsBothNumbersOfEachChannelType) {
  const std::vector<Row> rows = table("| Type | Knobs, faults, trace | Commands |");
  EXPECT_EQ(rows.size(), 9U);
  for (const Row& row : rows) {
    const std::string told =
        run({}, ".set service.1152959734176350309.type " + row[1] + "\nGetStartChannel_Info\n").out;
    EXPECT_NE(told.find("\"type\" : " + row[2] + "\n"), std::string::npos) << row[0] << "\n" << told;
  }
}

TEST_F(ManualOfTheProgram, TellsTheMessageOfEachBadLine) {
  int tried = 0;
  for (const Row& row : table("| Input | Message | Status |")) {
    const std::string input = code(row[0]);
    const std::string message = code(row[1]);
    if (input.empty() || message.empty()) continue;
    ++tried;
    const Ending piped = run({}, input + "\n");
    EXPECT_EQ(piped.out, "> " + input + "\nerror: " + message + "\n");
    EXPECT_EQ(piped.err, "emp-window: standard input:1: " + message + "\n");
    EXPECT_EQ(std::to_string(piped.status), row[2]) << input;
  }
  EXPECT_GE(tried, 20);
}

TEST_F(ManualOfTheProgram, TellsTheMessageOfEachBadArgument) {
  int tried = 0;
  for (const Row& row : table("| Call | Message | Status |")) {
    std::istringstream call(code(row[0]));
    std::vector<std::string> words{std::istream_iterator<std::string>(call), {}};
    if (words.empty() || words.front() != "emp-window") continue;
    words.erase(words.begin());
    ++tried;
    const Ending ended = run(words);
    EXPECT_EQ(ended.err, "emp-window: " + code(row[1]) + " ('emp-window --help' says more)\n");
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(std::to_string(ended.status), row[2]) << row[0];
  }
  EXPECT_EQ(tried, 18);
}

/// The files of a set, and the ways in which they get damaged.
class State {
 public:
  explicit State(const std::filesystem::path& folder) : database_(folder / "tv.db"), log_(folder / "tv.db-wal") {}

  void hold(const std::string& content) const { test::write(database_, content); }
  void loseDatabase() const {
    std::filesystem::remove(database_);
    test::write(log_, "x");
  }
  void becomeDirectory() const {
    std::filesystem::remove(database_);
    std::filesystem::create_directory(database_);
  }
  /// Replaces the database by that of another program.
  void becomeOther(const char* sql) const {
    std::filesystem::remove(database_);
    tell(sql);
  }
  void tell(const char* sql) const {
    sqlite3* const handle = open();
    EXPECT_EQ(sqlite3_exec(handle, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql << sqlite3_errmsg(handle);
    sqlite3_close(handle);
  }
  void damageFront() const {
    constexpr std::size_t header = 100;
    test::overwrite(database_, header, std::string(1000, '\x5a'));
  }
  void damageWhatIsKept() const {
    constexpr std::size_t page = 4096;
    int root = 0;
    sqlite3* const handle = open();
    const auto note = [](void* to, int, char** values, char**) {
      *static_cast<int*>(to) = std::stoi(values[0]);
      return 0;
    };
    sqlite3_exec(handle, "SELECT rootpage FROM sqlite_schema WHERE name = 'set_state'", note, &root, nullptr);
    sqlite3_close(handle);
    ASSERT_GT(root, 0);
    test::overwrite(database_, static_cast<std::size_t>(root - 1) * page, std::string(page, '\x5a'));
  }
  /// Locks the database for the lifetime of this object.
  void lock() {
    held_ = open();
    EXPECT_EQ(sqlite3_exec(held_, "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE", nullptr, nullptr, nullptr),
              SQLITE_OK);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() { sqlite3_close(held_); }

 private:
  sqlite3* open() const {
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open(database_.c_str(), &handle), SQLITE_OK);
    return handle;
  }

  std::filesystem::path database_;
  std::filesystem::path log_;
  sqlite3* held_ = nullptr;
};

class ManualOfStates : public ProgramTest {
 protected:
  /// Runs a command on the set in the state directory.
  Ending runOnState(std::vector<std::string> command) {
    command.insert(command.begin(), {"--state", state().string(), "exec"});
    return run(std::move(command));
  }
};

TEST_F(ManualOfStates, TellsTheMessageOfEachStateThatCantBeRead) {
  std::map<std::string, std::function<void(State&)>> mishaps{
      {"is empty, or has a single byte", [](State& kept) { kept.hold("x"); }},
      {"is gone, but `tv.db-wal` is not", [](State& kept) { kept.loseDatabase(); }},
      {"is damaged at its front, or no database", [](State& kept) { kept.hold(std::string(8192, 'x')); }},
      {"is damaged behind the first 100 bytes of its front", [](State& kept) { kept.damageFront(); }},
      {"is a database without tables", [](State& kept) { kept.becomeOther("VACUUM"); }},
      {"is a database of another program", [](State& kept) { kept.becomeOther("CREATE TABLE theirs(x)"); }},
      {"was written by a newer version", [](State& kept) { kept.tell("PRAGMA user_version = 1000"); }},
      {"is a directory", [](State& kept) { kept.becomeDirectory(); }},
      {"is held by another program", [](State& kept) { kept.lock(); }},
      {"has lost a table", [](State& kept) { kept.tell("DROP TABLE set_state"); }},
      {"has services, but no state of the set", [](State& kept) { kept.tell("DELETE FROM set_state"); }},
      {"is damaged in the state of the set", [](State& kept) { kept.damageWhatIsKept(); }},
      {"holds an invalid number",
       [](State& kept) { kept.tell("UPDATE set_state SET value = '13abc' WHERE key = 'main.source'"); }},
      {"lacks a value of the set", [](State& kept) { kept.tell("DELETE FROM set_state WHERE key = 'main.source'"); }},
      {"holds an invalid list",
       [](State& kept) { kept.tell("UPDATE set_state SET value = '1:x' WHERE key = 'isp.audio'"); }},
  };
  for (const Row& row : table("| `tv.db` | Message |")) {
    // Permissions mean nothing to a test that runs as root; the test of the database tries them as another user.
    if (row[0] == "may not be read or written by the user") continue;
    std::filesystem::remove_all(state());
    ASSERT_EQ(runOnState({"SetChannel", "3", "0"}).status, 0);
    const auto mishap = mishaps.extract(row[0]);
    ASSERT_FALSE(mishap.empty()) << row[0];
    State kept(state());
    mishap.mapped()(kept);
    std::string message = code(row[1]);
    for (std::size_t at = message.find("/home/me/tv"); at != std::string::npos; at = message.find("/home/me/tv")) {
      message.replace(at, std::string("/home/me/tv").size(), state().string());
    }
    const Ending ended = runOnState({"GetSource"});
    EXPECT_EQ(ended.err, "emp-window: " + message + "\n");
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.status, 2) << row[0];
  }
  EXPECT_TRUE(mishaps.empty()) << mishaps.begin()->first;
}

/// Follows the steps on the page.
TEST_F(ManualOfStates, TellsHowToGoOnWhenAStateCantBeRead) {
  const auto database = state() / "tv.db";
  const auto log = state() / "tv.db-wal";
  ASSERT_EQ(runOnState({"SetSource", "31"}).status, 0);
  ASSERT_FALSE(std::filesystem::exists(log));
  const std::string copy = test::contentOf(database);
  // The source is switched after the copy was made; then the power goes, and the file is lost.
  const std::string end = test::inChild([&]() -> std::string {
    constexpr const char* noSteps[] = {"", "", "", ""};
    Database later(database, noSteps);
    later.execute("UPDATE set_state SET value = '14' WHERE key = 'main.source'", "switch");
    std::_Exit(0);
  });
  ASSERT_EQ(end, "");
  ASSERT_FALSE(test::contentOf(log).empty());
  test::write(database, "");
  const Ending refused = runOnState({"GetSource"});
  ASSERT_EQ(refused.status, 2);
  EXPECT_TRUE(refused.err.ends_with(", and its log " + log.string() + " is there\n")) << refused.err;
  std::filesystem::remove(database);
  std::filesystem::remove(log);
  test::write(database, copy);
  EXPECT_EQ(runOnState({"GetSource"}).out, "int 31\n");
  std::filesystem::remove(database);
  EXPECT_EQ(runOnState({"GetSource"}).out, "int 0\n");
}

}  // namespace
}  // namespace virtualtv::shell
