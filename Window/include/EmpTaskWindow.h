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
struct Location;

/// The worker behind every command. It holds the connections (proxies) to the TV service's interfaces for the main or
/// the picture-in-picture window and carries the commands out. Unless an operation says otherwise it makes a proxy that
/// is missing when it needs it.
///
/// Unless an operation says otherwise it answers 1 for success, 0 for a failure or a missing proxy, -1 when a record or
/// a value could not be had and -3 for a null output pointer, and leaves its output as it was when it fails. An
/// exception from the set counts as a failed call. The operation then fails, too, even where it carries on after an
/// ordinary failure of that call, unless it says otherwise; but a region or country that can't be read is merely not
/// known. Called by the engine, from one thread.
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

  /// Deletes the found-channel list and drops the secondary stack's manager; the proxies stay. An exception of the set
  /// does not matter. Called by the engine when it closes, and again by the destructor; both once `FlagCreate` is true.
  virtual void Destroy();
  /// True once `Create` was given an engine, also when it failed.
  virtual bool FlagCreate();

  /// Connects to the TV service for the main window and seeds the source keys. Called once, by the engine.
  /// @param name    not used.
  /// @param engine  the engine that owns the worker; outlives it.
  /// @return true when every proxy was made and the keys were seeded. Where a proxy could not be made no key is seeded
  ///         and no window is selected: what is missing is then made for the picture-in-picture window when it is first
  ///         needed, until `SetWindow`.
  bool Create(const char* name, CEmpEngineBase* engine);

  /// Selects the window that the worker drives: 0 main, anything else picture-in-picture. Its navigation, source,
  /// video, AV and track-data proxies become the active ones, in this order, and its source keys; then a data control,
  /// which is one of the main window's in both. The tuner and the service database stay as they are.
  /// @return 1, also when the data control can't be made, which leaves none active; 0 when another proxy can't be made.
  ///         The selection ends there: the new window is driven and the proxies before that one are active, but the
  ///         others are still those of the window before. An exception over the data control is 0 as well.
  int SetWindow(_PL_WINDOW_WINDOW window);

  // EmpTaskWindow_Source: the window's source

  /// The window's source: for the seeks 6, 8 and 9 the number stored as its previous source, as it stands; for any
  /// other the source that the TV service shows, 43 when none is active or the service does not tell its state.
  /// @return 1, -3, -1 when the source can't be read, 0 when the previous source's key can't.
  int GetSource(_PL_WINDOW_Source* peSource, _PL_WINDOW_SEEK eSeek);
  /// The source that the TV service showed before. @return 1, -3 or -1.
  int GetPreviousSource(_PL_WINDOW_Source* peSource);
  /// State of the window's source, -1 when none is active. @return 1, -3 or -1.
  int GetSourceState(int* pnState);

  /// Switches the window to a source and records it in the source keys; where the source is shown already only keys
  /// that say otherwise are put right. In the picture-in-picture window recording fails after the switch. For the seeks
  /// 6, 8 and 9 the source is the one stored as previous, whatever `eSource` says.
  /// @return 1; 0 on failure, -1 without a source-control proxy, which is not made here.
  int SetSource(_PL_WINDOW_Source eSource, _PL_WINDOW_SEEK nSeek);
  /// The same without a seek, and to the first channel with a major number; a negative one means no channel. Where the
  /// source is shown already the channel stays. The navigation proxy is not made here either.
  int SetSourceAndTune(_PL_WINDOW_Source eSource, int nMajor);
  /// Switches to the source stored as previous. @return 1 or 0.
  int SetPreviousSource();
  /// Leaves the window without a source of the TV service, and records 43. @return true on success.
  bool DisconnectSource();

  // EmpTaskWindow_Screen: where the picture stands
  //
  // Applications use the plug-in's space of 960 x 540; the TV service uses the base screen.

  /// Places the picture, in plug-in space; a negative `x` gives it its default place, which is the whole screen in the
  /// main window. @return 1 or 0.
  int SetScreenRect(int x, int y, int w, int h);
  /// Where the picture is, in plug-in space, as "x:%d,y:%d,w:%d,h:%d" into 40 bytes, cut where they end.
  /// @return 1, 0 or -3.
  int GetScreenRect(char* pszScreenRect);
  /// The same, with width and height in each other's place. @return 1; 0 when the TV service can't tell, `rect` may be
  /// written then, too; -1 without a video-control proxy, or when the window's source can't be read.
  int GetScreenRect(Rect& rect);
  /// The picture's active part, in base-screen pixels, as text like `GetScreenRect`'s. @return 1, 0 or -3.
  int GetAFDGeometryRectSize(char* pszAFDRect);
  /// Neither has a value to tell. @return 0, the output left as it is, or -3.
  /// @{
  int GetScreenRect_PosMode(_PL_WINDOW_POSITION_MODE* pePosMode);
  int GetScreenRect_SizeMode(_PL_WINDOW_RECT_SIZE_MODE* peSizeMode);
  /// @}
  /// Not supported. @return -1.
  int SetScreenRect_PosSizeMode(_PL_WINDOW_POSITION_MODE ePosMode, _PL_WINDOW_RECT_SIZE_MODE eSizeMode);
  /// Whether the window shows something: 0 no source, 1 a source, 3 no signal, 4 anything else. A source control that
  /// is missing is made as `SetWindow` does, together with the source keys.
  /// @return 1; 0 when the source control can't be made, -1 when the state can't be read, -3.
  int GetState_Show(_PL_WINDOW_SHOW_STATE* peShowState);

  // EmpTaskWindow_Picture: what is done to the picture

  /// Shows the part `crop` of the source picture in the rectangle `display`; neither is converted. A null rectangle
  /// counts as all zero. @param plane  not used. @return 1; 0 when refused, -1 without a video-control proxy, or when
  /// the window's source can't be read.
  int SetScreenCropRect(Rect* crop, Rect* display, int plane);
  /// The rectangles of the crop that the TV service tells, not converted. @return as `SetScreenCropRect`.
  int GetScreenCropRect(Rect& crop, Rect& display, int plane);
  /// Raises (1) or, for any other number, lowers the picture's plane. @return 1 or -1.
  int SetScreenZorder(PL_WINDOW_ZORDER eZorder);
  /// Hides (0 and 2) or shows (1 and 3) the picture. @return 1; -1 for any other type, too.
  int Show(_PL_WINDOW_SHOW_TYPE eShowType);
  /// Hides or shows the picture. @return 1 or -1.
  int MuteVideo(bool mute);

  // EmpTaskWindow_Resolution: the picture's resolution

  /// The resolution on screen as the plug-in numbers it, 20 when it is unknown. @return 1, -1 or -3.
  int GetResolution(_PL_WINDOW_RESOLUTION* peResolution);
  /// Size and frequencies of the picture as a JSON document; on the ISP source the size that the secondary stack tells,
  /// and frequencies of 0.
  /// @return 1; 0 when the secondary stack can't tell, `strDetail` then says 0 throughout; -1.
  int GetResolutionDetail(std::string& strDetail);

  // EmpTaskWindow_Channel: looking services up

  /// Rebuilds the found-channel list with the services of a TV mode, as the main window's navigation tells them. That
  /// proxy is not made here.
  /// @param type  limits them to a channel type; 0 for all.
  /// @return 1; 0 when there are none or the TV service fails, records that it handed over all the same are kept; -1
  ///         without a navigation proxy, the list is then as it was.
  int FindChannel(_PL_WINDOW_CHANNEL_TYPE type, _PL_WINDOW_TV_MODE mode);
  /// The window's TV mode, as a `_PL_WINDOW_TV_MODE`. `pnMode` is not checked.
  /// @return the TV service's own positive number, 0 or -1.
  int GetTVMode(int* pnMode);
  /// Puts the window into a TV mode. @return 1; 0 without a navigation proxy, -1 when the TV service refuses.
  int SetTVMode(_PL_WINDOW_TV_MODE mode);

  // EmpTaskWindow_ChannelField: one field of one channel

  /// A field of the channel at a position of the found-channel list. A number that the record lacks reads as 65535. A
  /// channel type is mapped to the plug-in's; one that is missing or has no number there reads as 0.
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
  /// bytes. It is cut where these end and before the first surrogate, so that a name that begins with one comes to the
  /// mark alone. An empty name leaves the buffer as it is; `GetChannel_Name` alone answers -1 for it.
  /// @{
  int GetChannel_Name(int index, unsigned short* ptwName);
  int GetChannel_ServiceName(int index, unsigned short* ptwServiceName);
  /// @}

  /// The channel's service id as decimal text into 32 bytes, terminated; all bits set when the record lacks it.
  /// `pszServiceId` is not checked.
  int GetChannel_ServiceId(int index, char* pszServiceId);
  /// Length of the found-channel list. @return 1; 0 for a null pointer.
  int GetChannel_Size(int* pnSize);

  /// The same fields of the channel on screen. @return 1, -1 when it can't be had, -3.
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

  /// The same of the channel that the set starts with. Its major and minor numbers read as -1 when missing. The service
  /// id comes without a lookup; its pointer is not checked, and a failure answers 0.
  /// @{
  int GetStartChannel_Type(_PL_WINDOW_CHANNEL_TYPE* peChannelType);
  int GetStartChannel_Major(int* pnMajor);
  int GetStartChannel_Minor(int* pnMinor);
  int GetStartChannel_Name(unsigned short* ptwName);
  int GetStartChannel_ServiceId(char* pszServiceId);
  /// @}

  // EmpTaskWindow_Tuning: changing the channel
  //
  // A tune goes to the window's navigation when the window shows the TV source; otherwise it switches the source to TV
  // with the service, and brings the source keys up to date. A source that can't be read, also because of an exception,
  // counts as another one. A switch that the TV service refuses does not fail the tune; one that ends in an exception
  // does. Nothing is changed when the channel can't be found.

  /// Tunes to the best service for a major and a minor number.
  int SetChannel(int nMajor, int nMinor);
  /// Tunes to the first service, in service-id order, of a physical channel.
  int SetChannel_PTC(int nPTC);
  /// Tunes one service onward (seek 3) or back (seek 4). @return 1; 0 on failure and for any other seek, -1 when the
  /// current or the next service can't be had.
  int SetChannel_Seek(_PL_WINDOW_SEEK eSeek, _PL_WINDOW_NAVIGATOR_MODE eNavigatorMode);
  /// Tunes to a service as given, without looking it up. Only the source-control proxy is made when it is missing.
  int SetChannelByServiceid(unsigned long long serviceId);
  /// Tunes to the service of a physical channel whose channel type is `major` and whose minor number is `minor`.
  /// @param channelType  logged only.
  int SetChannelDirect(int ptc, int major, int minor, int channelType);

  /// Strength of the signal of the one tuner proxy, 0 to 255. `Create` makes it for the main window, and `SetWindow`
  /// does not change it. @return 1; 0 without a tuner proxy, -1 when the tuner can't tell, `*strength` may be written
  /// then.
  int GetSignalStrength(unsigned char* strength);

  // EmpTaskWindow_Satellite: tuning by a description

  /// Tunes the window to a satellite service that a JSON object describes. No source is switched, no key written and no
  /// proxy made.
  /// @param channelInfo  the object, from its brace on; a missing member counts as 1.
  /// @param type         only 0 is supported.
  /// @return 1; 0 for a bad description and when no such service can be tuned to; -1 without a satellite manager, also
  ///         because the call that makes it ended in an exception. An exception while the transponder is looked up, the
  ///         service found or tuned to is 0; a transponder that is merely not known does not matter.
  int SetDVBSIChannelDirectEx(const std::string& channelInfo, int type);

  // EmpTaskWindow_Tuning: finding a channel by its numbers

  /// Id of the first service, in service-id order, with these numbers and of this channel type, as decimal text into
  /// 32 bytes. A type that maps outside 1 to 9 is no condition; one that maps to 9 also asks for the antenna of the
  /// window's TV mode, where that can be told. `pszServiceId` is not checked.
  /// @return 1, 0 when there is none, -1 without a service proxy.
  int GetChannel_ServiceId(int nMajor, int nMinor, _PL_WINDOW_CHANNEL_TYPE eChannelType, char* pszServiceId);

  // EmpTaskWindow_Report: documents about channels

  /// The channel-information document of the channel on screen, or of the one watched before; the empty text when it
  /// can't be made. @return 1, also for the empty text; -1 when the channel can't be had.
  /// @{
  int GetCurrentChannelInfo(std::string& strInfo);
  int GetPreviousChannelInfo(std::string& strInfo);
  /// @}
  /// The smaller document of the channel that the set starts with. @return 1 or -1.
  int GetStartChannel_Info(std::string& strInfo);
  /// The text attached to the channel at a position of the found-channel list, as it stands but in UTF-8; empty when
  /// there is none. @return 1, also for the empty text; -1 when there is no such position.
  int GetChannel_OnTVJson(int index, std::string& strJson);
  /// The document of all services of the window's TV mode, as the main window's navigation tells them. That proxy is
  /// not made here. @return 1; 0 when they can't be had or there are none, -1 when the document can't be made.
  int GetFullChannelList(std::string& strChannelInfo);

  // EmpTaskWindow_Favourites: the favourite groups of a service

  /// Puts a service into a favourite group or takes it out. @param group  0 to 255, as unsigned 8 bits.
  /// @return 1; 0 without a service proxy, -1 when the TV service refuses.
  int UpdateFavorites(unsigned long long serviceId, bool value, char group);
  /// The document of a service's groups, each under the first digit of its number; of several with that digit the
  /// greatest counts. @return 1; 0 without a service proxy, -1 when the TV service can't tell.
  int GetFavorites(unsigned long long& serviceId, std::string& strFavorites);

  // EmpTaskWindow_Audio: the audio tracks of what is on screen
  //
  // On the ISP source the secondary stack is asked, whichever window is driven, and any failure is 0; what is to be
  // told is a document all the same. A failure that the stack numbers 1 counts as success.

  /// The document of all tracks; those that can't be read are left out, and a number of tracks that can't be told is 0.
  /// @return 1; 0 without the service on screen or a proxy, -1 when an exception leaves no document.
  int GetMultiAudioInfo(std::string& strInfo);
  /// The document of the track in use. @return 1; 0 without a proxy, -1 when something can't be told: the document is
  /// then written all the same, unless it is the service on screen that can't, or an exception was the reason.
  int GetCurrentAudioInfo(std::string& strInfo);
  /// Selects the first track with a PID; one beyond 32767 can't be asked for. @return 1; 0 on failure, -1 when no track
  /// has it.
  int ChangeAudioPID(short pid);
  /// Selects the track at a position. @return true on success.
  bool ChangeAudioByIndex(int index);
  /// Does nothing. @return 0.
  int SetSourceVolume(unsigned char volume);

  // EmpTaskWindow_Subtitle: the subtitles of what is on screen
  //
  // On the ISP source the secondary stack is asked, whichever window is driven; its list leaves a document also when it
  // fails, and a failure that it numbers 1 reads as success. Otherwise the list is that of the window driven. The
  // subtitle in use is that of the data control, which `SetWindow` makes for the main window in either case: in
  // picture-in-picture, too, it is the main window's subtitle that is told and changed. Only a data control that is
  // made on first use is that of the window driven.

  /// The document of all subtitles. @return 1; 0 without a data-control or navigation proxy, -1 on failure.
  int GetSubtitleInfo(std::string& strInfo);
  /// Language code of the subtitle in use. @return 1; 0 without a data-control proxy, -1 on failure, for a null pointer
  /// and when no subtitle is in use. On the ISP source the manager's own number on failure, `*language` may be written
  /// then, and -1 is a language.
  int GetCurrentSubtitle(int* language);
  /// Selects the subtitle at a position. @return 1; -1 on failure, on the ISP source the manager's own number.
  int ChangeSubtitle(int index);

  // EmpTaskWindow_D2TV

  /// True when the platform says that the ISP source is on screen; false when it can't be asked, also because of an
  /// exception.
  bool IsSourceISP();

 protected:
  // EmpTaskWindow

  /// Each makes sure that there is an active proxy: one that is missing is made for the window that the worker drives,
  /// and not kept as that window's own. @return true when there is one.
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

  /// The same for operations that can't do without the proxy: one that is missing is logged, under the name of the
  /// operation that needs it.
  /// @{
  bool t_NeedServiceproxy(Location at);
  bool t_NeedServiceNavigationproxy(Location at);
  bool t_NeedSourceControlproxy(Location at);
  bool t_NeedVideoControlproxy(Location at);
  bool t_NeedAVControlproxy(Location at);
  bool t_NeedServiceDataAuxproxy(Location at);
  bool t_NeedDataControlproxy(Location at);
  bool t_NeedTunerControlproxy(Location at);
  /// @}

  /// The calling application's id, "NoAppId" when it is unknown. @param at  the operation that asks.
  /// @return false when the engine throws.
  bool t_GetAppId(Location at, std::string& appId);

  // EmpTaskWindow_Source

  /// True for 0 to 42.
  bool t_IsTVServiceSource(_PL_WINDOW_Source eSource);
  /// Translates a source; false, and the output as it was, when it has no counterpart. A plug-in's source that the
  /// table does not know becomes the TV source.
  /// @{
  bool t_IsConvertable(ESource eTVSSource, _PL_WINDOW_Source& ePLSource);
  bool t_IsConvertable(_PL_WINDOW_Source ePLSource, ESource& eTVSSource);
  /// @}
  /// The window's source as the TV service shows it; 43 when none is active or the service does not tell its state.
  bool t_GetCurrentSourceInfo(_PL_WINDOW_Source& eSource);
  /// The one before, as the TV service remembers it.
  bool t_GetPreviousSourceInfo(_PL_WINDOW_Source& eSource);
  /// Publishes the main window's source to the TV middleware. @param key  the window's source key; only the main
  /// window's is accepted.
  bool t_SetTVMWMainSourcevconf(const char* key, int nPLSource);
  /// Makes the main window's source keys, the previous one too, the source that the TV service shows, and the
  /// picture-in-picture window's current one 0. Ends at the first failure; without an active source only the current
  /// one is written, as 43. Called at the end of `Create`.
  bool t_InitSourceVconf();
  /// Records a source change of this window: previous source, middleware, current source. Ends at the first failure,
  /// which in the picture-in-picture window is the middleware.
  bool t_UpdateSourceVconf(int nNewSource, int nPreviousSource);

  /// Switches the window to a source, and to a channel of it where `nMajor` is not negative; then records it.
  bool t_SetSource(_PL_WINDOW_Source ePLSource, int nMajor);

  // EmpTaskWindow_D2TV: the ISP source, shown by the secondary TV stack

  /// Asks for the stack's manager and logs the outcome. No operation needs it: each asks for itself.
  void CreateD2TVManagerInstance();
  /// Drops the stack's manager.
  void DestroyD2TVManagerInstance();
  /// Switches the secondary stack to the ISP source.
  bool SetSource_D2TV();

  // EmpTaskWindow_AudioD2TV

  /// The audio operations on the ISP source. Each answers 1 for success; what tells of tracks answers -1 otherwise,
  /// what changes them -1 without a manager and else the manager's own number.
  /// @{
  int GetMultiAudioInfo_D2TV(std::string& strInfo);
  int GetCurrentAudioInfo_D2TV(std::string& strInfo);
  int ChangeAudioPID_D2TV(short pid);
  int ChangeAudioByIndex_D2TV(int index);
  /// @}

  // EmpTaskWindow_Resolution

  /// The document of the secondary stack's picture, all 0 when the stack can't tell; its frequencies are always 0.
  /// @return 1 or -1.
  int GetResolutionDetail_D2TV(std::string& strDetail);
  /// Translates a resolution; 20 for one that has no number here.
  static _PL_WINDOW_RESOLUTION t_getPLResolution(EResolution eResolution);

  // EmpTaskWindow_Channel

  /// The record at a position of the found-channel list, which keeps it. @return 1; 0 when there is no such position.
  int t_GetChannelSeek(int index, TCServiceData** out);
  /// Each fills a record with the service on screen, the one watched before, the one that the set starts with.
  /// @return 1; 0 on failure, the record is then not to be read.
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

  CEmpEngineBase* m_pEngine;          ///< the one that `Create` was given; null before
  int m_baseScrW;                     ///< width of the base screen, pixels
  int m_baseScrH;                     ///< and its height
  std::string m_SourceVconf;          ///< settings key of the window's current source
  std::string m_PreviousSourceVconf;  ///< and of its previous one

  /// The proxies in use and those kept for each window. The TV-service library owns them all.
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
  int t_eWindow;  ///< the window driven: 0 main, anything else picture-in-picture; 3 until one is selected

 private:
  std::vector<TCServiceData*> m_ChannelIndex;  ///< the found-channel list by index; made when one is asked for

  struct FieldQuery;

  // EmpTaskWindow
  int t_CreateProxies();
  EProfile t_TellWindow(Location at);
  bool t_BindSourceControl(Location at, EProfile profile);
  bool t_BindServiceDataAux(EProfile profile);
  bool t_BindDataControl(bool main);
  void t_ClearChannelList();

  // EmpTaskWindow_Source: steps that operations share, under the name of the one that takes them
  bool t_AskCurrentSource(Location at, _PL_WINDOW_Source& eSource);
  bool t_ConvertSource(Location at, ESource eTVSSource, _PL_WINDOW_Source& eSource);
  bool t_SeedKey(Location at, const char* key, int nSource);
  bool t_RecordSource(Location at, const std::string& key, int nSource);
  bool t_RecordSources(Location at, int nNewSource, int nPreviousSource);
  bool t_ReadPreviousSource(Location at, int& nSource);
  bool t_RepairSource(_PL_WINDOW_Source ePLSource, _PL_WINDOW_Source eCurPLSource);
  bool t_SwitchTVService(_PL_WINDOW_Source ePLSource, int nMajor, const std::string& appId);
  bool t_FindMajor(int nMajor, unsigned long long& serviceId);
  bool t_LeaveTVService(_PL_WINDOW_Source ePLSource);
  bool t_DeactivateSource();

  // EmpTaskWindow_Screen and EmpTaskWindow_Picture: the same
  bool t_HasSource(Location at);
  int t_SetDefaultSize(Location at);
  int t_SetSize(Location at, const Rect& rect);
  bool t_CheckCropping(Location at);
  int t_ShowPicture(Location at, bool shown);

  // EmpTaskWindow_Channel: the same
  bool t_GetNavigationCriteria(Location at, ENavigationMode navigationMode, TSTvMode mode, TCCriteriaHelper& criteria);
  int t_GetTvMode(Location at, TSTvMode& mode);
  int t_FindService(Location at, TCCriteriaHelper& criteria, TCServiceData& out);
  bool t_AskStartService(Location at, unsigned long long& serviceId, int& source);

  // EmpTaskWindow_Tuning: the same
  bool t_NeedTuningproxies(Location at);
  int t_TuneToService(Location at, unsigned long long serviceId, const std::string& appId, const char* notTv = nullptr);
  int t_AskAppAndTune(Location at, unsigned long long serviceId, const char* notTv = nullptr);
  int t_TuneService(Location at, unsigned long long serviceId, const std::string& appId);
  int t_TuneToFound(Location at, TCCriteriaHelper& criteria);
  int t_SeekService(_PL_WINDOW_SEEK eSeek, TCCriteriaHelper& criteria, TCServiceData& service);
  int t_TuneDescribed(const std::string& channelInfo, int type);

  // EmpTaskWindow_Audio and EmpTaskWindow_Subtitle: the same
  bool t_NeedAudioproxies(Location at);
  int t_ListAudio(unsigned long long serviceId, std::string& strInfo);
  int t_TellAudio(std::string& strInfo);
  int t_SelectAudio(unsigned long long serviceId, short pid);
  bool t_AskSubtitledService(unsigned long long& serviceId);
  int t_ListSubtitles(unsigned long long serviceId, std::string& strInfo);

  // EmpTaskWindow_ChannelField
  template <typename Value>
  int t_GetChannelNumber(const FieldQuery& query, int index, Value* out);
  template <typename Value>
  int t_GetCurrentChannelNumber(const FieldQuery& query, Value* out);
  template <typename Value>
  int t_GetStartChannelNumber(const FieldQuery& query, Value* out);
  int t_GetCurrentChannelName(Location at, unsigned short* out, const char* null, const char* empty);
};

}  // namespace kel
