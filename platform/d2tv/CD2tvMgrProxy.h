// SPDX-License-Identifier: MIT
#pragma once

/// One audio track of what the secondary TV stack shows. The codes are the stack's own.
struct MVPDAudio {
  int index;       ///< position among the tracks, from 0
  int pid;         ///< PID of its packets
  int decodeType;  ///< coding
  int audioMode;   ///< channel mode
  int audioType;   ///< intended audience
  int lang;        ///< language code
};

/// One subtitle or teletext page of what the secondary TV stack shows.
struct DVBSubtitleInfo {
  unsigned int index;  ///< position, from 0, through all three kinds
  unsigned int lang;   ///< language code
};

/// The manager of the secondary TV stack, which shows the ISP source. Its operations return 0 for success. Any other
/// number is a failure, in the manager's own numbering; outputs must then not be read.
class CD2tvMgrProxy {
 public:
  /// The process's only manager instance, created on first use.
  /// @param client  name of the calling client.
  /// @return the instance, owned by the library; null when the stack can't be reached.
  static CD2tvMgrProxy* GetInstance(const char* client);

  /// Destroys the instance, if there is one.
  static void DestroyInstance();

  virtual ~CD2tvMgrProxy();

  /// Number of audio tracks.
  virtual int GetTotalNumOfAudio(unsigned int* count) = 0;
  /// The track at `position`, counted from 0.
  virtual int GetMultiAudioInfo(MVPDAudio* audio, unsigned int position) = 0;
  /// The track in use.
  virtual int GetCurrentAudioInfo(int* pid, int* index, unsigned int* lang) = 0;
  /// Selects the track with this PID.
  virtual int ChangeAudioByPID(unsigned int pid) = 0;
  /// Selects the track at this position.
  virtual int ChangeAudioByIndex(unsigned int index) = 0;

  /// Numbers of DVB subtitle tracks, of teletext pages and of teletext subtitle pages.
  virtual int GetTotalNumOfSubtitle(unsigned int* subtitles, unsigned int* teletext,
                                    unsigned int* teletextSubtitles) = 0;
  /// The entry at `position`, counted from 0 through all three kinds, in the order above.
  virtual int GetDVBSubtitleInfo(DVBSubtitleInfo* subtitle, int position) = 0;
  /// Language code of the subtitle in use.
  virtual int GetCurrentSubtitle(int* language) = 0;
  /// Selects the subtitle at this position.
  virtual int ChangeSubtitleLanguage(int index) = 0;

  /// Size in pixels of the picture on screen.
  virtual int GetVideoResolution(unsigned int* width, unsigned int* height) = 0;
};
