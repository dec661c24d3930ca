// SPDX-License-Identifier: MIT
#include "virtualtv/import/Lists.h"

#include <gtest/gtest.h>

namespace import_tests {

using virtualtv::Service;
using virtualtv::import::formatNamed;
using virtualtv::import::Result;

std::string VdrLine::text() const {
  return name + ':' + frequency + ':' + parameters + ':' + source + ':' + symbolRate + ':' + video + ':' + audio + ':' +
         teletext + ':' + conditionalAccess + ':' + service + ':' + network + ':' + stream + ':' + radio + '\n';
}

VdrLine terrestrial(const std::string& frequency, const std::string& parameters) {
  return {.frequency = frequency, .parameters = parameters, .source = "T"};
}

VdrLine cable(const std::string& frequency) {
  return {.frequency = frequency, .parameters = "M256", .source = "C", .symbolRate = "6900"};
}

std::string section(const std::string& name, const std::string& more) {
  return '[' + name +
         "]\n\tSERVICE_ID = 544\n\tVIDEO_PID = 512\n\tAUDIO_PID = 650\n\tDELIVERY_SYSTEM = DVBT\n"
         "\tFREQUENCY = 474000000\n\tBANDWIDTH_HZ = 8000000\n\tMODULATION = QAM/64\n" +
         more;
}

std::string satelliteSection(const std::string& name, const std::string& more) {
  return '[' + name +
         "]\n\tSERVICE_ID = 544\n\tVIDEO_PID = 512\n\tAUDIO_PID = 650\n\tDELIVERY_SYSTEM = DVBS\n"
         "\tFREQUENCY = 12187500\n\tPOLARIZATION = HORIZONTAL\n\tSYMBOL_RATE = 27500000\n" +
         more;
}

Result readVdr(const std::string& content, const std::string& encoding) {
  return virtualtv::import::read(content, *formatNamed("vdr"), encoding);
}

Result readDvbv5(const std::string& content, const std::string& encoding) {
  return virtualtv::import::read(content, *formatNamed("dvbv5"), encoding);
}

Result readAs(const char* format, const std::string& content, const std::string& encoding) {
  return virtualtv::import::read(content, *formatNamed(format), encoding);
}

std::string recognised(const std::string& content) {
  const virtualtv::import::Format* format = virtualtv::import::recognise(content);
  return format == nullptr ? std::string() : std::string(format->name);
}

Service only(const Result& result) {
  EXPECT_EQ(problems(result), std::vector<std::string>{});
  EXPECT_EQ(result.services.size(), 1U);
  return result.services.size() == 1 ? result.services.front() : Service();
}

Service vdr(const VdrLine& line) {
  return only(readVdr(line.text()));
}

Service dvbv5(const std::string& content) {
  return only(readDvbv5(content));
}

Service told(Service service) {
  EXPECT_FALSE(service.listEntry.empty());
  service.listEntry.clear();
  return service;
}

std::vector<std::string> problems(const Result& result) {
  std::vector<std::string> lines;
  for (const auto& problem : result.problems.kept()) {
    EXPECT_EQ(problem.at, "line " + std::to_string(problem.line.value_or(0)));
    lines.push_back(std::to_string(problem.line.value_or(0)) + ": " + problem.reason);
  }
  return lines;
}

std::string problemOf(const char* format, const std::string& content) {
  const Result result = readAs(format, content);
  EXPECT_TRUE(result.services.empty());
  EXPECT_EQ(result.problems.count(), 1U);
  return result.problems.count() == 0 ? std::string() : problems(result).front();
}

std::string reason(const VdrLine& line) {
  const Result result = readVdr(line.text());
  EXPECT_TRUE(result.services.empty());
  EXPECT_EQ(result.problems.count(), 1U);
  EXPECT_EQ(result.problems.unread(), 1U);
  return result.problems.count() == 0 ? std::string() : result.problems.kept().front().reason;
}

std::optional<std::uint64_t> number(const Service& service, int field) {
  const auto found = service.numbers.find(field);
  if (found == service.numbers.end()) return std::nullopt;
  return found->second;
}

std::u16string name(const Service& service) {
  const auto found = service.texts.find(TCServiceData::CHANNEL_NAME);
  return found == service.texts.end() ? u"(absent)" : found->second;
}

std::vector<std::uint64_t> column(const Result& result, int field) {
  std::vector<std::uint64_t> values;
  for (const Service& service : result.services) values.push_back(number(service, field).value_or(0));
  return values;
}

}  // namespace import_tests
