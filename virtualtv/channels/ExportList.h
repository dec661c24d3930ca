// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "import/Export.h"
#include "services/ServiceStore.h"

namespace virtualtv {

/// A list of the services of a set.
struct ExportReport {
  std::string format;  ///< its name
  import::Exported exported;

  /// One line that counts what was written.
  std::string summary() const;
  /// One line that counts what the format can't hold; empty where nothing is lost.
  std::string losses() const;
  /// `FORMAT can hold none of the services`, or that there are none; empty when services were written.
  std::string error() const;
};

/// Writes all services of a set as a channel list, in list order.
/// @param format  has a writing. @throws StoreError when they can't be read.
ExportReport exportServices(const ServiceStore& services, const import::Format& format);

/// The format that lists are written in where nothing else is said: the one that holds all of a service.
const import::Format& defaultExportFormat();

}  // namespace virtualtv
