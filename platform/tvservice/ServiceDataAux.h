// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TVServiceTypes.h"

/// Audio and subtitle tracks of a service. Created by `TVServiceAPI::ServiceDataAux`; owned by the library. Each
/// operation returns a number greater than 0 on success.
class ServiceDataAux {
 public:
  virtual ~ServiceDataAux();

  /// Number of audio tracks.
  virtual int GetAudioSize(unsigned long long serviceId, unsigned int& size) = 0;
  /// The audio track at this position, counted from 0.
  virtual int GetAudio(unsigned long long serviceId, int index, TSAudio& audio) = 0;
  /// Number of hybrid subtitle tracks.
  virtual int GetHybridSBTSize(unsigned long long serviceId, unsigned int& size) = 0;
  /// The hybrid subtitle track at this position and its language code.
  virtual int GetHybridSBT(unsigned long long serviceId, int index, int& lang, TSHybridSBT& subtitle) = 0;
};
