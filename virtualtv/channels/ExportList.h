// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "import/Export.h"
#include "services/ServiceStore.h"

namespace virtualtv {

/// The result of an export.
struct ExportReport {
  std::string format;  ///< its name
  import::Exported exported;

  /// One line with the numbers of exported services.
  std::string summary() const;
  /// One line with the losses of the format; empty when nothing is lost.
  std::string losses() const;
  /// An error when no service was written: `FORMAT can hold none of the services`, or that there are none. Otherwise
  /// empty.
  std::string error() const;
};

/// Writes all services of a set as a channel list, in list order.
/// @param format  a format that can be written, see `import::isWritten`. @throws StoreError when the services can't be
/// read.
ExportReport exportServices(const ServiceStore& services, const import::Format& format);

/// The default format for exports, which holds all data of a service.
const import::Format& defaultExportFormat();

}  // namespace virtualtv
