// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <string>
#include <vector>

#include "EmpConverterWindow.h"
#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCServiceData.h"
#include "tvservice/TVServiceTypes.h"

class IAVControl;
class IDataControl;
class IService;
class IServiceNavigation;
class ISourceControl;
class ITunerControl;
class IVideoControl;
class ServiceDataAux;

namespace kel {

class CEmpEngineBase;

/// The worker behind every command. It holds the connections (proxies) to the TV service's interfaces for the main or
/// the picture-in-picture window, and carries out the commands. Unless stated otherwise, an operation creates a missing
/// proxy when it needs it.
///
/// Unless stated otherwise, an operation returns 1 for success, 0 for a failure or a missing proxy, -1 when a record or
/// a value could not be read, and -3 for a null output pointer. On failure it leaves its output unchanged. An exception
/// from the set counts as a failed call. Unless stated otherwise, the operation then fails, even if it continues after
/// an ordinary failure of that call. But a region or country that can't be read merely counts as unknown. Called by the
/// engine, from one thread.
class CEmpTaskWindow {
 public:
  /// A rectangle, in pixels of the space that the operation names.
  struct Rect {
    int x;       ///< left edge
    int y;       ///< upper edge
    int width;   ///< from the left edge to the right
    int height;  ///< from the upper edge downwards
  };

  CEmpTaskWindow();
  CEmpTaskWindow(const CEmpTaskWindow&) = delete;
  CEmpTaskWindow& operator=(const CEmpTaskWindow&) = delete;
  virtual ~CEmpTaskWindow();

  // EmpTaskWindow: life cycle, proxies, window selection

  /// Deletes the found-channel list and releases the secondary stack's manager. The proxies stay. Exceptions of the set
  /// are ignored. Called by the engine when it closes, and again by the destructor, both only when `FlagCreate` is
  /// true.
  virtual void Destroy();
  /// True once `Create` was called with an engine, even if it failed.
  virtual bool FlagCreate();

  /// Connects to the TV service for the main window and seeds the source keys. Called once, by the engine.
  /// @param name    not used.
  /// @param engine  the engine that owns the worker; outlives it.
  /// @return true when every proxy was created and the keys were seeded. If a proxy could not be created, no key is
  /// seeded and no window is selected. Until `SetWindow`, missing proxies are then created for the picture-in-picture
  /// window on first use.
  bool Create(const char* name, CEmpEngineBase* engine);

  /// Selects the window that the worker drives: 0 main, anything else picture-in-picture. Activates its source keys
  /// and, in this order, its navigation, source, video, AV and track-data proxies, then a data control. The data
  /// control is always one of the main window. The tuner and the service database do not change. @return 1, even if the
  /// data control can't be created, which leaves none active; 0 when another proxy can't be created. The selection
  /// stops at that proxy: the new window is selected and the proxies before it are active, but the others are still
  /// those of the previous window. An exception for the data control also gives 0.
  int SetWindow(_PL_WINDOW_WINDOW window);

  // EmpTaskWindow_Source: the window's source

  /// The window's source. For the seeks 6, 8 and 9 it is the number stored as the previous source, unchecked. For any
  /// other seek it is the source that the TV service shows, or 43 when none is active or its state can't be read.
  /// @return 1 or -3; -1 when the source can't be read, 0 when the previous source's key can't be read.
  int GetSource(_PL_WINDOW_Source* peSource, _PL_WINDOW_SEEK eSeek);
  /// The source that the TV service showed before. @return 1, -3 or -1.
  int GetPreviousSource(_PL_WINDOW_Source* peSource);
  /// State of the window's source, -1 when none is active. @return 1, -3 or -1.
  int GetSourceState(int* pnState);

  // EmpTaskWindow_Switch: switching the source

  /// Switches the window to a source and records it in the source keys. If the source is already shown, only corrects
  /// keys that differ. In the picture-in-picture window the source is switched, but recording it fails, so the result
  /// is 0. For the seeks 6, 8 and 9 `eSource` is ignored and the source stored as previous is used. @return 1; 0 on
  /// failure, -1 without a source-control proxy, which is not created here.
  int SetSource(_PL_WINDOW_Source eSource, _PL_WINDOW_SEEK nSeek);
  /// The same without a seek, but also switches to the first channel with a major number. A negative number means no
  /// channel. If the source is already shown, the channel does not change. The navigation proxy is not created here
  /// either.
  int SetSourceAndTune(_PL_WINDOW_Source eSource, int nMajor);
  /// Switches to the source stored as previous. @return 1 or 0.
  int SetPreviousSource();
  /// Leaves the window without a source of the TV service, and records 43. @return true on success.
  bool DisconnectSource();

  // EmpTaskWindow_Screen: where the picture is
  //
  // Applications use the plug-in's space of 960 x 540; the TV service uses the base screen.

  /// Places the picture, in plug-in space. A negative `x` selects the default place, which is the whole screen for the
  /// main window. @return 1 or 0.
  int SetScreenRect(int x, int y, int w, int h);
  /// Where the picture is, in plug-in space, as "x:%d,y:%d,w:%d,h:%d" into a buffer of 40 bytes, truncated if needed.
  /// @return 1, 0 or -3.
  int GetScreenRect(char* pszScreenRect);
  /// The same, with width and height swapped. @return 1; 0 when the TV service fails, in which case `rect` may have
  /// been written; -1 without a video-control proxy, or when the window's source can't be read.
  int GetScreenRect(Rect& rect);
  /// The picture's active part, in base-screen pixels, as text like `GetScreenRect`'s. @return 1, 0 or -3.
  int GetAFDGeometryRectSize(char* pszAFDRect);
  /// Neither is supported. @return 0 with the output unchanged, or -3.
  /// @{
  int GetScreenRect_PosMode(_PL_WINDOW_POSITION_MODE* pePosMode);
  int GetScreenRect_SizeMode(_PL_WINDOW_RECT_SIZE_MODE* peSizeMode);
  /// @}
  /// Not supported. @return -1.
  int SetScreenRect_PosSizeMode(_PL_WINDOW_POSITION_MODE ePosMode, _PL_WINDOW_RECT_SIZE_MODE eSizeMode);
  /// Whether the window shows something: 0 no source, 1 a source, 3 no signal, 4 anything else. A missing source
  /// control is created as by `SetWindow`, which also activates the window's source keys. @return 1; 0 when the source
  /// control can't be created, -1 when the state can't be read, or -3.
  int GetState_Show(_PL_WINDOW_SHOW_STATE* peShowState);

  // EmpTaskWindow_Picture: what is done to the picture

  /// Shows the part `crop` of the source picture in the rectangle `display`; neither is converted. A null rectangle
  /// counts as all zero. @param plane  not used. @return 1; 0 when refused, -1 without a video-control proxy, or when
  /// the window's source can't be read.
  int SetScreenCropRect(Rect* crop, Rect* display, int plane);
  /// The rectangles of the crop from the TV service, not converted. @return as `SetScreenCropRect`.
  int GetScreenCropRect(Rect& crop, Rect& display, int plane);
  /// Raises (1) or, for any other number, lowers the picture's plane. @return 1 or -1.
  int SetScreenZorder(PL_WINDOW_ZORDER eZorder);
  /// Hides (0 and 2) or shows (1 and 3) the picture. @return 1; -1 on failure, and for any other type.
  int Show(_PL_WINDOW_SHOW_TYPE eShowType);
  /// Hides or shows the picture. @return 1 or -1.
  int MuteVideo(bool mute);

  // EmpTaskWindow_Resolution: the picture's resolution

  /// The plug-in's number of the resolution on screen, 20 when it is unknown. @return 1, -1 or -3.
  int GetResolution(_PL_WINDOW_RESOLUTION* peResolution);
  /// Size and frequencies of the picture as a JSON document. On the ISP source these are the size from the secondary
  /// stack, and frequencies of 0. @return 1 or -1; 0 when the secondary stack fails, in which case `strDetail` has only
  /// zeros.
  int GetResolutionDetail(std::string& strDetail);

  // EmpTaskWindow_Channel: looking services up

  /// Rebuilds the found-channel list with the services of a TV mode, from the main window's navigation. That proxy is
  /// not created here. @param type  restricts them to a channel type; 0 for all. @return 1; 0 when there are none or
  /// the TV service fails, in which case any records that it returned are kept; -1 without a navigation proxy, in which
  /// case the list is unchanged.
  int FindChannel(_PL_WINDOW_CHANNEL_TYPE type, _PL_WINDOW_TV_MODE mode);
  /// The window's TV mode, as a `_PL_WINDOW_TV_MODE`. `pnMode` must not be null.
  /// @return the TV service's own positive number, 0 or -1.
  int GetTVMode(int* pnMode);
  /// Puts the window into a TV mode. @return 1; 0 without a navigation proxy, -1 when the TV service refuses.
  int SetTVMode(_PL_WINDOW_TV_MODE mode);

  // EmpTaskWindow_ChannelField: one field of one channel

  /// A field of the channel at a position of the found-channel list. An absent number reads as 65535. A channel type is
  /// mapped to the plug-in's number; it reads as 0 when it is absent or has no such number.
  /// @return 1, -1 when there is no such position, -3.
  /// @{
  int GetChannel_Major(int index, int* pnMajor);
  int GetChannel_Minor(int index, int* pnMinor);
  int GetChannel_OriginNetID(int index, int* pnOriginNetID);
  int GetChannel_ProgramNumber(int index, int* pnProgramNumber);
  int GetChannel_PTC(int index, int* pnPTC);
  int GetChannel_TransportStreamID(int index, int* pnTransportStreamID);
  int GetChannel_Type(int index, _PL_WINDOW_CHANNEL_TYPE* peChannelType);
  /// @}

  /// The channel's name as UTF-16 with a byte-order mark and without a terminator, into a zeroed buffer of at least 512
  /// bytes. It is truncated at the end of the buffer and before the first surrogate, so a name that starts with a
  /// surrogate gives the mark alone. An empty name leaves the buffer unchanged; only `GetChannel_Name` returns -1 for
  /// it.
  /// @{
  int GetChannel_Name(int index, unsigned short* ptwName);
  int GetChannel_ServiceName(int index, unsigned short* ptwServiceName);
  /// @}

  /// The channel's service id as decimal text into 32 bytes, terminated; the number with all bits set when it is
  /// absent. `pszServiceId` must not be null.
  int GetChannel_ServiceId(int index, char* pszServiceId);
  /// Length of the found-channel list. @return 1; 0 for a null pointer.
  int GetChannel_Size(int* pnSize);

  /// The same fields of the channel on screen. @return 1, -1 when the channel can't be read, -3.
  /// @{
  int GetCurrentChannel_Major(int* pnMajor);
  int GetCurrentChannel_Minor(int* pnMinor);
  int GetCurrentChannel_OriginNetID(int* pnOriginNetID);
  int GetCurrentChannel_ProgramNumber(int* pnProgramNumber);
  int GetCurrentChannel_PTC(int* pnPTC);
  int GetCurrentChannel_TransportStreamID(int* pnTransportStreamID);
  int GetCurrentChannel_Type(_PL_WINDOW_CHANNEL_TYPE* peChannelType);
  int GetCurrentChannel_Name(unsigned short* ptwName);
  int GetCurrentChannel_ServiceName(unsigned short* ptwServiceName);
  /// @}

  /// The same for the channel that the set starts with. Absent major and minor numbers read as -1. The service id needs
  /// no lookup: a failure returns 0, and `pszServiceId` must not be null.
  /// @{
  int GetStartChannel_Type(_PL_WINDOW_CHANNEL_TYPE* peChannelType);
  int GetStartChannel_Major(int* pnMajor);
  int GetStartChannel_Minor(int* pnMinor);
  int GetStartChannel_Name(unsigned short* ptwName);
  int GetStartChannel_ServiceId(char* pszServiceId);
  /// @}

  // EmpTaskWindow_Tuning: changing the channel
  //
  // When the window shows the TV source, a tune goes to its navigation. Otherwise the tune switches the source to TV
  // with the service, and updates the source keys. A source that can't be read, for instance because of an exception,
  // counts as another source. A switch that the TV service refuses does not fail the tune, but an exception does. When
  // the channel can't be found nothing is changed.

  /// Tunes to the best service for a major and a minor number.
  int SetChannel(int nMajor, int nMinor);
  /// Tunes to the first service, in service-id order, of a physical channel.
  int SetChannel_PTC(int nPTC);
  /// Tunes one service onward (seek 3) or back (seek 4). @return 1; 0 on failure and for any other seek, -1 when the
  /// current or the next service can't be read.
  int SetChannel_Seek(_PL_WINDOW_SEEK eSeek, _PL_WINDOW_NAVIGATOR_MODE eNavigatorMode);
  /// Tunes to a service without looking it up. Only a missing source-control proxy is created.
  int SetChannelByServiceid(unsigned long long serviceId);
  /// Tunes to the service of a physical channel whose channel type is `major` and whose minor number is `minor`.
  /// @param channelType  logged only.
  int SetChannelDirect(int ptc, int major, int minor, int channelType);

  /// Strength of the signal of the one tuner proxy, 0 to 255. `Create` creates it for the main window, and `SetWindow`
  /// does not change it. @return 1; 0 without a tuner proxy, -1 when the tuner fails, in which case `*strength` may
  /// have been written.
  int GetSignalStrength(unsigned char* strength);

  // EmpTaskWindow_Satellite: tuning by a description

  /// Tunes the window to a satellite service that a JSON object describes. Switches no source, writes no key and
  /// creates no proxy.
  /// @param channelInfo  the object, from its brace on; a missing member counts as 1.
  /// @param type         only 0 is supported.
  /// @return 1; 0 for an invalid description and when no such service can be tuned to; -1 without a satellite manager,
  /// including when its creation throws. An exception while looking up the transponder, or finding or tuning to the
  /// service, gives 0. An unknown transponder is not a failure.
  int SetDVBSIChannelDirectEx(const std::string& channelInfo, int type);

  // EmpTaskWindow_Tuning: finding a channel by its numbers

  /// Id of the first service, in service-id order, with these numbers and this channel type, as decimal text into 32
  /// bytes. A type that maps outside 1 to 9 is ignored. A type that maps to 9 also requires the antenna of the window's
  /// TV mode, if that can be read. `pszServiceId` must not be null.
  /// @return 1, 0 when there is none, -1 without a service proxy.
  int GetChannel_ServiceId(int nMajor, int nMinor, _PL_WINDOW_CHANNEL_TYPE eChannelType, char* pszServiceId);

  // EmpTaskWindow_Report: documents about channels

  /// The channel-information document of the channel on screen, or of the previous channel; empty when it can't be
  /// created. @return 1, also for the empty text; -1 when the channel can't be read.
  /// @{
  int GetCurrentChannelInfo(std::string& strInfo);
  int GetPreviousChannelInfo(std::string& strInfo);
  /// @}
  /// The smaller document of the channel that the set starts with. @return 1 or -1.
  int GetStartChannel_Info(std::string& strInfo);
  /// The text attached to the channel at a position of the found-channel list, unchanged but in UTF-8; empty when there
  /// is none. @return 1, also for the empty text; -1 when there is no such position.
  int GetChannel_OnTVJson(int index, std::string& strJson);
  /// The document of all services of the window's TV mode, from the main window's navigation. That proxy is not created
  /// here. @return 1; 0 when there are none or they can't be read, -1 when the document can't be created.
  int GetFullChannelList(std::string& strChannelInfo);

  // EmpTaskWindow_Favourites: the favourite groups of a service

  /// Adds a service to a favourite group or removes it. @param group  0 to 255, as unsigned 8 bits.
  /// @return 1; 0 without a service proxy, -1 when the TV service refuses.
  int UpdateFavorites(unsigned long long serviceId, bool value, char group);
  /// The document of a service's groups, each under the first digit of its number. If several groups have the same
  /// first digit, the greatest one counts. @return 1; 0 without a service proxy, -1 when the TV service fails.
  int GetFavorites(unsigned long long& serviceId, std::string& strFavorites);

  // EmpTaskWindow_Audio: the audio tracks of what is on screen
  //
  // On the ISP source these operations use the secondary stack, whichever window is selected. Any failure is then 0,
  // but a document is still written. A failure that the stack numbers 1 counts as success.

  /// The document of all tracks. Tracks that can't be read are left out. If the number of tracks can't be read, there
  /// are none. @return 1; 0 when the service on screen can't be read or a proxy is missing, -1 when an exception leaves
  /// no document.
  int GetMultiAudioInfo(std::string& strInfo);
  /// The document of the track in use. @return 1; 0 without a proxy, -1 when something can't be read. The document is
  /// still written then, unless the service on screen can't be read or an exception was the reason.
  int GetCurrentAudioInfo(std::string& strInfo);
  /// Selects the first track with a PID. PIDs beyond 32767 can't be selected. @return 1; 0 on failure, -1 when no track
  /// has the PID.
  int ChangeAudioPID(short pid);
  /// Selects the track at a position. @return true on success.
  bool ChangeAudioByIndex(int index);
  /// Does nothing. @return 0.
  int SetSourceVolume(unsigned char volume);

  // EmpTaskWindow_Subtitle: the subtitles of what is on screen
  //
  // On the ISP source these operations use the secondary stack, whichever window is selected. Listing then writes a
  // document even on failure, and a failure that the stack numbers 1 counts as success. Otherwise the list is that of
  // the selected window. The subtitle in use is that of the data control, which `SetWindow` always creates for the main
  // window. So even in picture-in-picture the subtitle of the main window is read and changed. Only a data control
  // created on first use belongs to the selected window.

  /// The document of all subtitles. @return 1; 0 without a data-control or navigation proxy, -1 on failure.
  int GetSubtitleInfo(std::string& strInfo);
  /// Language code of the subtitle in use. @return 1; 0 without a data-control proxy, -1 on failure, for a null pointer
  /// and when no subtitle is in use. On the ISP source a failure returns the manager's own number and may have written
  /// `*language`, and -1 is a valid language.
  int GetCurrentSubtitle(int* language);
  /// Selects the subtitle at a position. @return 1; -1 on failure, on the ISP source the manager's own number.
  int ChangeSubtitle(int index);

  // EmpTaskWindow_D2TV

  /// True when the platform says that the ISP source is on screen; false when the key can't be read, for instance
  /// because of an exception.
  bool IsSourceISP();

 protected:
  // EmpTaskWindow

  /// Each ensures that there is an active proxy. A missing proxy is created for the selected window, but not stored as
  /// that window's own. @return true when there is a proxy.
  /// @{
  bool t_CheckServiceproxy();
  bool t_CheckServiceNavigationproxy();
  bool t_CheckSourceControlproxy();
  bool t_CheckVideoControlproxy();
  bool t_CheckAVControlproxy();
  bool t_CheckServiceDataAuxproxy();
  bool t_CheckDataControlproxy();
  bool t_CheckTunerControlproxy();
  /// @}

  /// The same for operations that require the proxy: a missing proxy is logged, under the name of the calling
  /// operation.
  /// @{
  bool t_NeedServiceproxy();
  bool t_NeedServiceNavigationproxy();
  bool t_NeedSourceControlproxy();
  bool t_NeedVideoControlproxy();
  bool t_NeedAVControlproxy();
  bool t_NeedServiceDataAuxproxy();
  bool t_NeedDataControlproxy();
  bool t_NeedTunerControlproxy();
  /// @}

  /// The calling application's id, "NoAppId" when it is unknown.
  /// @return false when the engine throws.
  bool t_GetAppId(std::string& appId);

  // EmpTaskWindow_Source

  /// True for 0 to 42.
  bool t_IsTVServiceSource(_PL_WINDOW_Source eSource);
  /// Translates a source. Returns false, with the output unchanged, when there is no counterpart. A plug-in source that
  /// is not in the table becomes the TV source.
  /// @{
  bool t_IsConvertable(ESource eTVSSource, _PL_WINDOW_Source& ePLSource);
  bool t_IsConvertable(_PL_WINDOW_Source ePLSource, ESource& eTVSSource);
  /// @}
  /// The window's source as the TV service shows it; 43 when none is active or its state can't be read.
  bool t_GetCurrentSourceInfo(_PL_WINDOW_Source& eSource);
  /// The previous source, as the TV service remembers it.
  bool t_GetPreviousSourceInfo(_PL_WINDOW_Source& eSource);
  /// Publishes the main window's source to the TV middleware. @param key  the window's source key; only the main
  /// window's is accepted.
  bool t_SetTVMWMainSourcevconf(const char* key, int nPLSource);
  /// Seeds the source keys. The main window's current and previous source become the source that the TV service shows,
  /// and the picture-in-picture window's current source becomes 0. Stops at the first failure. Without an active
  /// source, writes only the main window's current source, as 43. Called at the end of `Create`.
  bool t_InitSourceVconf();
  /// Records a source change of this window: previous source, middleware, current source. Stops at the first failure;
  /// in the picture-in-picture window that is the middleware.
  bool t_UpdateSourceVconf(int nNewSource, int nPreviousSource);

  // EmpTaskWindow_Switch

  /// Switches the window to a source and, if `nMajor` is not negative, to a channel of it; then records the source.
  bool t_SetSource(_PL_WINDOW_Source ePLSource, int nMajor);

  // EmpTaskWindow_D2TV: the ISP source, shown by the secondary TV stack

  /// Requests the stack's manager and logs the outcome. No operation depends on this, since each requests the manager
  /// itself.
  void CreateD2TVManagerInstance();
  /// Releases the stack's manager.
  void DestroyD2TVManagerInstance();
  /// Switches the secondary stack to the ISP source.
  bool SetSource_D2TV();

  // EmpTaskWindow_AudioD2TV

  /// The audio operations on the ISP source. Each returns 1 for success. On failure, reading operations return -1.
  /// Changing operations return -1 without a manager, and otherwise the manager's own number.
  /// @{
  int GetMultiAudioInfo_D2TV(std::string& strInfo);
  int GetCurrentAudioInfo_D2TV(std::string& strInfo);
  int ChangeAudioPID_D2TV(short pid);
  int ChangeAudioByIndex_D2TV(int index);
  /// @}

  // EmpTaskWindow_Resolution

  /// The document of the secondary stack's picture, all 0 when the stack fails. Its frequencies are always 0.
  /// @return 1 or -1.
  int GetResolutionDetail_D2TV(std::string& strDetail);
  /// Translates a resolution; 20 when it has no number in the plug-in.
  static _PL_WINDOW_RESOLUTION t_getPLResolution(EResolution eResolution);

  // EmpTaskWindow_Channel

  /// The record at a position of the found-channel list, which still owns it. @return 1; 0 when there is no such
  /// position.
  int t_GetChannelSeek(int index, TCServiceData** out);
  /// Each fills a record: with the service on screen, the previous service, or the service that the set starts with.
  /// @return 1; 0 on failure, after which the record must not be read.
  /// @{
  int t_GetCurrentChannel(TCServiceData& out);
  int t_GetPreviousChannel(TCServiceData& out);
  int t_GetStartService(TCServiceData& out);
  /// @}

  // EmpTaskWindow_Report

  /// The channel-information document of a record; empty for null and when it can't be made.
  std::string t_GetChannelInfo(TCServiceData* service);
  /// The text attached to a service as UTF-8; empty when there is none.
  std::string t_GetServiceJsonText(const TCServiceData& service);

  CEmpEngineBase* m_pEngine;          ///< the engine passed to `Create`; null before
  int m_baseScrW;                     ///< width of the base screen, pixels
  int m_baseScrH;                     ///< height of the base screen, pixels
  std::string m_SourceVconf;          ///< settings key of the window's current source
  std::string m_PreviousSourceVconf;  ///< settings key of its previous source

  /// The active proxies and those stored for each window. The TV-service library owns them all.
  /// @{
  IServiceNavigation* svc_navi_proxy;
  IServiceNavigation* svc_navi_proxy_main;
  IServiceNavigation* svc_navi_proxy_pip;
  ISourceControl* src_ctrl_proxy;
  ISourceControl* src_ctrl_proxy_main;
  ISourceControl* src_ctrl_proxy_pip;
  IVideoControl* video_ctrl_proxy;
  IVideoControl* video_ctrl_proxy_main;
  IVideoControl* video_ctrl_proxy_pip;
  IAVControl* av_ctrl_proxy;
  IAVControl* av_ctrl_proxy_main;
  IAVControl* av_ctrl_proxy_pip;
  ServiceDataAux* servicedata_aux_proxy;
  ServiceDataAux* servicedata_aux_proxy_main;
  ServiceDataAux* servicedata_aux_proxy_pip;
  IDataControl* svc_datacontrol_proxy;
  IDataControl* svc_datacontrol_proxy_main;
  IDataControl* svc_datacontrol_proxy_pip;
  ITunerControl* tuner_ctrl_proxy;
  IService* svc_proxy;
  /// @}

  std::list<TCServiceData*> m_ChannelList;  ///< the found-channel list; owns its records
  int t_eWindow;  ///< the selected window: 0 main, anything else picture-in-picture; 3 until one is selected

 private:
  std::vector<TCServiceData*> m_ChannelIndex;  ///< the found-channel list by index; created on first use

  struct FieldQuery;

  // EmpTaskWindow
  int t_CreateProxies();
  EProfile t_TellWindow();
  bool t_BindSourceControl(EProfile profile);
  bool t_BindServiceDataAux(EProfile profile);
  bool t_BindDataControl(bool main);
  void t_ClearChannelList();

  // EmpTaskWindow_Source: steps shared by operations; they log under the name of the caller
  bool t_AskCurrentSource(_PL_WINDOW_Source& eSource);
  bool t_ConvertSource(ESource eTVSSource, _PL_WINDOW_Source& eSource);
  bool t_SeedKey(const char* key, int nSource);
  bool t_RecordSource(const std::string& key, int nSource);
  bool t_RecordSources(int nNewSource, int nPreviousSource);
  bool t_ReadPreviousSource(int& nSource);

  // EmpTaskWindow_Switch: shared steps
  bool t_RepairSource(_PL_WINDOW_Source ePLSource, _PL_WINDOW_Source eCurPLSource);
  bool t_SwitchTVService(_PL_WINDOW_Source ePLSource, int nMajor, const std::string& appId);
  bool t_FindMajor(int nMajor, unsigned long long& serviceId);
  bool t_LeaveTVService(_PL_WINDOW_Source ePLSource);
  bool t_DeactivateSource();

  // EmpTaskWindow_Screen: shared steps
  bool t_HasSource();
  int t_SetDefaultSize();
  int t_SetSize(const Rect& rect);

  // EmpTaskWindow_Picture: shared steps
  bool t_CheckCropping();
  int t_ShowPicture(bool shown);

  // EmpTaskWindow_Channel: shared steps
  bool t_GetNavigationCriteria(ENavigationMode navigationMode, TSTvMode mode, TCCriteriaHelper& criteria);
  int t_GetTvMode(TSTvMode& mode);
  int t_FindService(TCCriteriaHelper& criteria, TCServiceData& out);
  bool t_AskStartService(unsigned long long& serviceId, int& source);

  // EmpTaskWindow_Tuning: shared steps
  bool t_NeedTuningproxies();
  int t_TuneToService(unsigned long long serviceId, const std::string& appId, const char* notTv = nullptr);
  int t_AskAppAndTune(unsigned long long serviceId, const char* notTv = nullptr);
  int t_TuneService(unsigned long long serviceId, const std::string& appId);
  int t_TuneToFound(TCCriteriaHelper& criteria);
  int t_SeekService(_PL_WINDOW_SEEK eSeek, TCCriteriaHelper& criteria, TCServiceData& service);

  // EmpTaskWindow_Satellite
  int t_TuneDescribed(const std::string& channelInfo, int type);

  // EmpTaskWindow_Audio: shared steps
  bool t_NeedAudioproxies();
  int t_ListAudio(unsigned long long serviceId, std::string& strInfo);
  int t_TellAudio(std::string& strInfo);
  int t_SelectAudio(unsigned long long serviceId, short pid);

  // EmpTaskWindow_Subtitle: shared steps
  bool t_AskSubtitledService(unsigned long long& serviceId);
  int t_ListSubtitles(unsigned long long serviceId, std::string& strInfo);

  // EmpTaskWindow_ChannelField
  template <typename Value>
  int t_GetChannelNumber(const FieldQuery& query, int index, Value* out);
  template <typename Value>
  int t_GetCurrentChannelNumber(const FieldQuery& query, Value* out);
  template <typename Value>
  int t_GetStartChannelNumber(const FieldQuery& query, Value* out);
  int t_GetCurrentChannelName(unsigned short* out, const char* null, const char* empty);
};

}  // namespace kel
