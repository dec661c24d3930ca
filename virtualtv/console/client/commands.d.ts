// SPDX-License-Identifier: MIT
// Made by typings.mjs from the server's OpenRPC document. Do not edit.

/** What a command takes. 64-bit ids go as texts or bigints; undefined stands for the empty text. */
export type Parameter = string | number | bigint | boolean | undefined

/** The plug-in's commands as an app on the set calls them. Failure codes are values: negative numbers, mostly. */
export interface Commands {
  /**
   * Selects the window for later commands of this application, except those that say otherwise. The default is the
   * main window. A connection to the set that failed when the application started is tried again on first use, and
   * then belongs to the picture-in-picture window.
   * @param window The window to select.
   * @returns 1 when the window is selected, even if the connection for subtitles can't be made.
   */
  SetWindow(window?: Parameter): number

  /**
   * Returns the major number of the channel on screen.
   * @returns The major channel number.
   */
  GetCurrentChannel_Major(): number

  /**
   * Returns the minor number of the channel on screen.
   * @returns The minor channel number.
   */
  GetCurrentChannel_Minor(): number

  /**
   * Returns the name of the channel on screen.
   * @returns The channel's name; empty when it has none, or begins with U+0000 or a character beyond U+FFFF.
   */
  GetCurrentChannel_Name(): string | number

  /**
   * Returns the original network id of the channel on screen.
   * @returns The original network id.
   */
  GetCurrentChannel_OriginNetID(): number

  /**
   * Returns the program number of the channel on screen in its transport stream.
   * @returns The program number.
   */
  GetCurrentChannel_ProgramNumber(): number

  /**
   * Returns the physical channel that the channel on screen is sent on.
   * @returns The physical channel's number.
   */
  GetCurrentChannel_PTC(): number

  /**
   * Returns the name of the channel on screen, just as GetCurrentChannel_Name does.
   * @returns The channel's name; empty when it has none, or begins with U+0000 or a character beyond U+FFFF.
   */
  GetCurrentChannel_ServiceName(): string | number

  /**
   * Returns the id of the transport stream that the channel on screen is sent in.
   * @returns The transport stream id.
   */
  GetCurrentChannel_TransportStreamID(): number

  /**
   * Returns the type of the channel on screen.
   * @returns The channel's type.
   */
  GetCurrentChannel_Type(): number

  /**
   * Returns the place of the window's picture, in the space of 960 x 540 that applications use.
   * @returns The rectangle, rounded; empty when the set fails.
   */
  GetScreenRect(): string | number

  /**
   * Returns the part of the screen that the content of the window's picture fills, without black bars, in pixels of
   * the set's screen.
   * @returns The rectangle; empty when the set fails, on the virtual TV when there is no picture.
   */
  GetAFDGeometryRectSize(): string | number

  /**
   * Not supported: there is no such mode.
   * @returns Always 9.
   */
  GetScreenRect_PosMode(): number

  /**
   * Not supported: there is no such mode.
   * @returns Always 9.
   */
  GetScreenRect_SizeMode(): number

  /**
   * Returns whether the window shows something.
   * @returns What the window shows.
   */
  GetState_Show(): number

  /**
   * Shows the channel with these numbers, and switches to the TV source if another source is shown.
   * @param major The major number; only the low 16 bits of a larger number count.
   * @param minor The minor number; only the low 16 bits of a larger number count. On the virtual TV 65535, and so -1,
   * means any.
   * @returns 1 when the set shows the channel. Also 1 when the set refused to switch from another source.
   */
  SetChannel(major?: Parameter, minor?: Parameter): number

  /**
   * Shows the channel with the lowest service id on a physical channel, and switches to the TV source if another
   * source is shown.
   * @param ptc The physical channel's number.
   * @returns 1 when the set shows the channel. Also 1 when the set refused to switch from another source.
   */
  SetChannel_PTC(ptc?: Parameter): number

  /**
   * Shows the channel one step away from the one on screen, and switches to the TV source if another source is shown.
   * The virtual TV skips hidden and locked channels, and those without a service id.
   * @param seek Which way to step.
   * @param navigatorMode Not used.
   * @returns 1 when the set shows the channel. Also 1 when the set refused to switch from another source.
   */
  SetChannel_Seek(seek?: Parameter, navigatorMode?: Parameter): number

  /**
   * Shows the channel with a service id, and switches to the TV source if another source is shown.
   * @param serviceId The service id, as GetChannel_ServiceId returns it.
   * @returns 1 when the set shows the channel. Also 1 when the set refused to switch from another source.
   */
  SetChannelByServiceid(serviceId?: Parameter): number

  /**
   * Places the window's picture, in the space of 960 x 540 that applications use, and on the virtual TV removes its
   * crop. A negative `x` selects the default place and ignores the other numbers. The default place of the main
   * window is the whole screen.
   * @param x The left edge.
   * @param y The upper edge.
   * @param width The width.
   * @param height The height.
   * @returns 1 when the picture is placed. The virtual TV also accepts a rectangle beyond the edges.
   */
  SetScreenRect(x?: Parameter, y?: Parameter, width?: Parameter, height?: Parameter): number

  /**
   * Not supported.
   * @param positionMode Not used.
   * @param sizeMode Not used.
   * @returns Always fails.
   */
  SetScreenRect_PosSizeMode(positionMode?: Parameter, sizeMode?: Parameter): number

  /**
   * Hides or shows the window's picture.
   * @param type What to do.
   * @returns 1 when it is done.
   */
  Show(type?: Parameter): number

  /**
   * Returns the resolution of the window's picture. While the ISP source is shown, it is still that of the TV
   * service.
   * @returns The resolution's number.
   */
  GetResolution(): number

  /**
   * Returns the source that the window shows, or the previous source as stored in the settings.
   * @param seek Which source to return.
   * @returns The source's number. A previous source is returned as stored, even if the number is meaningless.
   */
  GetSource(seek?: Parameter): number

  /**
   * Switches the window to a source. Records it as the current source, and the earlier one as the previous source. If
   * the source is already shown, nothing is switched, but a record that differs is corrected.
   * @param source The source. Of the numbers up to 42 that are not a source, 1 to 7 and 11 to 14 are refused and the
   * others show live TV. Numbers from 43 on, and negative ones, only remove the window's source; 48 also shows the
   * ISP source. All accepted numbers are recorded unchanged.
   * @param seek Whether to switch to the previous source instead, whatever the first parameter says.
   * @returns 1 when the source is shown and recorded.
   */
  SetSource(source?: Parameter, seek?: Parameter): number

  /**
   * Switches the window to a source and to the first channel with a major number, and records the source as SetSource
   * does. If the source is already shown, the channel does not change.
   * @param source The source, as for SetSource.
   * @param major The channel's major number. With a negative number the set chooses the channel. Ignored for sources
   * above 42 and negative ones.
   * @returns 1 when the source is shown and recorded.
   */
  SetSourceAndTune(source?: Parameter, major?: Parameter): number

  /**
   * Returns the previous source of the window, as the set remembers it.
   * @returns The source's number.
   */
  GetPreviousSource(): number

  /**
   * Switches the window to the previous source as stored in the settings, as SetSource with the seek 8 does.
   * @returns 1 when the source is shown and recorded.
   */
  SetPreviousSource(): number

  /**
   * Finds the channels of a TV mode, and replaces the found-channel list by them.
   * @param type Find only channels of this type; 0 finds all.
   * @param mode The list to search. A number that is not a mode finds nothing.
   * @returns 1 when channels were found; GetChannel_Size returns their number.
   */
  FindChannel(type?: Parameter, mode?: Parameter): number

  /**
   * Returns the major number of a channel of the found-channel list.
   * @param index The channel's position in the found-channel list, created by the last FindChannel.
   * @returns The major channel number.
   */
  GetChannel_Major(index?: Parameter): number

  /**
   * Returns the minor number of a channel of the found-channel list.
   * @param index The channel's position in the found-channel list, created by the last FindChannel.
   * @returns The minor channel number.
   */
  GetChannel_Minor(index?: Parameter): number

  /**
   * Returns the name of a channel of the found-channel list.
   * @param index The channel's position in the found-channel list, created by the last FindChannel.
   * @returns The channel's name; empty when it begins with U+0000 or a character beyond U+FFFF.
   */
  GetChannel_Name(index?: Parameter): string | number

  /**
   * Returns the original network id of a channel of the found-channel list.
   * @param index The channel's position in the found-channel list, created by the last FindChannel.
   * @returns The original network id.
   */
  GetChannel_OriginNetID(index?: Parameter): number

  /**
   * Returns the program number of a channel of the found-channel list in its transport stream.
   * @param index The channel's position in the found-channel list, created by the last FindChannel.
   * @returns The program number.
   */
  GetChannel_ProgramNumber(index?: Parameter): number

  /**
   * Returns the physical channel that a channel of the found-channel list is sent on.
   * @param index The channel's position in the found-channel list, created by the last FindChannel.
   * @returns The physical channel's number.
   */
  GetChannel_PTC(index?: Parameter): number

  /**
   * Returns the name of a channel of the found-channel list. Unlike GetChannel_Name, it does not fail for a channel
   * without a name.
   * @param index The channel's position in the found-channel list, created by the last FindChannel.
   * @returns The channel's name; empty when it has none, or begins with U+0000 or a character beyond U+FFFF.
   */
  GetChannel_ServiceName(index?: Parameter): string | number

  /**
   * Returns the id of the transport stream that a channel of the found-channel list is sent in.
   * @param index The channel's position in the found-channel list, created by the last FindChannel.
   * @returns The transport stream id.
   */
  GetChannel_TransportStreamID(index?: Parameter): number

  /**
   * Returns the type of a channel of the found-channel list.
   * @param index The channel's position in the found-channel list, created by the last FindChannel.
   * @returns The channel's type.
   */
  GetChannel_Type(index?: Parameter): number

  /**
   * Returns the number of channels in the found-channel list.
   * @returns The number of channels that the last FindChannel found; 0 before the first one.
   */
  GetChannel_Size(): number

  /**
   * Returns the service id of a channel. With only the first parameter, it is a channel of the found-channel list.
   * With the second or third parameter, it is the first channel of the set with these numbers.
   * @param indexOrMajor The position in the found-channel list, or the major number when more parameters are given.
   * @param minor The minor number.
   * @param type Search only channels of this type; for 20 and 28 also only those of the antenna in use. 0, 19, 21, 23
   * to 25 and numbers that are not a type search all channels.
   * @returns The service id as a text; the empty text when no channel has these numbers. Of several channels the
   * lowest id is returned.
   */
  GetChannel_ServiceId(indexOrMajor?: Parameter, minor?: Parameter, type?: Parameter): string | number

  /**
   * Returns the JSON text attached to a channel of the found-channel list, unchanged.
   * @param index The channel's position in the found-channel list, created by the last FindChannel.
   * @returns The attached text in UTF-8, not checked to be JSON; empty when nothing is attached. An unpaired
   * surrogate is left out, and so is the unit after an unpaired first surrogate.
   */
  GetChannel_OnTVJson(index?: Parameter): string | number

  /**
   * Shows a part of the source picture at the place of the window's picture. The set receives that place in the space
   * of 960 x 540, with width and height swapped. With a parameter list the application specifies the place itself.
   * @param x The part's left edge.
   * @param y The part's upper edge.
   * @param width The part's width.
   * @param height The part's height.
   * @returns 1 when the part is shown.
   */
  SetScreenCropRect(x?: Parameter, y?: Parameter, width?: Parameter, height?: Parameter): number

  /**
   * Returns the part of the source picture that is shown, and its place.
   * @param plane Returned unchanged.
   * @returns The rectangles of the last crop. Without a crop, the virtual TV returns the whole picture and its place.
   */
  GetScreenCropRect(plane?: Parameter): string | number

  /**
   * Raises or lowers the plane of the window's picture.
   * @param order The direction.
   * @returns 1 when it is done.
   */
  SetScreenZorder(order?: Parameter): number

  /**
   * Removes the window's source and records 43, no source, as the current one.
   * @returns 1 when the window is without a source.
   */
  DisconnectSource(): number

  /**
   * Switches to the first audio track with a PID.
   * @param pid The PID. Only the low 16 bits of a larger number count, as a signed number. So no track matches a
   * number from 32768 to 65535.
   * @returns 1 when the track is selected; on the ISP source also when the set fails with its own number 1.
   */
  ChangeAudioPID(pid?: Parameter): number

  /**
   * Switches to the audio track at a position.
   * @param index The track's position, as GetMultiAudioInfo returns it.
   * @returns 1 when the track is selected; on the ISP source also when the set fails with its own number 1.
   */
  ChangeAudioByIndex(index?: Parameter): number

  /**
   * Lists the audio tracks of what is on screen.
   * @returns The list. It has no tracks when the set fails to report their number. When the set fails to report what
   * is on screen, or can't be reached, the reply is the empty text, or on the ISP source a list without tracks.
   */
  GetMultiAudioInfo(): string | number

  /**
   * Does nothing, since the plug-in does not control the volume.
   * @param volume Not used.
   * @returns Always returns 0.
   */
  SetSourceVolume(volume?: Parameter): number

  /**
   * Puts the window into a TV mode: an antenna and the channel list in use on it.
   * @param mode The mode. Numbers that are not a mode are passed to the set, which may refuse them.
   * @returns 1 when the mode is set.
   */
  SetTVMode(mode?: Parameter): number

  /**
   * Returns the window's TV mode.
   * @returns The mode.
   */
  GetTVMode(): number

  /**
   * Returns the favourite groups of a channel.
   * @param serviceId The channel's service id, as GetChannel_ServiceId returns it. For the empty text -1 is returned
   * at once.
   * @returns The groups; an object without members when the channel was never in a group.
   */
  GetFavorites(serviceId?: Parameter): string | number

  /**
   * Adds a channel to a favourite group or removes it.
   * @param serviceId The channel's service id, as GetChannel_ServiceId returns it.
   * @param member What to do.
   * @param group The group's number. Only the low 8 bits of a larger number count.
   * @returns 1 when it is done.
   */
  UpdateFavorites(serviceId?: Parameter, member?: Parameter, group?: Parameter): number

  /**
   * Lists all channels of the window's TV mode.
   * @returns The list, read from the set each time.
   */
  GetFullChannelList(): string | number

  /**
   * Returns the audio track in use.
   * @returns The track.
   */
  GetCurrentAudioInfo(): string | number

  /**
   * Returns the strength of the signal that the main window's tuner receives, whichever window is selected.
   * @returns The strength, 255 for the strongest.
   */
  GetSignalStrength(): number

  /**
   * Returns a document about the channel on screen.
   * @returns The document. It is empty when the text attached to the channel is JSON that is neither an object nor
   * `null`, or JSON nested more than a thousand deep.
   */
  GetCurrentChannelInfo(): string | number

  /**
   * Another name of GetCurrentChannelInfo.
   * @returns The document. It is empty when the text attached to the channel is JSON that is neither an object nor
   * `null`, or JSON nested more than a thousand deep.
   */
  GetCurrentChannel(): string | number

  /**
   * Returns the language of the subtitle in use in the main window, whichever window is selected.
   * @returns The language.
   */
  GetCurrentSubtitle(): number

  /**
   * Lists the subtitles of what is on screen in the selected window. GetCurrentSubtitle and ChangeSubtitle always
   * apply to the main window.
   * @returns The list. When the set fails, the empty text, or on the ISP source a list without subtitles.
   */
  GetSubtitleInfo(): string | number

  /**
   * Switches to the subtitle at a position, in the main window, whichever window is selected.
   * @param index The subtitle's position, as GetSubtitleInfo returns it while the main window is selected.
   * @returns 1 when the subtitle is selected. On the ISP source the set fails with its own numbers, and a failure
   * with the number 1 looks like a success.
   */
  ChangeSubtitle(index?: Parameter): number

  /**
   * Returns the type of the channel that the set starts with.
   * @returns The channel's type.
   */
  GetStartChannel_Type(): number

  /**
   * Returns the major number of the channel that the set starts with.
   * @returns The major channel number.
   */
  GetStartChannel_Major(): number

  /**
   * Returns the minor number of the channel that the set starts with.
   * @returns The minor channel number.
   */
  GetStartChannel_Minor(): number

  /**
   * Returns the name of the channel that the set starts with.
   * @returns The channel's name; empty when it has none, or begins with U+0000 or a character beyond U+FFFF.
   */
  GetStartChannel_Name(): string | number

  /**
   * Returns the service id of the channel that the set starts with, whether or not the set still knows that channel.
   * @returns The service id as a text; the empty text when the set has none.
   */
  GetStartChannel_ServiceId(): string | number

  /**
   * Returns a document about the channel that the set starts with.
   * @returns The document.
   */
  GetStartChannel_Info(): string | number

  /**
   * Returns a document about the previous channel.
   * @returns The document. Here lock is always 65535, and nothing attached to the channel is added.
   */
  GetPreviousChannelInfo(): string | number

  /**
   * Returns size and frequencies of the window's picture. While the ISP source is shown, the size is that of its
   * picture.
   * @returns The document. While the ISP source is shown and its size is unknown, all its numbers are 0.
   */
  GetResolutionDetail(): string | number

  /**
   * Returns the state of the window's source.
   * @returns The source's state.
   */
  GetSourceState(): number

  /**
   * Hides or shows the window's picture.
   * @param mute What to do.
   * @returns 1 when it is done.
   */
  MuteVideo(mute?: Parameter): number

  /**
   * Shows the satellite service that matches a description. The source does not change, and nothing is recorded.
   * @param service The description, a JSON object that starts with its brace. Comments in it, and text after it, are
   * ignored.
   * @param form The form of the description. Only 0 is supported.
   * @returns 1 when the set shows the service.
   */
  SetDVBSIChannelDirectEx(service?: Parameter, form?: Parameter): number

  /**
   * Shows the channel on a physical channel that has this channel type and minor number, and switches to the TV
   * source if another source is shown.
   * @param ptc The physical channel's number.
   * @param major The channel type in the set's own numbering. In spite of its name it is not a major number.
   * @param minor The minor number.
   * @param channelType Not used; it is only logged.
   * @returns 1 when the set shows the channel. Also 1 when the set refused to switch from another source.
   */
  SetChannelDirect(ptc?: Parameter, major?: Parameter, minor?: Parameter, channelType?: Parameter): number
}

/** An audio track. */
export interface AudioTrack {
  /** coding of the sound */
  coding: string
  /** language code */
  lang: string
  /** audio mode */
  mode: number
  /** PID of its stream */
  pid: number
  /** whether the set can return the track's data */
  readable: boolean
  /** audio type */
  type: number
}

/** The plug-in has called the set. */
export interface CallEvent {
  /** the call with arguments and result, in one line */
  call: string
  /** number of the command that it belongs to */
  command?: number
  /** whether a fault has hit the call */
  fault: boolean
  /** counts up by one over all topics */
  number: number
  /** name of the operation */
  operation: string
  /** number of the last change of the set */
  revision: number
  /** the topic */
  topic: 'call'
}

/** Calls made, settings keys changed and messages logged. */
export interface Cause {
  /** calls to the set in order, one line each */
  calls: string[]
  /** changed settings keys, in order */
  keys: SettingChange[]
  /** log messages, in order */
  log: LogMessage[]
}

/** A command has run. */
export interface CommandEvent {
  /** number of the command, counted over all sessions */
  command: number
  /** delay by latencies, in milliseconds of the set's clock */
  delay: number
  /** duration in milliseconds of real time */
  duration: number
  /** the engine that ran it */
  engine: string
  /** whether the parameters were passed as a list */
  list: boolean
  /** name of the command */
  name: string
  /** counts up by one over all topics */
  number: number
  /** the parameters passed to the engine */
  parameters: string[]
  /** the reply, truncated if it is long; null if the engine threw an exception */
  reply: Reply | null
  /** number of the last change of the set */
  revision: number
  /** the session that ran it */
  session: string
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'command'
}

/** An engine was closed. */
export interface EngineClosedEvent {
  /** number of the command that it belongs to */
  command?: number
  /** name of the engine, after the name of its session */
  engine: string
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'engine'
  /** what happened */
  what: 'closed'
  /** the reason, in a word or two */
  why: string
}

/** An engine was opened. */
export interface EngineOpenedEvent {
  /** id of the application */
  appId: string
  /** number of the command that it belongs to */
  command?: number
  /** name of the engine, after the name of its session */
  engine: string
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'engine'
  /** what happened */
  what: 'opened'
  /** id of the widget */
  widgetId: string
}

/** A fault. */
export interface Fault {
  /** the arguments of .fault that describe it */
  fault: string
  /** number of calls that it has hit */
  hits: number
  /** its number */
  id: number
  /** the operation whose calls it hits */
  operation: string
}

/** A fault was removed. */
export interface FaultGoneEvent {
  /** number of the command that it belongs to */
  command?: number
  /** number of the fault */
  id: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'fault'
  /** what happened */
  what: 'gone'
}

/** A fault has hit a call. */
export interface FaultHitEvent {
  /** number of the command that it belongs to */
  command?: number
  /** number of calls that it has hit */
  hits: number
  /** number of the fault */
  id: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'fault'
  /** what happened */
  what: 'hit'
}

/** A fault was set. */
export interface FaultSetEvent {
  /** number of the command that it belongs to */
  command?: number
  /** the arguments of .fault that describe it */
  fault: string
  /** number of the fault */
  id: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'fault'
  /** what happened */
  what: 'set'
}

/** The favourite groups of a service have changed. */
export interface FavouritesEvent {
  /** new groups, as .get prints them */
  after: string
  /** old groups, as .get prints them */
  before: string
  /** number of the command that it belongs to */
  command?: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** the service; null if it no longer exists */
  service: ServiceName | null
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'favourites'
}

/** A service carried or described in a broadcast. Unknown values are left out. */
export interface FoundService {
  /** audio tracks; empty for services that the broadcast only describes */
  audio: {
    /** coding of the sound */
    coding?: 'mpeg' | 'aac' | 'ac3' | 'eac3'
    /** three-letter code of ISO 639 */
    language?: string
    /** PID of its stream */
    pid: number
    /** ISO 639 audio type: 0 undefined, 1 clean effects, 2 hearing impaired, 3 visually impaired */
    type: number
  }[]
  /** television, radio or data */
  kind?: 'television' | 'radio' | 'data'
  /** channel number */
  major?: number
  /** minor channel number in American broadcasts, otherwise 0 */
  minor?: number
  /** name for viewers */
  name?: string
  /** id of the network where its transport stream originates */
  originalNetworkId?: number
  /** program number in its transport stream */
  programNumber: number
  /** the service's provider */
  provider?: string
  /** whether it is encrypted for subscribers */
  scrambled: boolean
  /** subtitles; empty for services that the broadcast only describes */
  subtitles: {
    /** three-letter code of ISO 639 */
    language?: string
    /** PID of its stream */
    pid: number
    /** kind of subtitles */
    type: 'dvb' | 'teletext'
  }[]
  /** id of its transport stream */
  transportStreamId?: number
}

/** An input of the set. */
export interface Input {
  /** name for people */
  name: string
  /** the picture while something is plugged in */
  picture: Picture
  /** whether something is plugged in */
  plugged: boolean
  /** the TV service's number of the input */
  source: number
}

/** An input has changed. */
export interface InputEvent {
  after: Input
  before: Input
  /** number of the command that it belongs to */
  command?: number
  /** the TV service's number of the input */
  input: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'inputs'
}

/** The secondary TV stack. */
export interface Isp {
  /** its picture */
  picture: {
    /** in pixels */
    height: number
    /** in pixels */
    width: number
  }
  /** whether it can be reached */
  present: boolean
  /** whether it is on screen */
  shown: boolean
  /** its tracks */
  tracks: Tracks
}

/** The secondary TV stack has changed. */
export interface IspEvent {
  after: Isp
  before: Isp
  /** number of the command that it belongs to */
  command?: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'source'
  /** isp, in place of a window's name */
  window: 'isp'
}

/** A value of the set that can be read, and usually also set, from outside. */
export interface Knob {
  /** whether tv.set accepts it */
  canBeSet: boolean
  /** name of the knob */
  name: string
  /** its value */
  value: string
}

/** A knob has changed. */
export interface KnobEvent {
  /** new value, as .get prints it */
  after: string
  /** old value, as .get prints it */
  before: string
  /** number of the command that it belongs to */
  command?: number
  /** name of the knob */
  name: string
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'knob'
}

/** A family of knobs. */
export interface KnobKind {
  /** whether tv.set accepts it */
  canBeSet: boolean
  /** its meaning */
  help: string
  /** name, with placeholders in capital letters */
  name: string
  /** the values that it takes, in words */
  takes: string
}

/** The plug-in has logged messages. */
export interface LogEvent {
  /** number of the command that it belongs to */
  command?: number
  /** the first 200 messages */
  lines: LogMessage[]
  /** counts up by one over all topics */
  number: number
  /** number of further messages */
  omitted: number
  /** number of the last change of the set */
  revision: number
  /** the topic */
  topic: 'log'
}

/** A log message. */
export interface LogMessage {
  /** length of the whole text in bytes, if it was truncated */
  length?: number
  /** 0 for failures and routine lines, up to 3 */
  level: number
  /** text of the message */
  text: string
}

/** A window's TV mode has changed. */
export interface ModeEvent {
  after: TvMode
  before: TvMode
  /** number of the command that it belongs to */
  command?: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'mode'
  /** name of the window */
  window: 'main' | 'pip'
}

/** A call that the plug-in makes to the set. */
export interface Operation {
  /** name of the call */
  name: string
  /** names of its outputs */
  outputs: string[]
}

/** The picture of an input or a service. */
export interface Picture {
  /** the broadcaster's active format description, 4 bits; 8: the content fills the picture */
  activeFormat: number
  /** in pixels */
  height: number
  /** frames a second */
  rate: number
  /** aspect ratio of the whole picture */
  shape: '16:9' | '4:3'
  /** in pixels */
  width: number
}

/** Place, crop and order of a window's picture. */
export interface Plane {
  /** in the space of 960 x 540 that applications use */
  app: PlaneRects
  /** in pixels of the base screen */
  base: PlaneRects
  /** the visible part of the source picture; null if all of it is visible */
  crop: Rect | null
  /** whether the picture is hidden */
  muted: boolean
  /** stacking order; higher planes cover lower ones */
  order: number
}

/** Place, crop or order of a window's picture has changed. */
export interface PlaneEvent {
  after: Plane
  before: Plane
  /** number of the command that it belongs to */
  command?: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'plane'
  /** name of the window */
  window: 'main' | 'pip'
}

/** Rectangles of the picture, in one coordinate space. */
export interface PlaneRects {
  /** the part of that rectangle that the content fills; null without a picture */
  active: Rect | null
  /** the rectangle in which the picture is drawn */
  display: Rect
  /** the window's rectangle */
  rect: Rect
}

/** A rectangle. */
export interface Rect {
  /** in pixels */
  height: number
  /** in pixels */
  width: number
  /** left edge */
  x: number
  /** top edge */
  y: number
}

/** A command's reply. */
export interface Reply {
  /** whether the engine accepted the command */
  accepted: boolean
  /** bytes of an ascii value that is not UTF-8 */
  bytes?: string
  /** kind of the value */
  kind: 'int' | 'ascii' | 'unicode' | 'empty'
  /** length of the whole value, if it was truncated */
  length?: number
  /** 16-bit units of a unicode value that is not UTF-16 */
  units?: number[]
  /** the value; missing if the reply is empty */
  value?: number | string
}

/** The content of a broadcast. */
export interface Scan {
  /** number of packets read */
  packets: number
  /** problems of the broadcast, at most a hundred */
  problems: {
    /** place of the first one, as in packet 12 */
    at: string
    /** description of the problem */
    reason: string
  }[]
  /** services; those carried in the broadcast come first */
  services: FoundService[]
}

/** A service. */
export interface Service {
  /** antenna that receives it */
  antenna: 'terrestrial' | 'cable' | 'satellite' | null
  /** audio tracks */
  audio: AudioTrack[]
  /** numbers of its favourite groups */
  favourites: number[]
  /** section of the imported list */
  group: string
  /** whether it is hidden */
  hidden: boolean
  /** service id, 64 bits as decimal text; null if it has none */
  id: string | null
  /** key of the service, as .services shows it */
  key: number
  /** television, radio or data */
  kind: 'television' | 'radio' | 'data' | null
  /** whether it is locked */
  locked: boolean
  /** major number */
  major: number | null
  /** minor number */
  minor: number | null
  /** channel name; null if it has none */
  name: string | null
  /** subtitle tracks */
  subtitles: SubtitleTrack[]
}

/** Another service is on a window's screen, or another was there before it. */
export interface ServiceEvent {
  after: WindowScreen
  before: WindowScreen
  /** number of the command that it belongs to */
  command?: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'service'
  /** name of the window */
  window: 'main' | 'pip'
}

/** A field of a service has changed. */
export interface ServiceFieldEvent {
  /** new value; null if it was removed */
  after: string | null
  /** old value, a number as decimal text; null if it was not set */
  before: string | null
  /** number of the command that it belongs to */
  command?: number
  /** name of the field */
  field: string
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** the service; null if it no longer exists */
  service: ServiceName | null
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'services'
}

/** Key, id, name and number of a service. */
export interface ServiceName {
  /** service id, 64 bits as decimal text; null if it has none */
  id: string | null
  /** key of the service, as .services shows it */
  key: number
  /** major number */
  major: number | null
  /** minor number */
  minor: number | null
  /** channel name; null if it has none */
  name: string | null
  /** the recording that plays while the service is on screen, if there is one */
  recording?: {
    /** path of the file */
    path: string
    /** the video's stream type in the program map; 27 is H.264 */
    type: number
    /** PID of the video */
    video: number
  }
}

/** The list of a service's tracks has changed. */
export interface ServiceTracksEvent {
  /** new list, as .get prints it */
  after: string
  /** old list, as .get prints it */
  before: string
  /** number of the command that it belongs to */
  command?: number
  /** kind of the tracks */
  kind: 'audio' | 'subtitles'
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** the service; null if it no longer exists */
  service: ServiceName | null
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'tracks'
}

/** The list of services was replaced, or a service was moved or removed. */
export interface ServicesEvent {
  /** number of new services */
  added: number
  /** number of services now */
  after: number
  /** number of services before */
  before: number
  /** number of services with changed data */
  changed: number
  /** number of the command that it belongs to */
  command?: number
  /** the move or removal, as arguments of .service; null if the list was replaced */
  edit: string | null
  /** number of removed services */
  gone: number
  /** number of services with another key */
  moved: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'services'
}

/** A session. */
export interface Session {
  /** whether it belongs to a connection */
  connected: boolean
  /** names of its open engines */
  engines: string[]
  /** name of the session */
  session: string
  /** whether it is the session of requests that name none */
  shared: boolean
}

/** A session was opened or closed. */
export interface SessionEvent {
  /** number of the command that it belongs to */
  command?: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** name of the session */
  session: string
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'session'
  /** what happened */
  what: 'opened' | 'closed'
}

/** The set has started again. */
export interface SetStartedEvent {
  /** number of the command that it belongs to */
  command?: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** the reason */
  started: 'restart' | 'reset' | 'restore'
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'services'
}

/** A settings key. */
export interface Setting {
  /** the value's bytes, if it is not UTF-8 */
  bytes?: string
  /** its name */
  key: string
  /** its value */
  value: string | number
}

/** A change of a settings key. */
export interface SettingChange {
  /** new value; null if the key was removed */
  after: string | number | null
  /** old value; null if the key was not set */
  before: string | number | null
  /** its name */
  key: string
}

/** A settings key has changed. */
export interface SettingEvent {
  /** new value; null if the key was removed */
  after: string | number | null
  /** old value; null if the key was not set */
  before: string | number | null
  /** number of the command that it belongs to */
  command?: number
  /** its name */
  key: string
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'settings'
}

/** A window has another source, or its source another state. */
export interface SourceEvent {
  after: WindowSource
  before: WindowSource
  /** number of the command that it belongs to */
  command?: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'source'
  /** name of the window */
  window: 'main' | 'pip'
}

/** The whole set. 64-bit ids are texts; absent values are null. */
export interface State {
  /** milliseconds since the set was switched on */
  clock: number
  /** country code */
  country: number
  /** inputs of the set */
  inputs: Input[]
  /** the secondary TV stack */
  isp: Isp
  /** region code */
  region: number
  /** number of the last change */
  revision: number
  /** number of services */
  services: number
  /** service and source that the set starts with */
  start: {
    /** service id */
    service: string
    /** the TV service's number of the source */
    source: number
  }
  /** the tuner */
  tuner: {
    /** how much of the signal is lost */
    fade: number
  }
  /** windows by name */
  windows: {
    main: WindowState
    pip: WindowState
  }
}

/** A subtitle track. */
export interface SubtitleTrack {
  /** language code */
  lang: string
  /** PID of its stream */
  pid: number
  /** whether the set can return the track's data */
  readable: boolean
  /** kind of subtitles */
  type: string
}

/** All tracks, and the tracks in use. */
export interface Tracks {
  /** audio tracks */
  audio: AudioTrack[]
  /** position of the audio track in use, from 0 */
  audioInUse: number
  /** position of the subtitle in use; -1 for none */
  subtitleInUse: number
  /** subtitle tracks */
  subtitles: SubtitleTrack[]
}

/** A window has selected other tracks of its service. */
export interface TracksEvent {
  after: TracksInUse
  before: TracksInUse
  /** number of the command that it belongs to */
  command?: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'tracks'
  /** name of the window */
  window: 'main' | 'pip'
}

/** The tracks in use. */
export interface TracksInUse {
  /** position of the audio track in use, from 0 */
  audio: number
  /** position of the subtitle in use; -1 for none */
  subtitle: number
}

/** A window's TV mode, in the TV service's numbers. */
export interface TvMode {
  /** antenna mode */
  antenna: number
  /** service mode */
  service: number
}

/** Everything about a command. */
export interface Why {
  /** calls to the set in order, one line each */
  calls: string[]
  /** number of the command, counted over all sessions */
  command: number
  /** delay by latencies, in milliseconds of the set's clock */
  delay: number
  /** duration in milliseconds of real time */
  duration: number
  /** the engine that ran it */
  engine: string
  /** changed settings keys, in order */
  keys: SettingChange[]
  /** whether the parameters were passed as a list */
  list: boolean
  /** log messages, in order */
  log: LogMessage[]
  /** name of the command */
  name: string
  /** effects of opening the engine, if the command was the first on it */
  opening?: Cause
  /** the parameters passed to the engine */
  parameters: string[]
  /** the reply; null if the engine threw an exception */
  reply: Reply | null
  /** the session that ran it */
  session: string
}

/** The service on a window's screen, and the previous one. */
export interface WindowScreen {
  /** the service that was on screen before */
  previous: ServiceName | null
  /** the service on screen */
  service: ServiceName | null
}

/** The source of a window's picture. */
export interface WindowSource {
  /** the TV service's number of the source */
  number: number
  /** the previous source */
  previous: number
  /** state of the source, in the TV service's numbers */
  state: number
}

/** A window and what it shows. */
export interface WindowState {
  /** the source's picture; null without one */
  picture: Picture | null
  /** place of the picture on the screen */
  plane: Plane
  /** the service that was on screen before */
  previousService: ServiceName | null
  /** the resolution that the set reports */
  resolution: {
    /** whether it follows from the picture */
    auto: boolean
    /** code of the resolution; null without a picture */
    code: number | null
  }
  /** the service on screen */
  service: ServiceName | null
  /** the source of its picture */
  source: {
    /** name of the input; null if the source is not an input */
    name: string | null
    /** the TV service's number of the source */
    number: number
    /** the previous source */
    previous: number
    /** state of the source, in the TV service's numbers */
    state: number
  }
  /** tracks of the service */
  tracks: Tracks
  /** TV mode */
  tvMode: TvMode
}

/** The events of each topic. */
export interface Events {
  /** the plug-in has called the set */
  call: CallEvent
  /** a command has run */
  command: CommandEvent
  /** an engine was opened or closed */
  engine: EngineClosedEvent | EngineOpenedEvent
  /** a fault was set, has hit a call, or was removed */
  fault: FaultGoneEvent | FaultHitEvent | FaultSetEvent
  /** the favourite groups of a service */
  favourites: FavouritesEvent
  /** an input */
  inputs: InputEvent
  /** any other value that can be set from outside */
  knob: KnobEvent
  /** messages that the plug-in has logged */
  log: LogEvent
  /** a window's TV mode */
  mode: ModeEvent
  /** place, crop and order of a window's picture */
  plane: PlaneEvent
  /** the service on a window's screen */
  service: ServiceEvent
  /** the list of services, a field of a service, or the whole set after a restart, reset or restore */
  services: ServiceFieldEvent | ServicesEvent | SetStartedEvent
  /** a session was opened or closed */
  session: SessionEvent
  /** a settings key */
  settings: SettingEvent
  /** the source of a window's picture, or the secondary TV stack */
  source: IspEvent | SourceEvent
  /** tracks in use, or the tracks of a service */
  tracks: ServiceTracksEvent | TracksEvent
}
