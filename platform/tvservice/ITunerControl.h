// SPDX-License-Identifier: MIT
#pragma once

/// The tuner behind one window. Created by `TVServiceAPI::CreateTunerControl`; owned by the library.
class ITunerControl {
 public:
  virtual ~ITunerControl();

  /// Strength of the signal, 0 to 255. @param tuner  0 here. @return greater than 0 on success.
  virtual int GetSignalStrength(int tuner, unsigned char* strength) = 0;
};
