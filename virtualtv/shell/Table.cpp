// SPDX-License-Identifier: MIT
#include "shell/Table.h"

#include <algorithm>
#include <string>

namespace virtualtv::shell {

namespace {

constexpr std::size_t gap = 2;     // blanks before each cell
constexpr std::size_t deeper = 4;  // indent of a cell that is moved below its row

/// The width of a text on a terminal: its number of characters, as an approximation.
std::size_t width(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

std::size_t leadingBlanks(const std::string& text) {
  return std::min(text.find_first_not_of(' '), text.size());
}

/// The widths of all columns but the last. The last cell of a row does not count, since nothing follows it.
std::vector<std::size_t> widthsOf(const std::vector<Lines>& rows) {
  std::vector<std::size_t> widths;
  for (const Lines& row : rows) {
    for (std::size_t at = 0; at + 1 < row.size(); ++at) {
      widths.resize(std::max(widths.size(), at + 1));
      widths[at] = std::max(widths[at], width(row[at]));
    }
  }
  return widths;
}

std::string alignedLine(const Lines& row, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t at = 0; at < row.size(); ++at) {
    line.append(gap, ' ').append(row[at]);
    if (at + 1 < row.size()) line.append(widths[at] - width(row[at]), ' ');
  }
  return line;
}

/// Formats a row with its last column below the others.
Lines stacked(const Lines& row, std::size_t cells, std::size_t columns) {
  const std::size_t indent = gap + leadingBlanks(row.front()) + deeper;
  const bool isWhole = row.size() == cells && cells > 1;
  std::string first;
  for (std::size_t at = 0; at < row.size() - (isWhole ? 1 : 0); ++at) {
    if (!row[at].empty()) first += std::string(gap, ' ') + row[at];
  }
  Lines lines;
  if (!first.empty()) append(lines, wrapped(first, columns, indent));
  if (isWhole) append(lines, wrapped(std::string(indent, ' ') + row.back(), columns, indent));
  return lines;
}

/// The end of the last word that fits into a width, or of the first word when none fits.
std::size_t endOfLastWord(const std::string& text, std::size_t columns) {
  std::size_t end = std::min(text.find(' ', leadingBlanks(text)), text.size());
  for (std::size_t at = end; at < text.size(); ++at) {
    if (text[at] != ' ' || text[at - 1] == ' ') continue;
    if (width(std::string_view(text).substr(0, at)) > columns) break;
    end = at;
  }
  return end;
}

}  // namespace

Lines table(const std::vector<Lines>& rows, std::size_t columns) {
  const std::vector<std::size_t> widths = widthsOf(rows);
  std::size_t lastColumn = gap;
  for (const std::size_t width : widths) lastColumn += width + gap;
  Lines lines;
  for (const Lines& row : rows) {
    if (columns > 0 && (row.size() == 1 || lastColumn > columns / 2)) {
      append(lines, stacked(row, widths.size() + 1, columns));
    } else {
      append(lines, wrapped(alignedLine(row, widths), columns, lastColumn));
    }
  }
  return lines;
}

Lines wrapped(const std::string& line, std::size_t columns, std::size_t indent) {
  Lines parts;
  std::string part = line;
  while (columns > 0 && width(part) > columns) {
    const std::size_t end = endOfLastWord(part, columns);
    const std::size_t next = part.find_first_not_of(' ', end);
    if (next == std::string::npos) break;
    parts.push_back(part.substr(0, end));
    part = std::string(indent, ' ') + part.substr(next);
  }
  parts.push_back(part);
  return parts;
}

Lines remark(const std::string& text, std::size_t columns) {
  const std::string mark = "# ";
  const std::size_t room = columns == 0 ? 0 : columns - std::min(columns - 1, mark.size());
  Lines lines;
  for (const std::string& part : wrapped(text, room, 0)) lines.push_back(mark + part);
  return lines;
}

}  // namespace virtualtv::shell
