// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "import/Import.h"
#include "import/ListBuilder.h"

namespace virtualtv::import {

/// The result of writing a list.
struct Exported {
  std::string content;
  std::size_t services = 0;                 ///< number of services in the list
  std::size_t leftOut = 0;                  ///< number of services that the format can't hold at all
  std::map<std::string, std::size_t> lost;  ///< data that the format can't hold, with the number of services affected
};

/// Writes a list of services. A service imported from a list of the same format is written as in that list, with later
/// changes applied. Each written service is read again to find out what was lost.
class Exporter {
 public:
  /// @param format  a format that can be written; outlives the exporter.
  explicit Exporter(const Format& format) : format_(format) {}

  /// Adds a service. They come in list order.
  void add(const Service& service);

  /// Returns the list.
  Exported finish();

 private:
  /// One service as a list has it.
  struct Reading {
    std::string text;
    Entry entry;  ///< with views of the texts below
    Service service;
    std::string name;
    std::uint64_t next = 0;  ///< the channel number that the next service gets unless it has its own
  };

  bool read(const Format& format, std::string text, Reading& reading) const;
  void addEntry(const Service& service);
  std::string groupLine(const Service& service);
  void put(const std::string& text);
  void lose(const std::string& what) { ++exported_.lost[what]; }
  void compare(const Service& service, const Service& back);

  const Format& format_;
  Exported exported_;
  std::string group_;      ///< name in the last group line
  std::string readGroup_;  ///< the group name as read back
  std::uint64_t next_ = 1;
};

}  // namespace virtualtv::import
