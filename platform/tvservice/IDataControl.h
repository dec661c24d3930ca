// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TVServiceTypes.h"

/// The subtitle in use in one window. The plug-in uses the main window's control for both windows. Created by
/// `TVServiceAPI::CreateDataControl`; owned by the library. Each operation returns a number greater than 0 on success.
class IDataControl {
 public:
  virtual ~IDataControl();

  /// The subtitle in use and its language code. Language -1 means that no subtitle is in use.
  virtual int GetCurrentHybridSBT(int& lang, TSHybridSBT& subtitle) = 0;
  /// Selects the subtitle at this position of the service on screen.
  virtual int SelectHybridSBT(int index) = 0;
};
