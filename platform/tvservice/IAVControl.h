// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TVServiceTypes.h"

/// Picture muting, the picture's resolution and the audio track of one window. Created by
/// `TVServiceAPI::CreateAVControl`; owned by the library.
class IAVControl {
 public:
  virtual ~IAVControl();

  /// Hides (1) or shows (0) the picture. @return 1 on success, 0 on failure.
  virtual int MuteVideo(int mute) = 0;
  /// Code and numbers of the resolution on screen. @return 0 on success.
  virtual int GetResolution(EResolution& code, TSResolution& resolution) = 0;
  /// Language code and position of the audio track in use. @return greater than 0 on success.
  virtual int GetCurrentAudioInfo(int* lang, int* index) = 0;
  /// Selects the audio track at this position. @return greater than 0 on success.
  virtual int SetCurrentAudioByIndex(int index) = 0;
};
