// SPDX-License-Identifier: MIT
#include "support/LogLines.h"

namespace support {

std::string banner(int level, std::string_view function, std::string_view file) {
  return std::to_string(level) + " \033[2;31;42m !!!!ERROR!!!![" + std::string(file) + "][" + std::string(function) +
         "][*] \033[0m";
}

std::string place(std::string_view function, int level, std::string_view file) {
  return std::to_string(level) + " FILE=[" + std::string(file) + "] FUNCTION=[" + std::string(function) + "] LINE=[*]";
}

std::string caught(std::string_view function, std::string_view call, int level) {
  return std::to_string(level) + " Exception Handled by " + std::string(function) + " fault in " + std::string(call);
}

Lines leveled(int level, const Lines& texts) {
  Lines lines;
  for (const std::string& text : texts) lines.push_back(std::to_string(level) + " " + text);
  return lines;
}

Lines join(std::initializer_list<Lines> parts) {
  Lines lines;
  for (const Lines& part : parts) lines.insert(lines.end(), part.begin(), part.end());
  return lines;
}

Lines commandLogs(const std::string& command, const Lines& parameters, const Lines& inner, int result) {
  std::string shown;
  for (std::size_t at = 0; at < 4; ++at) shown += "[" + (at < parameters.size() ? parameters[at] : "") + "]";
  const std::string begin = "0 [CEmpEngineWindow::Execute][*] [" + command + "]" + shown + ",pid = *";
  const std::string end =
      "0 CEmpEngineWindow::Execute Command[" + command + "] Finish result[" + std::to_string(result) + "].";
  return join({{begin}, inner, {end}});
}

}  // namespace support
