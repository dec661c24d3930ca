// SPDX-License-Identifier: MIT
#include "shell/Junit.h"

#include <chrono>

#include "text/Units.h"

namespace virtualtv::shell {

namespace {

/// Escapes a text for XML. Replaces characters that no XML document can hold.
std::string escaped(std::string_view text) {
  std::string xml;
  for (const char byte : text::toUtf8(text::toUnits(text))) {
    switch (byte) {
      case '&':
        xml += "&amp;";
        break;
      case '<':
        xml += "&lt;";
        break;
      case '>':
        xml += "&gt;";
        break;
      case '"':
        xml += "&quot;";
        break;
      case '\n':
        xml += "&#10;";
        break;
      case '\t':
        xml += "&#9;";
        break;
      default:
        xml += static_cast<unsigned char>(byte) < 0x20 ? text::printable({&byte, 1}) : std::string(1, byte);
    }
  }
  for (const char* const outside : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {  // U+FFFE and U+FFFF
    for (std::size_t at = 0; (at = xml.find(outside, at)) != std::string::npos;) xml.replace(at, 3, "?");
  }
  return xml;
}

std::string inSeconds(std::chrono::nanoseconds time) {
  constexpr std::size_t places = 6;
  std::string digits = std::to_string(std::chrono::round<std::chrono::microseconds>(time).count());
  if (digits.size() <= places) digits.insert(0, places + 1 - digits.size(), '0');
  return digits.insert(digits.size() - places, ".");
}

std::string attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + escaped(value) + "\"";
}

/// The totals of one suite or of all.
struct Totals {
  std::size_t tests = 0;
  std::size_t failures = 0;
  std::size_t errors = 0;
  std::chrono::nanoseconds time{};

  std::string attributes() const {
    return attribute("tests", std::to_string(tests)) + attribute("failures", std::to_string(failures)) +
           attribute("errors", std::to_string(errors)) + attribute("time", inSeconds(time));
  }
};

std::string caseOf(const CheckedFile& file, const CheckedStep& step) {
  const std::string line = std::to_string(step.line) + ": ";
  const std::string xml = "    <testcase" + attribute("classname", file.name) + attribute("name", line + step.input) +
                          attribute("time", inSeconds(step.time));
  if (step.failure.empty()) return xml + "/>\n";
  return xml + ">\n      <failure" + attribute("message", file.name + ":" + line + "not as expected") + ">" +
         escaped(step.failure) + "</failure>\n    </testcase>\n";
}

std::string suiteOf(const CheckedFile& file, Totals& all) {
  Totals own{file.steps.size(), 0, 0, file.time};
  std::string cases;
  for (const CheckedStep& step : file.steps) {
    cases += caseOf(file, step);
    if (!step.failure.empty()) ++own.failures;
  }
  if (!file.error.empty()) {
    cases += "    <testcase" + attribute("classname", file.name) + attribute("name", "run") +
             attribute("time", inSeconds(file.time)) + ">\n      <error" + attribute("message", file.error) +
             "/>\n    </testcase>\n";
    ++own.tests;
    ++own.errors;
  }
  all.tests += own.tests;
  all.failures += own.failures;
  all.errors += own.errors;
  all.time += own.time;
  return "  <testsuite" + attribute("name", file.name) + own.attributes() + ">\n" + cases + "  </testsuite>\n";
}

}  // namespace

std::string junitReport(const std::vector<CheckedFile>& files) {
  Totals all;
  std::string suites;
  for (const CheckedFile& file : files) suites += suiteOf(file, all);
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" + all.attributes() + ">\n" + suites +
         "</testsuites>\n";
}

}  // namespace virtualtv::shell
