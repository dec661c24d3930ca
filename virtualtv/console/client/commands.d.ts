// SPDX-License-Identifier: MIT
// Made by typings.mjs from the server's OpenRPC document. Do not edit.

/** What a command takes. 64-bit ids go as texts or bigints; undefined stands for the empty text. */
export type Parameter = string | number | bigint | boolean | undefined

/** The plug-in's commands as an app on the set calls them. Failure codes are values: negative numbers, mostly. */
export interface Commands {
  /**
   * Selects the window for later commands of this application, except those that say otherwise. The default is the
   * main window. A connection to the set that failed when the application started is made on first use, but for the
   * picture-in-picture window.
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

/** A sound track. */
export interface AudioTrack {
  /** how it is coded */
  coding: string
  /** language, by its code */
  lang: string
  /** audio mode */
  mode: number
  /** number of its stream */
  pid: number
  /** the set can tell about it */
  readable: boolean
  /** audio type */
  type: number
}

/** The plug-in has called the set. */
export interface CallEvent {
  /** with arguments and result, in a line */
  call: string
  /** number of the command that it belongs to */
  command?: number
  /** a fault has hit it */
  fault: boolean
  /** counts up by one over all topics */
  number: number
  /** its name */
  operation: string
  /** number of the last change of the set */
  revision: number
  /** the topic */
  topic: 'call'
}

/** What was called, stored and logged. */
export interface Cause {
  /** platform calls, in order, a line each */
  calls: string[]
  /** settings keys that changed, in order */
  keys: SettingChange[]
  /** messages, in order */
  log: LogMessage[]
}

/** A command has run. */
export interface CommandEvent {
  /** its number, over all sessions */
  command: number
  /** milliseconds that latencies took on the set's clock */
  delay: number
  /** milliseconds of real time */
  duration: number
  /** that it ran on */
  engine: string
  /** the parameters were given as a list */
  list: boolean
  /** of the command */
  name: string
  /** counts up by one over all topics */
  number: number
  /** as the engine was given them */
  parameters: string[]
  /** cut where it is long; null where the engine threw */
  reply: Reply | null
  /** number of the last change of the set */
  revision: number
  /** that ran it */
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
  /** its name, that of its session in front */
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
  /** in a word or two */
  why: string
}

/** An engine was opened. */
export interface EngineOpenedEvent {
  /** the application */
  appId: string
  /** number of the command that it belongs to */
  command?: number
  /** its name, that of its session in front */
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
  /** its widget */
  widgetId: string
}

/** A fault that was set. */
export interface Fault {
  /** as .fault takes it */
  fault: string
  /** how many calls it has hit */
  hits: number
  /** its number */
  id: number
  /** the call */
  operation: string
}

/** A fault is gone. */
export interface FaultGoneEvent {
  /** number of the command that it belongs to */
  command?: number
  /** its number */
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
  /** how many calls it has hit */
  hits: number
  /** its number */
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
  /** as .fault takes it */
  fault: string
  /** its number */
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

/** A service is in other favourite groups. */
export interface FavouritesEvent {
  /** as .get prints them */
  after: string
  /** as .get prints them */
  before: string
  /** number of the command that it belongs to */
  command?: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** which; null where it is gone */
  service: ServiceName | null
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'favourites'
}

/** A service that a broadcast carries or tells of. What it does not tell is left out. */
export interface FoundService {
  /** tracks; none of services that the broadcast does not carry */
  audio: {
    /** how it is coded */
    coding?: 'mpeg' | 'aac' | 'ac3' | 'eac3'
    /** three letters of ISO 639 */
    language?: string
    /** of its stream */
    pid: number
    /** ISO 639 audio type: 0 undefined, 1 clean effects, 2 hearing impaired, 3 visually impaired */
    type: number
  }[]
  /** what it brings */
  kind?: 'television' | 'radio' | 'data'
  /** number under which viewers know it */
  major?: number
  /** part of that number in America, else 0 */
  minor?: number
  /** as viewers know it */
  name?: string
  /** of the network that its transport stream comes from */
  originalNetworkId?: number
  /** in its transport stream */
  programNumber: number
  /** who makes it */
  provider?: string
  /** it can't be watched without a subscription */
  scrambled: boolean
  /** likewise */
  subtitles: {
    /** three letters of ISO 639 */
    language?: string
    /** of its stream */
    pid: number
    /** how they are sent */
    type: 'dvb' | 'teletext'
  }[]
  /** of its transport stream */
  transportStreamId?: number
}

/** An input of the set. */
export interface Input {
  /** as people know it */
  name: string
  /** what comes in then */
  picture: Picture
  /** something is plugged in */
  plugged: boolean
  /** its number among the TV service's sources */
  source: number
}

/** An input is another. */
export interface InputEvent {
  after: Input
  before: Input
  /** number of the command that it belongs to */
  command?: number
  /** its number among the TV service's sources */
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
  /** it can be reached */
  present: boolean
  /** it is on screen */
  shown: boolean
  /** its tracks */
  tracks: Tracks
}

/** The secondary TV stack is another. */
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
  /** it stands where a window does */
  window: 'isp'
}

/** Something that can be read, or set, from outside. */
export interface Knob {
  /** tv.set takes it */
  canBeSet: boolean
  /** of the knob */
  name: string
  /** what it stands at */
  value: string
}

/** A knob stands at another value. */
export interface KnobEvent {
  /** as .get prints it */
  after: string
  /** as .get prints it */
  before: string
  /** number of the command that it belongs to */
  command?: number
  /** of the knob */
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

/** A kind of knobs. */
export interface KnobKind {
  /** tv.set takes it */
  canBeSet: boolean
  /** what it is */
  help: string
  /** with words in capitals for what differs */
  name: string
  /** what it is set to, in words */
  takes: string
}

/** The plug-in has logged messages. */
export interface LogEvent {
  /** number of the command that it belongs to */
  command?: number
  /** the first 200 of them */
  lines: LogMessage[]
  /** counts up by one over all topics */
  number: number
  /** how many more there were */
  omitted: number
  /** number of the last change of the set */
  revision: number
  /** the topic */
  topic: 'log'
}

/** A log message. */
export interface LogMessage {
  /** in bytes, where it was cut */
  length?: number
  /** 0 for failures and routine lines, up to 3 */
  level: number
  /** of the message */
  text: string
}

/** A window's TV mode is another. */
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
  /** of the call */
  name: string
  /** names of what it writes */
  outputs: string[]
}

/** A picture that comes in. */
export interface Picture {
  /** the broadcaster's format description, 4 bits; 8: the content fills the picture */
  activeFormat: number
  /** in pixels */
  height: number
  /** frames a second */
  rate: number
  /** of the whole picture */
  shape: '16:9' | '4:3'
  /** in pixels */
  width: number
}

/** How a window's picture stands on the screen. */
export interface Plane {
  /** in the space of 960 x 540 that applications use */
  app: PlaneRects
  /** on the base screen */
  base: PlaneRects
  /** the part of the source picture that is shown; null for all of it */
  crop: Rect | null
  /** the picture is hidden */
  muted: boolean
  /** which plane is above which */
  order: number
}

/** A window's picture stands on the screen in another way. */
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

/** Where the picture is, in one space. */
export interface PlaneRects {
  /** the part of it that the content fills; null without a picture */
  active: Rect | null
  /** where the picture is drawn */
  display: Rect
  /** the window */
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

/** What a command answered. */
export interface Reply {
  /** the engine took the command */
  accepted: boolean
  /** of an ascii value that is no UTF-8 */
  bytes?: string
  /** of the value */
  kind: 'int' | 'ascii' | 'unicode' | 'empty'
  /** of the whole value, where it was cut */
  length?: number
  /** of a unicode value that is no UTF-16 */
  units?: number[]
  /** none where it is empty */
  value?: number | string
}

/** What is in a broadcast. */
export interface Scan {
  /** how many were read */
  packets: number
  /** what is wrong with it, a hundred at most */
  problems: {
    /** the place, as in packet 12 */
    at: string
    /** in words */
    reason: string
  }[]
  /** those that it carries first */
  services: FoundService[]
}

/** A service. */
export interface Service {
  /** what it is received with */
  antenna: 'terrestrial' | 'cable' | 'satellite' | null
  /** sound tracks */
  audio: AudioTrack[]
  /** numbers of the favourite groups that it is in */
  favourites: number[]
  /** section of the list that it was found in */
  group: string
  /** it is hidden */
  hidden: boolean
  /** 64 bits as decimal text; null where it has none */
  id: string | null
  /** number in the list of services */
  key: number
  /** what it brings */
  kind: 'television' | 'radio' | 'data' | null
  /** it is locked */
  locked: boolean
  /** major number */
  major: number | null
  /** minor number */
  minor: number | null
  /** channel name; null where it has none */
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

/** A field of a service is another. */
export interface ServiceFieldEvent {
  /** null where it is not set any more */
  after: string | null
  /** numbers as decimal text; null where it was not set */
  before: string | null
  /** number of the command that it belongs to */
  command?: number
  /** name of the field */
  field: string
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** which; null where it is gone */
  service: ServiceName | null
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'services'
}

/** What a service is known by. */
export interface ServiceName {
  /** 64 bits as decimal text; null where it has none */
  id: string | null
  /** number in the list of services */
  key: number
  /** major number */
  major: number | null
  /** minor number */
  minor: number | null
  /** channel name; null where it has none */
  name: string | null
  /** what plays while the service is on screen, where it came from a recording */
  recording?: {
    /** of the file */
    path: string
    /** its stream type in the program map; 27 is H.264 */
    type: number
    /** PID of the picture */
    video: number
  }
}

/** A service has other tracks. */
export interface ServiceTracksEvent {
  /** as .get prints them */
  after: string
  /** as .get prints them */
  before: string
  /** number of the command that it belongs to */
  command?: number
  /** of the tracks */
  kind: 'audio' | 'subtitles'
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** which; null where it is gone */
  service: ServiceName | null
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'tracks'
}

/** The list of services is another one, or one of them was moved or removed. */
export interface ServicesEvent {
  /** how many are new */
  added: number
  /** how many there are */
  after: number
  /** how many there were */
  before: number
  /** how many were there and are different */
  changed: number
  /** number of the command that it belongs to */
  command?: number
  /** which one was moved or removed, as .service takes it; null where the list was replaced */
  edit: string | null
  /** how many are not there any more */
  gone: number
  /** how many have another key */
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
  /** a connection holds it */
  connected: boolean
  /** names of those that are open */
  engines: string[]
  /** its name */
  session: string
  /** it is that of requests without one */
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
  /** its name */
  session: string
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'session'
  /** what happened */
  what: 'opened' | 'closed'
}

/** The set has started anew. */
export interface SetStartedEvent {
  /** number of the command that it belongs to */
  command?: number
  /** counts up by one over all topics */
  number: number
  /** number of the last change of the set */
  revision: number
  /** why */
  started: 'restart' | 'reset' | 'restore'
  /** milliseconds since 1970 */
  time: number
  /** the topic */
  topic: 'services'
}

/** A settings key. */
export interface Setting {
  /** the same where it is no UTF-8 */
  bytes?: string
  /** its name */
  key: string
  /** what it holds */
  value: string | number
}

/** A settings key that changed. */
export interface SettingChange {
  /** null where it is not set any more */
  after: string | number | null
  /** null where it was not set */
  before: string | number | null
  /** its name */
  key: string
}

/** A settings key has another value. */
export interface SettingEvent {
  /** null where it is not set any more */
  after: string | number | null
  /** null where it was not set */
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

/** A window's picture comes from another source. */
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

/** The whole set. Ids of 64 bits are texts; what is not there is null. */
export interface State {
  /** milliseconds on the set's clock */
  clock: number
  /** country code */
  country: number
  /** of the set */
  inputs: Input[]
  /** the secondary TV stack */
  isp: Isp
  /** region code */
  region: number
  /** number of the last change */
  revision: number
  /** how many there are */
  services: number
  /** what the set starts with */
  start: {
    /** id of the service */
    service: string
    /** number of the source */
    source: number
  }
  /** the tuner */
  tuner: {
    /** how far the signal has faded */
    fade: number
  }
  /** by name */
  windows: {
    main: WindowState
    pip: WindowState
  }
}

/** A subtitle track. */
export interface SubtitleTrack {
  /** language, by its code */
  lang: string
  /** number of its stream */
  pid: number
  /** the set can tell about it */
  readable: boolean
  /** its kind */
  type: string
}

/** Tracks, and those in use. */
export interface Tracks {
  /** sound tracks */
  audio: AudioTrack[]
  /** position of the one that is heard, from 0 on */
  audioInUse: number
  /** position of the one that is seen; -1 for none */
  subtitleInUse: number
  /** subtitle tracks */
  subtitles: SubtitleTrack[]
}

/** Other tracks of the service on a window's screen are in use. */
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

/** The tracks that are in use. */
export interface TracksInUse {
  /** position of the one that is heard, from 0 on */
  audio: number
  /** position of the one that is seen; -1 for none */
  subtitle: number
}

/** A window's TV mode, in the TV service's numbers. */
export interface TvMode {
  /** antenna mode */
  antenna: number
  /** service mode */
  service: number
}

/** All about a command. */
export interface Why {
  /** platform calls, in order, a line each */
  calls: string[]
  /** its number, over all sessions */
  command: number
  /** milliseconds that latencies took on the set's clock */
  delay: number
  /** milliseconds of real time */
  duration: number
  /** that it ran on */
  engine: string
  /** settings keys that changed, in order */
  keys: SettingChange[]
  /** the parameters were given as a list */
  list: boolean
  /** messages, in order */
  log: LogMessage[]
  /** of the command */
  name: string
  /** what opening its engine did, where it was the first on it */
  opening?: Cause
  /** as the engine was given them */
  parameters: string[]
  /** null where the engine threw */
  reply: Reply | null
  /** that ran it */
  session: string
}

/** What is on a window's screen. */
export interface WindowScreen {
  /** on screen before */
  previous: ServiceName | null
  /** on screen */
  service: ServiceName | null
}

/** Where a window's picture comes from. */
export interface WindowSource {
  /** of the source */
  number: number
  /** the source before */
  previous: number
  /** what the source is doing, in the TV service's numbers */
  state: number
}

/** A window and what is on it. */
export interface WindowState {
  /** that comes in; null where none does */
  picture: Picture | null
  /** on the screen */
  plane: Plane
  /** on screen before */
  previousService: ServiceName | null
  /** as the set tells it */
  resolution: {
    /** it follows from the picture */
    auto: boolean
    /** null without a picture */
    code: number | null
  }
  /** on screen */
  service: ServiceName | null
  /** where its picture comes from */
  source: {
    /** of the input; null where it is none */
    name: string | null
    /** of the source */
    number: number
    /** the source before */
    previous: number
    /** what the source is doing, in the TV service's numbers */
    state: number
  }
  /** of the service */
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
  /** a fault was set, has hit a call, or is gone */
  fault: FaultGoneEvent | FaultHitEvent | FaultSetEvent
  /** the favourite groups of a service */
  favourites: FavouritesEvent
  /** an input */
  inputs: InputEvent
  /** anything else that can be set from outside */
  knob: KnobEvent
  /** what the plug-in has logged */
  log: LogEvent
  /** a window's TV mode */
  mode: ModeEvent
  /** how a window's picture stands on the screen */
  plane: PlaneEvent
  /** the service on a window's screen */
  service: ServiceEvent
  /** the list of services, a field of one of them, or the whole set where it has started anew */
  services: ServiceFieldEvent | ServicesEvent | SetStartedEvent
  /** a session was opened or closed */
  session: SessionEvent
  /** a settings key */
  settings: SettingEvent
  /** where a window's picture comes from, or what the secondary TV stack brings */
  source: IspEvent | SourceEvent
  /** tracks in use, or those that a service has */
  tracks: ServiceTracksEvent | TracksEvent
}
