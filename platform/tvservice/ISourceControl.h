// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tvservice/TVServiceTypes.h"

/// The input of one window. Made by `TVServiceAPI::CreateSourceControl`; owned by the library. Unless an operation
/// says otherwise it answers a number greater than 0 on success.
class ISourceControl {
 public:
  virtual ~ISourceControl();

  /// State of the window's source: -1 when none is active. @return 1 on success, 0 on failure.
  virtual int GetSourceState(int* state) = 0;
  /// The window's source.
  virtual int GetCurrentSourceInfo(ESource& source) = 0;
  /// The source that the window showed before.
  virtual int GetPreviousSourceInfo(ESource& source) = 0;
  /// Switches the window to a source. @param appId  the application that asks.
  virtual int SetSource(ESource source, const std::string& appId) = 0;
  /// Switches the window to a source, with a service on its screen.
  virtual int SetSource(ESource source, unsigned long long serviceId, const std::string& appId) = 0;
  /// Leaves the window without a source of the TV service.
  virtual int DeactivateSource() = 0;
};
