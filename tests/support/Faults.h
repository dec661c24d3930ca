// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "seam/Seam.h"

namespace support {

/// Replaces the records and favourites in the words of a fault by empty ones. @return the originals, by output.
inline std::map<std::string, std::string> takeRecords(std::vector<std::string>& words) {
  std::map<std::string, std::string> taken;
  for (const auto& [output, none] : {std::pair("service", "{}"), std::pair("services", "[]"), {"favorites", "{}"}}) {
    const std::string start = std::string("out.") + output + "=";
    for (std::string& word : words) {
      if (!word.starts_with(start)) continue;
      taken[output] = word.substr(start.size());
      word = start + none;
    }
  }
  return taken;
}

/// A fault in the words of `.fault`. Its records may contain values that `.fault` refuses because no service can have
/// them: the plug-in must handle any record.
inline virtualtv::seam::Fault oddFault(std::vector<std::string> words) {
  const std::map<std::string, std::string> records = takeRecords(words);
  virtualtv::seam::Fault fault = virtualtv::seam::parseFault(words);
  for (const auto& [name, text] : records) fault.outputs[name] = text;
  return fault;
}

}  // namespace support
