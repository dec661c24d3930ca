#include "shell/Show.h"

#include <algorithm>

#include "text/Units.h"

namespace virtualtv::shell {

namespace {

std::string show(const std::optional<Setting>& setting) {
  return setting ? shell::show(*setting) : "unset";
}

/// Columns that a text takes on a terminal, as far as that can be told without a terminal: its characters.
std::size_t width(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

}  // namespace

Lines callLines(const Deed& deed) {
  Lines lines;
  for (const seam::Call& call : deed.calls) lines.push_back("call " + oneLine(seam::line(call)));
  return lines;
}

Lines logLines(const Deed& deed, int level) {
  Lines lines;
  for (const framework::LogLine& line : deed.log) {
    if (line.level <= level) lines.push_back("log " + std::to_string(line.level) + " " + oneLine(line.masked));
  }
  return lines;
}

Lines keyLines(const Deed& deed) {
  Lines lines;
  for (const KeyChange& key : deed.keys) {
    lines.push_back("key " + oneLine(key.key) + " " + show(key.before) + " -> " + show(key.after));
  }
  return lines;
}

std::string show(const Setting& setting) {
  if (const int* number = std::get_if<int>(&setting)) return "int " + std::to_string(*number);
  return "str " + text::quoted(text::toUnits(std::get<std::string>(setting)));
}

Lines table(const std::vector<Lines>& rows) {
  std::vector<std::size_t> widths;
  for (const Lines& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t at = 0; at < row.size(); ++at) widths[at] = std::max(widths[at], width(row[at]));
  }
  Lines lines;
  for (const Lines& row : rows) {
    std::string line;
    for (std::size_t at = 0; at < row.size(); ++at) {
      line += "  " + row[at];
      if (at + 1 < row.size()) line.append(widths[at] - width(row[at]), ' ');
    }
    lines.push_back(line);
  }
  return lines;
}

}  // namespace virtualtv::shell
