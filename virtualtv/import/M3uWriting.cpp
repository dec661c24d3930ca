// SPDX-License-Identifier: MIT
// Writes services that came from an M3U list, with changed values updated. Only such services have an address.

#include <algorithm>

#include "import/LineReader.h"
#include "import/M3u.h"
#include "import/Words.h"
#include "import/Writing.h"

namespace virtualtv::import {

namespace {

constexpr std::string_view numberAttribute = "tvg-chno";
constexpr std::string_view groupAttribute = "group-title";
constexpr std::string_view radioAttribute = "radio";

/// Sets one of the attributes, or removes it when the value is empty.
std::string withAttribute(std::string_view attributes, std::string_view name, std::string value) {
  std::replace(value.begin(), value.end(), '"', '\'');
  const std::string assigned = value.empty() ? "" : std::string(name) + "=\"" + value + "\"";
  const std::string_view old = assignmentOf(attributes, name);
  std::string text(attributes);
  if (old.data() == nullptr) return assigned.empty() ? text : text + " " + assigned;
  auto start = static_cast<std::size_t>(old.data() - attributes.data());
  std::size_t length = old.size();
  if (assigned.empty() && start > 0 && text[start - 1] == ' ') {
    --start;
    ++length;
  }
  return text.replace(start, length, assigned);
}

/// True when reading the attribute gives the service its number.
bool givesNumber(std::string_view attribute, const Wanted& wanted) {
  if (!wanted.now.major) return true;
  std::uint64_t given = 0;
  try {
    given = attribute.empty() ? 0 : number(attribute, numberAttribute, greatestChannelNumber);
  } catch (const Unreadable&) {
    given = 0;
  }
  return std::max(given, wanted.next) == *wanted.now.major;
}

std::string infoLine(std::string_view written, const Wanted& wanted) {
  const ExtInf info = readExtInf(written);
  std::string attributes(info.attributes);
  std::string title(info.title);
  if (wanted.now.group != wanted.before->group)
    attributes = withAttribute(attributes, groupAttribute, std::string(wanted.now.group));
  if (kindOf(wanted.now) != kindOf(*wanted.before))
    attributes = withAttribute(attributes, radioAttribute, kindOf(wanted.now) == ServiceKind::radio ? "true" : "");
  if (!givesNumber(info.attribute(numberAttribute), wanted))
    attributes = withAttribute(attributes, numberAttribute, std::to_string(*wanted.now.major));
  if (wanted.now.name != wanted.before->name) title = wanted.now.name;
  if (attributes == info.attributes && title == info.title) return std::string(written);
  return std::string(extInf) + attributes + "," + title;
}

}  // namespace

std::string writeM3u(const Wanted& wanted) {
  if (wanted.before == nullptr) return "";
  std::string text;
  const bool moved = wanted.now.group != wanted.before->group;
  const bool told = wanted.kept.find(extInf) != std::string_view::npos;
  if (const std::string bare = std::string(extInf) + "-1," + std::string(wanted.before->name); !told) {
    const std::string info = infoLine(bare, wanted);
    if (info != bare) text = info;
  }
  for (LineReader lines(wanted.kept); lines.next();) {
    const std::string_view line = lines.line();
    if (moved && line.starts_with(extGroup)) continue;
    if (!text.empty()) text += '\n';
    if (line.starts_with(extInf)) {
      text += infoLine(line, wanted);
    } else {
      text += line;
    }
  }
  return text;
}

}  // namespace virtualtv::import
