// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tvservice/TVServiceTypes.h"

/// The input of one window. Created by `TVServiceAPI::CreateSourceControl`; owned by the library. Unless stated
/// otherwise, an operation returns a number greater than 0 on success.
class ISourceControl {
 public:
  virtual ~ISourceControl();

  /// State of the window's source: -1 when none is active. @return 1 on success, 0 on failure.
  virtual int GetSourceState(int* state) = 0;
  /// The window's source.
  virtual int GetCurrentSourceInfo(ESource& source) = 0;
  /// The previous source of the window.
  virtual int GetPreviousSourceInfo(ESource& source) = 0;
  /// Switches the window to a source. @param appId  the calling application.
  virtual int SetSource(ESource source, const std::string& appId) = 0;
  /// Switches the window to a source, and shows a service on it.
  virtual int SetSource(ESource source, unsigned long long serviceId, const std::string& appId) = 0;
  /// Leaves the window without a source of the TV service.
  virtual int DeactivateSource() = 0;
};
