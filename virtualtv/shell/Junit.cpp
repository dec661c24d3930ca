// The report of a check for machines.
#include "shell/Check.h"
#include "shell/Lines.h"
#include "text/Units.h"

namespace virtualtv::shell {

namespace {

/// A text as XML takes it; characters that no XML document can hold are replaced.
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

std::string caseOf(const CheckedFile& file, const CheckedStep& step) {
  std::string xml = "    <testcase classname=\"" + escaped(file.name) + "\" name=\"" + std::to_string(step.line) +
                    ": " + escaped(step.input) + "\"";
  if (step.failure.empty()) return xml + "/>\n";
  return xml + ">\n      <failure message=\"not as expected\">" + escaped(step.failure) +
         "</failure>\n    </testcase>\n";
}

std::string suiteOf(const CheckedFile& file) {
  std::size_t failures = 0;
  std::string cases;
  for (const CheckedStep& step : file.steps) {
    cases += caseOf(file, step);
    if (!step.failure.empty()) ++failures;
  }
  const bool broken = !file.error.empty();
  if (broken) {
    cases += "    <testcase classname=\"" + escaped(file.name) + "\" name=\"run\">\n      <error message=\"" +
             escaped(file.error) + "\"/>\n    </testcase>\n";
  }
  return "  <testsuite name=\"" + escaped(file.name) + "\" tests=\"" +
         std::to_string(file.steps.size() + (broken ? 1 : 0)) + "\" failures=\"" + std::to_string(failures) +
         "\" errors=\"" + (broken ? "1" : "0") + "\">\n" + cases + "  </testsuite>\n";
}

}  // namespace

std::string junitReport(const std::vector<CheckedFile>& files) {
  std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
  for (const CheckedFile& file : files) xml += suiteOf(file);
  return xml + "</testsuites>\n";
}

}  // namespace virtualtv::shell
