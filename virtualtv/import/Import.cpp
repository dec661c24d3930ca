// SPDX-License-Identifier: MIT
// The formats of channel lists. To add one, write its reader in a separate source, add its row to the table, and
// describe it in docs/imports.md.
#include "import/Import.h"

#include <algorithm>
#include <array>
#include <utility>

#include "import/Dvbv5.h"
#include "import/JsonList.h"
#include "import/Lamedb.h"
#include "import/ListBuilder.h"
#include "import/M3u.h"
#include "import/Vdr.h"
#include "import/Writing.h"
#include "import/Zap.h"

namespace virtualtv::import {

namespace {

constexpr Writing vdrWriting{"", "\n", "", writeVdr, nullptr, true};
constexpr Writing dvbv5Writing{"", "\n\n", "", writeDvbv5};
constexpr Writing m3uWriting{"#EXTM3U\n", "\n", "", writeM3u};
constexpr Writing jsonWriting{"{\"services\": [\n", ",\n", "]}\n", nullptr, writeJson};

/// If a line is typical of two formats, the upper row wins.
constexpr std::array table{
    Format{"vdr", "VDR's channels.conf", u'|', findVdr, readVdr, &vdrWriting},
    Format{"dvbv5", "libdvbv5", u':', findDvbv5, readDvbv5, &dvbv5Writing},
    Format{"zap", "zap file", u':', findZap, readZap},
    Format{"lamedb", "Enigma2's lamedb", u':', findLamedb, readLamedb},
    Format{"m3u", "M3U", u':', findM3u, readM3u, &m3uWriting},
    Format{"json", "JSON", u':', findJson, readJson, &jsonWriting},
};

Problem problemOf(int line, std::string reason, bool remark) {
  return {line, "line " + std::to_string(line), std::move(reason), remark};
}

}  // namespace

Problem unreadable(int line, std::string reason) {
  return problemOf(line, std::move(reason), false);
}

Problem remark(int line, std::string reason) {
  return problemOf(line, std::move(reason), true);
}

void Problems::add(Problem problem) {
  ++count_;
  if (!problem.remark) ++unread_;
  if (kept_.size() < mostKept) kept_.push_back(std::move(problem));
}

std::span<const Format> formats() {
  return table;
}

const Format* formatNamed(std::string_view name) {
  const auto found = std::find_if(table.begin(), table.end(), [&](const Format& known) { return known.name == name; });
  return found == table.end() ? nullptr : &*found;
}

const Format* recognise(std::string_view content) {
  const Format* recognised = nullptr;
  for (const Format& format : table) {
    const std::optional<std::size_t> place = format.recognise(content);
    if (!place) continue;
    content = content.substr(0, *place);  // from now on only earlier lines count
    recognised = &format;
  }
  return recognised;
}

Result read(std::string_view content, const Format& format, const std::string& encoding) {
  ListBuilder list(format, encoding);
  Problems problems;
  format.read(content, list, problems);
  return {list.finish(), std::move(problems)};
}

}  // namespace virtualtv::import
