// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "import/Import.h"

/// Small lists for the tests of the importers, and views of the results.
namespace import_tests {

/// A line of VDR's channels.conf, valid by default.
struct VdrLine {
  std::string name = "News";
  std::string frequency = "12187";
  std::string parameters = "HC34M2S0";
  std::string source = "S19.2E";
  std::string symbolRate = "27500";
  std::string video = "163=2";
  std::string audio = "104=deu@3";
  std::string teletext = "105";
  std::string conditionalAccess = "0";
  std::string service = "12003";
  std::string network = "1";
  std::string stream = "1089";
  std::string radio = "0";

  std::string text() const;  ///< followed by a line break
};

/// A terrestrial and a cable line of that list.
VdrLine terrestrial(const std::string& frequency, const std::string& parameters = "B8M64");
VdrLine cable(const std::string& frequency);

/// A valid section of a libdvbv5 file, followed by the lines `more`; later values of a key win.
std::string section(const std::string& name, const std::string& more = "");
std::string satelliteSection(const std::string& name, const std::string& more = "");

virtualtv::import::Result readVdr(const std::string& content, const std::string& encoding = "");
virtualtv::import::Result readDvbv5(const std::string& content, const std::string& encoding = "");

virtualtv::import::Result readAs(const char* format, const std::string& content, const std::string& encoding = "");

/// Name of the format that is recognised, "" for none.
std::string recognised(const std::string& content);

/// The only service of a list without problems. Otherwise fails the test and returns an empty service.
virtualtv::Service only(const virtualtv::import::Result& result);
virtualtv::Service vdr(const VdrLine& line);
virtualtv::Service dvbv5(const std::string& content);

/// Removes the service's list entry, which must be there.
virtualtv::Service told(virtualtv::Service service);

/// `LINE: reason` of each problem.
std::vector<std::string> problems(const virtualtv::import::Result& result);

/// The problem of a list without services and with one problem, as in `problems`. Otherwise fails the test and returns
/// the actual result.
std::string problemOf(const char* format, const std::string& content);

/// The reason why a list of this one line has no service. Fails the test when it has one.
std::string reason(const VdrLine& line);

std::optional<std::uint64_t> number(const virtualtv::Service& service, int field);
std::u16string name(const virtualtv::Service& service);

/// One field of every service; 0 if it is absent.
std::vector<std::uint64_t> column(const virtualtv::import::Result& result, int field);

/// A language as the TV service writes it.
constexpr virtualtv::LanguageCode language(const char (&letters)[4]) {
  return letters[0] << 16 | letters[1] << 8 | letters[2];
}

}  // namespace import_tests
