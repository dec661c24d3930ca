// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "seam/Seam.h"

namespace support {

/// Takes the records and favourites out of the words of a fault and leaves empty ones there.
/// @return what was taken, by output.
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

/// A fault in the words of `.fault`, whose records may have what `.fault` refuses since no service of the set has it:
/// the plug-in reads what it is given.
inline virtualtv::seam::Fault oddFault(std::vector<std::string> words) {
  const std::map<std::string, std::string> records = takeRecords(words);
  virtualtv::seam::Fault fault = virtualtv::seam::parseFault(words);
  for (const auto& [name, text] : records) fault.outputs[name] = text;
  return fault;
}

}  // namespace support
