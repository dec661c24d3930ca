#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "import/Import.h"
#include "import/ServiceList.h"

namespace virtualtv::import {

/// A list that was written.
struct Exported {
  std::string content;
  std::size_t services = 0;                 ///< in it
  std::size_t leftOut = 0;                  ///< that the format can't hold at all
  std::map<std::string, std::size_t> lost;  ///< what the format can't hold of those, and of how many
};

/// Writes a list of services. A service that a list of the same format has brought is written as it stood there, but
/// for what the set has otherwise by now. Each is read again as it is written, so what is lost is told as it is.
class Exporter {
 public:
  /// @param format  has a writing; outlives the exporter.
  explicit Exporter(const Format& format) : format_(format) {}

  /// Adds a service. They come in list order.
  void add(const Service& service);

  /// Hands the list over.
  Exported finish();

 private:
  /// What a list says of one service.
  struct Reading {
    std::string text;
    Entry entry;  ///< with views of the texts below
    Service service;
    std::string name;
    std::uint64_t next = 0;  ///< number of the service behind it
  };

  bool read(const Format& format, std::string text, Reading& reading) const;
  void addEntry(const Service& service);
  std::string groupLine(const Service& service);
  void put(const std::string& text);
  void lose(const std::string& what) { ++exported_.lost[what]; }
  void compare(const Service& service, const Service& back);

  const Format& format_;
  Exported exported_;
  std::string group_;      ///< that the last group line names
  std::string readGroup_;  ///< as it is read
  std::uint64_t next_ = 1;
};

}  // namespace virtualtv::import
