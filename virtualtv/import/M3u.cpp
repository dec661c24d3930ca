// SPDX-License-Identifier: MIT
// An M3U list has one address per line. A line of attributes before it describes the service. Addresses are stored but
// never opened.

#include "import/M3u.h"

#include <algorithm>
#include <utility>

#include "import/LineReader.h"
#include "import/ListBuilder.h"
#include "import/Words.h"

namespace virtualtv::import {

namespace {

/// A 48-bit hash of a text, by FNV-1a.
std::uint64_t identityOf(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char byte : text) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
  return (hash ^ hash >> 48U) & 0xFFFF'FFFF'FFFFU;
}

/// True when `name` ends at the = at `end`, and is not the end of a longer name.
bool isNameBefore(std::string_view text, std::size_t end, std::string_view name) {
  if (end < name.size() || !sameWord(text.substr(end - name.size(), name.size()), name)) return false;
  const std::size_t start = end - name.size();
  return start == 0 || text[start - 1] == ' ' || text[start - 1] == '\t' || text[start - 1] == '"';
}

bool isControlByte(char byte) {
  return static_cast<unsigned char>(byte) < ' ' || byte == '\x7F';
}

bool isAsciiLetter(char byte) {
  return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

/// True for an address with a scheme, such as `http:`, or a drive letter, followed by more text.
bool hasScheme(std::string_view address) {
  const auto belongs = [](char byte) { return isAsciiLetter(byte) || isDigit(byte) || byte == '+' || byte == '-'; };
  const auto end = std::find_if_not(address.begin(), address.end(), belongs);
  if (!isAsciiLetter(address.front()) || end == address.end() || *end != ':') return false;
  return end + 1 != address.end() && end[1] != ':' && end[1] != ' ';
}

/// True when the address has a directory, or a file with an extension, and no character that is unusual in file names.
bool isPath(std::string_view address) {
  if (address.find_first_of("<>\"|*?{}") != std::string_view::npos) return false;
  const std::size_t dot = address.rfind('.');
  const bool hasEnding = dot != std::string_view::npos && dot + 1 != address.size() && address[dot + 1] != ' ';
  return hasEnding || address.find_first_of("/\\") != std::string_view::npos;
}

/// Requires that a line looks like an address. Otherwise any text file would be full of services.
void requireAddress(std::string_view line) {
  const bool plain = std::none_of(line.begin(), line.end(), isControlByte);
  if (plain && (hasScheme(line) || isPath(line))) return;
  throw Unreadable{quoted(line) + " is no address: it has neither a scheme nor a path"};
}

class M3uReader {
 public:
  M3uReader(ListBuilder& list, Problems& problems) : list_(list), problems_(problems) {}

  void read(std::string_view content) {
    for (LineReader lines(content); lines.next();) readLine(lines.number(), trimmed(lines.line()));
    if (told_ != 0) forget();
  }

 private:
  void readLine(int number, std::string_view line) {
    if (line.starts_with(extInf)) {
      if (told_ != 0) forget();
      told_ = number;
      info_ = readExtInf(line);
    } else if (line.starts_with(extGroup)) {
      group_ = trimmed(line.substr(extGroup.size()));
    }
    const bool isAddress = !line.empty() && !line.starts_with('#');
    const bool tells = told_ != 0 || line.starts_with(extGroup);
    if (isAddress || (tells && !line.empty())) text_.append(text_.empty() ? "" : "\n").append(line);
    if (isAddress) take(number, line);
  }

  /// Takes a line as the address of the service described before it, and ends that description.
  void take(int number, std::string_view line) {
    try {
      requireAddress(line);
      add(number, line);
    } catch (Unreadable& unread) {
      problems_.add(unreadable(number, std::move(unread.reason)));
    }
    start();
  }

  void add(int line, std::string_view address) {
    Entry entry;
    entry.name = info_.title.empty() ? info_.attribute("tvg-name") : info_.title;
    if (entry.name.empty()) entry.name = address;
    const std::string_view id = info_.attribute("tvg-id");
    entry.identity = identityOf(id.empty() ? address : id);
    entry.kind = sameWord(info_.attribute("radio"), "true") ? ServiceKind::radio : ServiceKind::television;
    entry.text = text_;
    const std::string_view group = info_.attribute("group-title");
    list_.startGroup(group.empty() ? group_ : group);
    setNumber(told_ != 0 ? told_ : line);
    list_.add(std::move(entry));
  }

  /// Reports a description of a service whose address is missing.
  void forget() {
    problems_.add(unreadable(told_, "no address follows"));
    start();
  }

  void start() {
    text_.clear();
    info_ = {};
    group_ = {};
    told_ = 0;
  }

  void setNumber(int line) {
    const std::string_view digits = info_.attribute("tvg-chno");
    if (digits.empty()) return;
    try {
      if (list_.continueFrom(number(digits, "tvg-chno", greatestChannelNumber))) return;
      throw Unreadable{"tvg-chno " + quoted(digits) + " is less than " + std::to_string(list_.nextNumber())};
    } catch (const Unreadable& unread) {
      problems_.add(remark(line, unread.reason + "; the service is number " + std::to_string(list_.nextNumber())));
    }
  }

  ListBuilder& list_;
  Problems& problems_;
  std::string text_;  ///< entry of the next service
  int told_ = 0;      ///< number of the line that describes the next service; 0 for none
  ExtInf info_;
  std::string_view group_;  ///< from a line #EXTGRP
};

}  // namespace

std::string_view assignmentOf(std::string_view attributes, std::string_view name) {
  for (std::size_t mark = attributes.find("=\""); mark != std::string_view::npos;) {
    const std::size_t end = attributes.find('"', mark + 2);
    if (isNameBefore(attributes, mark, name)) {
      const std::size_t start = mark - name.size();
      return attributes.substr(start, end == std::string_view::npos ? end : end + 1 - start);
    }
    if (end == std::string_view::npos) break;
    mark = attributes.find("=\"", end + 1);
  }
  return {};
}

std::string_view ExtInf::attribute(std::string_view name) const {
  std::string_view value = assignmentOf(attributes, name);
  cut(value, '"');
  return cut(value, '"');
}

ExtInf readExtInf(std::string_view line) {
  line.remove_prefix(extInf.size());
  bool quotes = false;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] == '"') quotes = !quotes;
    if (line[at] == ',' && !quotes) return {line.substr(0, at), trimmed(line.substr(at + 1))};
  }
  return {line, {}};
}

std::optional<std::size_t> findM3u(std::string_view content) {
  for (LineReader lines(content); lines.next();) {
    if (lines.line().starts_with("#EXTM3U") || lines.line().starts_with(extInf)) return lines.offset();
  }
  return std::nullopt;
}

void readM3u(std::string_view content, ListBuilder& list, Problems& problems) {
  M3uReader(list, problems).read(content);
}

}  // namespace virtualtv::import
