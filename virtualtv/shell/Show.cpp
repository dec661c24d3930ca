// SPDX-License-Identifier: MIT
#include "shell/Show.h"

#include "text/Units.h"

namespace virtualtv::shell {

namespace {

std::string show(const std::optional<Setting>& setting) {
  return setting ? shell::show(*setting) : "unset";
}

}  // namespace

Lines callLines(const device::Deed& deed) {
  Lines lines;
  for (const seam::Call& call : deed.calls) lines.push_back("call " + seam::line(call));
  return lines;
}

Lines logLines(const device::Deed& deed, int level) {
  Lines lines;
  for (const framework::LogLine& line : deed.log) {
    if (line.level <= level)
      lines.push_back("log " + std::to_string(line.level) + " " + oneLine(line.message.masked()));
  }
  return lines;
}

Lines keyLines(const device::Deed& deed) {
  Lines lines;
  for (const SettingChanged& key : deed.keys) {
    lines.push_back("key " + oneLine(key.key) + " " + show(key.before) + " -> " + show(key.after));
  }
  return lines;
}

std::string show(const Setting& setting) {
  if (const int* number = std::get_if<int>(&setting)) return "int " + std::to_string(*number);
  return "str " + text::quoted(text::toUnits(std::get<std::string>(setting)));
}

}  // namespace virtualtv::shell
