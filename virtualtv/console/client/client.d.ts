// SPDX-License-Identifier: MIT
/** The virtual TV: `createTv` in memory and `connect` to one on a server for tests and tools, `installWindow` for apps. */
import type {
  Commands, Events, Fault, Knob, KnobKind, Operation, Parameter, Scan, Service, Session, Setting, State, Why,
} from './commands.js'
import type {TranscriptOptions, TranscriptPlugin, TranscriptResult} from './transcript.js'

export * from './commands.js'

/** The same functions, answering promises. */
export type Promised<T> = {
  readonly [Name in keyof T]: T[Name] extends (...args: infer Args) => infer Result
    ? (...args: Args) => Promise<Result> : never
}

/** Who the app says that it is. */
export interface Application {
  appId?: string
  widgetId?: string
}

export interface ConnectOptions extends Application {
  /** What a server that was started with --token wants. */
  token?: string
  /** Milliseconds for which calls wait for a connection that broke; 10,000 by default. */
  patience?: number
  /** Milliseconds before it connects again, 100 by default; doubles with each try that fails. */
  firstPause?: number
  /** The longest of these pauses, 5,000 by default. */
  longestPause?: number
}

/** The server answered a call with an error. A failure code of a command is no error but a value. */
export class EmpRpcError extends Error {
  readonly code: number
  /** Its `reason` is a line for a person. */
  readonly data?: {reason?: string, [name: string]: unknown}
  /** The method that was called. */
  readonly method: string
}

/** The connection broke, could not be made or was closed, or the server refused the request with a status of HTTP. */
export class EmpConnectionError extends Error {
  /** True when the call may have run; false when it has not, so that it can be made once more. */
  readonly sent: boolean
  /** Of the HTTP answer, where there was one. */
  readonly status?: number
}

/** A TV in memory can't be made, kept or started. */
export class EmpTvError extends Error {
  /**
   * What is to blame: the module, the snapshot or the list that was given; there is not enough memory; it has broken down
   * (`failed`). With `persist`: another tab or this page has the TV (`in use`), the browser can't keep it (`storage`), or what it
   * keeps can't be used (`kept`).
   */
  readonly what: 'module' | 'snapshot' | 'list' | 'memory' | 'failed' | 'in use' | 'storage' | 'kept'
  /** What is wrong with a snapshot, a list or what is kept, and where. */
  readonly reason?: string
  /** What is kept and can't be used. */
  readonly snapshot?: unknown
}

export type Topic = keyof Events | '*'

/** What a listener is given first, and again where events were missed that the server no longer holds (`resync`). */
export interface StateEvent {
  /** That was listened to. */
  topic: Topic
  /** The state is as of this event. */
  number: number
  /** The server's run: its numbers count from its start. */
  server: string
  /** What `tv.state()` answers. */
  state: State
  resync?: true
}

/** What a listener to a topic is told of a change, one of several kinds; their members say which. */
export type ChangeEvent<Name extends Topic = '*'> =
  (Name extends keyof Events ? Events[Name] : Events[keyof Events]) & {state?: undefined}

/** What a listener to a topic is given: only the first has a `state`. */
export type TvEvent<Name extends Topic = '*'> = StateEvent | ChangeEvent<Name>

/** A type that follows from another parameter, never from this one. */
type Given<Type> = [Type][Type extends unknown ? 0 : never]

export interface ConnectionEvent {
  connected: boolean
  /** Why it broke. */
  reason?: string
}

/** Ends listening. `ready` is fulfilled when the listener has the present state, and fails where the server refuses. */
export interface Unsubscribe {
  (): void
  readonly ready: Promise<void>
}

/** All that the set keeps. */
export type Snapshot = Record<string, any>

/** A change of the set, by the number of the state that it leads to. */
export interface Revision {
  revision: number
}

/** What services have to meet, all of it. */
export interface ServicesQuery {
  offset?: number
  limit?: number
  /** In the name. */
  text?: string
  antenna?: 'terrestrial' | 'cable' | 'satellite'
  kind?: 'television' | 'radio' | 'data'
  /** The section of the list in which they were found. */
  group?: string
  /** The favourite group that they are in. */
  favourite?: number
  /** Their major number. */
  major?: number
  /** The one of that key. */
  key?: number
}

export interface FaultOptions {
  /** The first call that it hits, counted from now; 1 by default. */
  nth?: number
  /** How many calls it hits; 1 by default. */
  times?: number | 'always'
  /** What the call answers: a number or a text; null, 'unwritten' or 'throw'. */
  result?: number | string | null
  /** What it writes, by the names of its outputs. */
  outputs?: Record<string, number | string>
  window?: 'main' | 'pip'
  /** The session whose calls it hits. */
  session?: string
}

export interface ImportOptions {
  /** Of the file, for messages. */
  name?: string
  format?: string
  /** Adds to the services rather than replacing them. */
  add?: boolean
  /** Of names that do not tell theirs. */
  encoding?: string
}

export interface ImportResult {
  imported: number
  added: number
  changed: number
  gone: number
  /** How many lines could not be read; the first hundred are in `problems`. */
  total: number
  problems: {line?: number, at: string, reason: string}[]
}

export interface ExportResult {
  /** The list. */
  content: string
  /** How many services are in it. */
  services: number
  /** How many the format can't hold at all. */
  leftOut: number
  /** What it can't hold of the others, and of how many. */
  lost: {what: string, services: number}[]
}

export interface ScanOptions {
  /** A file of the server's, beneath the directory that clients may use. */
  path?: string
  /** The recording itself, in base64. */
  content?: string
  /** Of a recording whose content comes in several calls; what is in it is told with the last. */
  part?: 'first' | 'next' | 'last'
  /** Replaces the services by those found. */
  import?: boolean
  /** Keeps the services that are there. */
  add?: boolean
}

/** A connected client. Methods without a comment are the server's `tv.` method of the same name. */
export interface Tv {
  readonly isVirtual: true
  /** The server's address, without a slash at the end; empty for a TV in memory. */
  readonly address: string
  /** The session of this connection; another one after a reconnect. */
  readonly session: string
  /** The server's run. */
  readonly server: string
  readonly connected: boolean
  /** A function for each command of the plug-in. */
  readonly window: Promised<Commands>
  /** Any command by name, as on the set; undefined where the engine refuses without a reply. */
  Execute(name: string, ...parameters: Parameter[]): Promise<string | number | undefined>
  executeWithParamList(name: string, parameters?: Parameter[]): Promise<string | number | undefined>
  /** Any method of the server, with its whole result. */
  call(method: string, params?: object | unknown[]): Promise<any>
  /**
   * Listens to a topic: the present state first, then each change. After a broken connection it goes on with the events
   * that were missed. `after` is the number of an event: those behind it that the server holds are told, too, behind the
   * present state. It counts for the first listener of a connection.
   */
  on<Name extends Topic>(
    topic: Name, listener: (event: TvEvent<Given<Name>>) => void, options?: {after?: number}): Unsubscribe
  /** Listens to the connection itself: whether it is there, then each change. */
  on(topic: 'connection', listener: (event: ConnectionEvent) => void): Unsubscribe
  /** Ends the connection, and with it the session. Calls under way fail. */
  close(): Promise<void>
  /** A line of the shell; what it prints, line by line. */
  run(line: string): Promise<string[]>
  state(): Promise<State>
  /** `groups` names all that there are, whatever the query selects. */
  services(query?: ServicesQuery): Promise<{revision: number, total: number, groups: string[], services: Service[]}>
  knobs(): Promise<{knobs: Knob[], kinds: KnobKind[]}>
  /** The value of a knob, as the shell's `.get` prints it. */
  get(name: string): Promise<string>
  set(name: string, value: string | number): Promise<Revision>
  operations(): Promise<Operation[]>
  /** Makes calls to the set fail; the number of the fault. */
  fault(operation: string, options?: FaultOptions): Promise<number>
  faults(): Promise<Fault[]>
  /** Removes a fault, or all. */
  clearFaults(id?: number): Promise<object>
  settings(): Promise<Setting[]>
  setSetting(key: string, value: string | number): Promise<Revision>
  removeSetting(key: string): Promise<Revision>
  /** Runs a transcript on a set of the server's own, which leaves the one that is served alone. */
  check(transcript: string): Promise<{passed: boolean, diff: string}>
  /** Imports a channel list, given as its text. */
  import(content: string, options?: ImportOptions): Promise<ImportResult>
  /** The services as a channel list: JSON, which holds all, or in another format. */
  export(format?: 'vdr' | 'dvbv5' | 'm3u' | 'json'): Promise<ExportResult>
  /** Finds the services in a recording of a broadcast: `path` or `content` is wanted. */
  scan(options: ScanOptions): Promise<Scan>
  /** Replaces the services by those that this session found in its last scan, or adds them. */
  importScan(options?: {add?: boolean}): Promise<ImportResult>
  /** Edits a service of the list, by its id. `value` is the name, the number, 'on' or 'off'; none to remove it. */
  editService(service: string, change: 'rename' | 'renumber' | 'move' | 'hide' | 'lock' | 'remove',
    value?: string | number): Promise<Revision>
  sessions(): Promise<Session[]>
  restart(): Promise<Revision>
  reset(): Promise<Revision>
  /** @param before  the number of a command: as it was right before that; as it is without it */
  snapshot(before?: number): Promise<Snapshot>
  restore(snapshot: Snapshot): Promise<Revision>
  /** All about a command, by the number that its events carry; without one, about the last of this session. */
  why(command?: number): Promise<Why>
  /** The state as it was right behind a command; which one is as for `why`. */
  history(command?: number): Promise<State>
  /** Makes the set what it persisted then. */
  goBack(command: number): Promise<Revision>
  /** The server's OpenRPC document. */
  discover(): Promise<Record<string, any>>
}

/**
 * Connects to a server, as in `await connect('http://127.0.0.1:8090')`.
 * @throws EmpConnectionError when there is none
 */
export function connect(address: string, options?: ConnectOptions): Promise<Tv>

/**
 * What a connection needs of a WebSocket. It opens, and tells messages and its end, in a later turn, never within `send`.
 */
export interface SocketLike {
  /** As of a WebSocket: 1 while it is open, 3 when it has ended. */
  readonly readyState: number
  onopen?: ((event?: any) => void) | null
  /** `data` is a text. */
  onmessage?: ((event: any) => void) | null
  /** `message`, where there is one, goes into the reason that callers see. */
  onerror?: ((event: any) => void) | null
  /** Has `code` and `reason`. */
  onclose?: ((event: any) => void) | null
  send(text: string): void
  close(code?: number, reason?: string): void
}

/** Connects through sockets of the caller's: `dial` makes one, and another one when that has ended. */
export function connect(dial: () => SocketLike | Promise<SocketLike>, options?: ConnectOptions): Promise<Tv>

export interface TvOptions extends Application {
  /** What the set starts from, as `tv.snapshot()` answers it; by default the set that is built in. */
  snapshot?: Snapshot
  /** Text of a channel list that the set imports. */
  list?: string
  /** False lets no call take the time that latencies give it, as `--no-wait` of the server. */
  wait?: boolean
  /** Bytes that the set may take, up to 2 GiB. A call that needs more fails, and the set goes on. */
  maximumMemory?: number
}

export interface CreateTvOptions extends TvOptions {
  /** The module, its bytes, or where it is, in place of emp-window.wasm beside this file. */
  module?: unknown
}

export interface KeptTv extends Tv {
  /** Fulfilled when all that has changed so far is in IndexedDB; rejects with EmpTvError where it can't be kept. */
  saved(): Promise<void>
  /** Saves too, before it ends the TV. */
  close(): Promise<void>
}

/**
 * Makes a TV in memory, which ends with `close()`.
 * @throws EmpTvError
 */
export function createTv(options?: CreateTvOptions): Promise<Tv>
/**
 * The same, kept in the browser's IndexedDB under a key, which one tab at a time has. What is there is what the TV starts
 * from; `snapshot` and `list` count where nothing is there yet.
 */
export function createTv(options: CreateTvOptions & {persist: string}): Promise<KeptTv>

/** Removes what is kept under a key, unless a tab has it in use. */
export function forgetTv(key: string): Promise<void>

/** The synchronous object that an app has on the set. Its calls throw EmpConnectionError where there is no TV. */
export interface EmpWindow extends Readonly<Commands> {
  readonly isVirtual: true
  /**
   * Runs a command: a number, or a text. Where the engine refuses, what was written all the same, else undefined.
   */
  Execute(command: string, p1?: Parameter, p2?: Parameter, p3?: Parameter, p4?: Parameter): string | number | undefined
  /** A line of the virtual TV's shell; what it prints, line by line. */
  run(line: string): string[]
  /** The TV in memory that it is on: its state, faults, events and all else. */
  readonly tv?: Tv
  /**
   * `keyCode` of the keys that the remote control on the virtual TV's page sends, by their standard `key` names. An app
   * whose set has other numbers replaces them. Keys without a number have 0, digits those of their characters.
   */
  keyCodes: Record<string, number>
  /** Ends the session. The next call opens another one. */
  close(): void
}

export interface InstallOptions extends Application {
  /** The property of `target` that the object becomes. */
  name: string
  /** Of a server. */
  address?: string
  token?: string
  /** What `createTv` has made, in place of a server. */
  tv?: Tv
}

/** Puts the object into `target`, mostly `globalThis`. The same name gets the same object (hot reload). */
export function installWindow(target: object, options: InstallOptions & ({address: string} | {tv: Tv})): EmpWindow

/** What the script tv.js offers as `empWindow` where its line names no object. */
export interface EmpWindowScript {
  /** As the module's, but at once, and kept nowhere. */
  createTv(options?: TvOptions): Tv
  installWindow: typeof installWindow
  EmpTvError: typeof EmpTvError
}

/** Runs a transcript's lines on anything that has `Execute`, a real set's object too. */
export function runTranscript(text: string, plugin: TranscriptPlugin, options?: TranscriptOptions): Promise<TranscriptResult>
