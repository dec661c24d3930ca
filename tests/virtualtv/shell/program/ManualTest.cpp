// What the set's manual shows in tables, each row tried on the program.
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "virtualtv/shell/program/Program.h"

namespace virtualtv::shell {
namespace {

using Row = std::vector<std::string>;

/// The cells of a table's line.
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

/// A cell that is nothing but code, without its marks; empty for other cells.
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
  EXPECT_EQ(tried, 7);
}

}  // namespace
}  // namespace virtualtv::shell
