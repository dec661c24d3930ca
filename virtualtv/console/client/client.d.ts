// SPDX-License-Identifier: MIT
/**
 * The virtual TV: for tests and tools, `createTv` creates one in memory, and `connect` connects to a server;
 * `installWindow` is for apps.
 */
import type {
  Commands, Events, Fault, Knob, KnobKind, Operation, Parameter, Scan, Service, Session, Setting, State, Why,
} from './commands.js'
import type {TranscriptOptions, TranscriptPlugin, TranscriptResult} from './transcript.js'

export * from './commands.js'

/** The same functions, returning promises. */
export type Promised<T> = {
  readonly [Name in keyof T]: T[Name] extends (...args: infer Args) => infer Result
    ? (...args: Args) => Promise<Result> : never
}

/** The identity of the app. */
export interface Application {
  appId?: string
  widgetId?: string
}

export interface ConnectOptions extends Application {
  /** The token, for a server that was started with --token. */
  token?: string
  /** Milliseconds that calls wait for a broken connection to return; 10,000 by default. */
  patience?: number
  /** Milliseconds before reconnecting, 100 by default; doubles with each failed attempt. */
  firstPause?: number
  /** The longest of these pauses, 5,000 by default. */
  longestPause?: number
}

/** The server answered a call with an error. A failure code of a command is a value, not an error. */
export class EmpRpcError extends Error {
  readonly code: number
  /** Its `reason` is a one-line explanation. */
  readonly data?: {reason?: string, [name: string]: unknown}
  /** The method that was called. */
  readonly method: string
}

/** The connection broke, could not be made or was closed, or the server refused the request with an HTTP status. */
export class EmpConnectionError extends Error {
  /** True when the call may have run; false when it has not run and can be repeated. */
  readonly sent: boolean
  /** The status of the HTTP answer, if there was one. */
  readonly status?: number
}

/** A TV in memory can't be created, persisted or started. */
export class EmpTvError extends Error {
  /**
   * The cause: the given module, snapshot or list is invalid; there is not enough memory; or the TV has broken down
   * (`failed`). With `persist`: another tab, or this page, already uses the key (`in use`); the browser can't store the
   * TV (`storage`); or the stored data can't be used (`kept`).
   */
  readonly what: 'module' | 'snapshot' | 'list' | 'memory' | 'failed' | 'in use' | 'storage' | 'kept'
  /** The error in a snapshot, a list or stored data, and its place. */
  readonly reason?: string
  /** The stored data that can't be used. */
  readonly snapshot?: unknown
}

export type Topic = keyof Events | '*'

/**
 * The first argument of a listener. It is passed again if the listener missed events that the server no longer has
 * (`resync`).
 */
export interface StateEvent {
  /** The subscribed topic. */
  topic: Topic
  /** Number of the last event; the state is as of that event. */
  number: number
  /** The id of the server's run, within which events are numbered. */
  server: string
  /** The result of `tv.state()`. */
  state: State
  resync?: true
}

/** The argument of a listener for a change: one of the kinds of events of the topic, distinguished by their members. */
export type ChangeEvent<Name extends Topic = '*'> =
  (Name extends keyof Events ? Events[Name] : Events[keyof Events]) & {state?: undefined}

/** The argument of a listener to a topic; only the first has a `state`. */
export type TvEvent<Name extends Topic = '*'> = StateEvent | ChangeEvent<Name>

/** Prevents inference of the type from this parameter. */
type Given<Type> = [Type][Type extends unknown ? 0 : never]

export interface ConnectionEvent {
  connected: boolean
  /** Why the connection broke. */
  reason?: string
}

/**
 * Unsubscribes. `ready` is fulfilled when the listener has received the current state, and rejects if the server
 * refuses.
 */
export interface Unsubscribe {
  (): void
  readonly ready: Promise<void>
}

/** Everything that the set persists. */
export type Snapshot = Record<string, any>

/** The number of the state after a change of the set. */
export interface Revision {
  revision: number
}

/** Conditions for services; all must be met. */
export interface ServicesQuery {
  offset?: number
  limit?: number
  /** Text contained in the name. */
  text?: string
  antenna?: 'terrestrial' | 'cable' | 'satellite'
  kind?: 'television' | 'radio' | 'data'
  /** Section of the imported list. */
  group?: string
  /** Number of their favourite group. */
  favourite?: number
  /** Their major number. */
  major?: number
  /** Only the service with this key. */
  key?: number
}

export interface FaultOptions {
  /** The first call that it hits, counted from now; 1 by default. */
  nth?: number
  /** How many calls it hits; 1 by default. */
  times?: number | 'always'
  /** Result of the call: a number or a text; null, 'unwritten' or 'throw'. */
  result?: number | string | null
  /** Values of outputs, by name. */
  outputs?: Record<string, number | string>
  window?: 'main' | 'pip'
  /** Only calls of this session. */
  session?: string
}

export interface ImportOptions {
  /** Name of the file, for messages. */
  name?: string
  format?: string
  /** Adds to the services rather than replacing them. */
  add?: boolean
  /** Encoding of names that do not specify their own. */
  encoding?: string
}

export interface ImportResult {
  imported: number
  added: number
  changed: number
  gone: number
  /** Number of lines that could not be read; the first hundred are in `problems`. */
  total: number
  problems: {line?: number, at: string, reason: string}[]
}

export interface ExportResult {
  /** The list. */
  content: string
  /** Number of services in the list. */
  services: number
  /** Number of services that the format can't hold at all. */
  leftOut: number
  /** Data that the format can't hold, and the number of services concerned. */
  lost: {what: string, services: number}[]
}

export interface ScanOptions {
  /** Path of a file beneath the server's directory for clients. */
  path?: string
  /** The recording itself, in base64. */
  content?: string
  /** Place of this content in a recording sent in several calls; the last call returns the services. */
  part?: 'first' | 'next' | 'last'
  /** Replaces the services by the found ones. */
  import?: boolean
  /** Adds to the services of the set. */
  add?: boolean
}

/** A connected client. Methods without a comment call the server's `tv.` method of the same name. */
export interface Tv {
  readonly isVirtual: true
  /** The server's address, without a slash at the end; empty for a TV in memory. */
  readonly address: string
  /** Name of this connection's session; it changes with a reconnect. */
  readonly session: string
  /** Id of the server's run. */
  readonly server: string
  readonly connected: boolean
  /** A function for each command of the plug-in. */
  readonly window: Promised<Commands>
  /** Runs any command by name, as on the set. Returns undefined if the engine refuses it without a reply. */
  Execute(name: string, ...parameters: Parameter[]): Promise<string | number | undefined>
  executeWithParamList(name: string, parameters?: Parameter[]): Promise<string | number | undefined>
  /** Calls any method of the server, and returns its whole result. */
  call(method: string, params?: object | unknown[]): Promise<any>
  /**
   * Subscribes to a topic: the listener is called with the current state, then with each change. After a reconnect it
   * receives the events that it missed. `after` is the number of an event: right after the state, the listener also
   * receives the later events that the server still has. Only the first listener of a connection can use it.
   */
  on<Name extends Topic>(
    topic: Name, listener: (event: TvEvent<Given<Name>>) => void, options?: {after?: number}): Unsubscribe
  /** Subscribes to the connection itself: its current state, then each change. */
  on(topic: 'connection', listener: (event: ConnectionEvent) => void): Unsubscribe
  /** Ends the connection, and with it the session. Calls in progress fail. */
  close(): Promise<void>
  /** Runs a line of the shell, and returns its output as lines. */
  run(line: string): Promise<string[]>
  state(): Promise<State>
  /** `groups` lists all groups, regardless of the query. */
  services(query?: ServicesQuery): Promise<{revision: number, total: number, groups: string[], services: Service[]}>
  knobs(): Promise<{knobs: Knob[], kinds: KnobKind[]}>
  /** The value of a knob, as the shell's `.get` prints it. */
  get(name: string): Promise<string>
  set(name: string, value: string | number): Promise<Revision>
  operations(): Promise<Operation[]>
  /** Makes calls to the set fail. Returns the number of the fault. */
  fault(operation: string, options?: FaultOptions): Promise<number>
  faults(): Promise<Fault[]>
  /** Removes a fault, or all. */
  clearFaults(id?: number): Promise<object>
  settings(): Promise<Setting[]>
  setSetting(key: string, value: string | number): Promise<Revision>
  removeSetting(key: string): Promise<Revision>
  /** Runs a transcript on a separate set of the server, which does not affect the served one. */
  check(transcript: string): Promise<{passed: boolean, diff: string}>
  /** Imports a channel list, given as a text. */
  import(content: string, options?: ImportOptions): Promise<ImportResult>
  /** Returns the services as a channel list: in JSON, which holds everything, or in another format. */
  export(format?: 'vdr' | 'dvbv5' | 'm3u' | 'json'): Promise<ExportResult>
  /** Finds the services in a recording of a broadcast. Requires `path` or `content`. */
  scan(options: ScanOptions): Promise<Scan>
  /** Replaces the services by those of this session's last scan, or adds them. */
  importScan(options?: {add?: boolean}): Promise<ImportResult>
  /** Edits a service of the list, by its id. `value` is the name, the number, 'on' or 'off'; omit it for 'remove'. */
  editService(service: string, change: 'rename' | 'renumber' | 'move' | 'hide' | 'lock' | 'remove',
    value?: string | number): Promise<Revision>
  sessions(): Promise<Session[]>
  restart(): Promise<Revision>
  reset(): Promise<Revision>
  /** @param before  number of a command: the state right before it; by default the current state */
  snapshot(before?: number): Promise<Snapshot>
  restore(snapshot: Snapshot): Promise<Revision>
  /**
   * Returns everything about a command, given the number from its events; by default about the last command of this
   * session.
   */
  why(command?: number): Promise<Why>
  /** Returns the state right after a command, which is chosen as for `why`. */
  history(command?: number): Promise<State>
  /** Restores what the set had persisted right after the command. */
  goBack(command: number): Promise<Revision>
  /** Returns the server's OpenRPC document. */
  discover(): Promise<Record<string, any>>
}

/**
 * Connects to a server, as in `await connect('http://127.0.0.1:8090')`.
 * @throws EmpConnectionError when there is no server
 */
export function connect(address: string, options?: ConnectOptions): Promise<Tv>

/**
 * The part of a WebSocket that a connection uses. It must open, and report messages and its end, in a later turn, never
 * within `send`.
 */
export interface SocketLike {
  /** As for a WebSocket: 1 while it is open, 3 when it has ended. */
  readonly readyState: number
  onopen?: ((event?: any) => void) | null
  /** `data` is a text. */
  onmessage?: ((event: any) => void) | null
  /** A `message` of the event becomes part of the reason that callers see. */
  onerror?: ((event: any) => void) | null
  /** Has `code` and `reason`. */
  onclose?: ((event: any) => void) | null
  send(text: string): void
  close(code?: number, reason?: string): void
}

/** Connects through the caller's own sockets. `dial` creates a socket, and a new one after each has ended. */
export function connect(dial: () => SocketLike | Promise<SocketLike>, options?: ConnectOptions): Promise<Tv>

export interface TvOptions extends Application {
  /** The initial state, a result of `tv.snapshot()`; by default the built-in set. */
  snapshot?: Snapshot
  /** Text of a channel list to import. */
  list?: string
  /** If false, replies are not delayed for latencies, as with `--no-wait` of the server. */
  wait?: boolean
  /** Most bytes that the set may use, up to 2 GiB. A call that needs more fails, and the set continues. */
  maximumMemory?: number
}

export interface CreateTvOptions extends TvOptions {
  /** The module, its bytes or its address; by default emp-window.wasm beside this file. */
  module?: unknown
}

export interface KeptTv extends Tv {
  /** Fulfilled when all changes so far are in IndexedDB; rejects with EmpTvError if they can't be stored. */
  saved(): Promise<void>
  /** Saves all changes, then ends the TV. */
  close(): Promise<void>
}

/**
 * Creates a TV in memory, which ends with `close()`.
 * @throws EmpTvError
 */
export function createTv(options?: CreateTvOptions): Promise<Tv>
/**
 * Creates a TV that is persisted in the browser's IndexedDB under a key. Only one tab at a time can use a key. The TV
 * starts from the stored data; `snapshot` and `list` are used only if nothing is stored yet. It ends with `close()`.
 * @throws EmpTvError
 */
export function createTv(options: CreateTvOptions & {persist: string}): Promise<KeptTv>

/** Removes the data stored under a key, unless a tab uses it. */
export function forgetTv(key: string): Promise<void>

/** The synchronous object that an app has on the set. Its calls throw EmpConnectionError when there is no TV. */
export interface EmpWindow extends Readonly<Commands> {
  readonly isVirtual: true
  /** Runs a command. Returns its reply; if the engine refuses the command without a reply, undefined. */
  Execute(command: string, p1?: Parameter, p2?: Parameter, p3?: Parameter, p4?: Parameter): string | number | undefined
  /** Runs a line of the virtual TV's shell, and returns its output as lines. */
  run(line: string): string[]
  /** The TV in memory behind the object, with its state, faults, events and everything else. */
  readonly tv?: Tv
  /**
   * `keyCode` of the keys that the remote control on the virtual TV's page sends, by their standard `key` names. An app
   * whose set has other numbers replaces them. Keys without a number have 0, digits those of their characters.
   */
  keyCodes: Record<string, number>
  /** Ends the session. The next call opens a new one. */
  close(): void
}

export interface InstallOptions extends Application {
  /** Name of the object's property in `target`. */
  name: string
  /** Address of a server. */
  address?: string
  token?: string
  /** A result of `createTv`, instead of a server. */
  tv?: Tv
}

/** Puts the object into `target`, usually `globalThis`. The same name returns the same object (hot reload). */
export function installWindow(target: object, options: InstallOptions & ({address: string} | {tv: Tv})): EmpWindow

/** The global `empWindow` of the script tv.js, if its line names no object. */
export interface EmpWindowScript {
  /** Like the module's function, but synchronous, and without persistence. */
  createTv(options?: TvOptions): Tv
  installWindow: typeof installWindow
  EmpTvError: typeof EmpTvError
}

/** Runs a transcript's lines on anything that has `Execute`, including a real set's object. */
export function runTranscript(text: string, plugin: TranscriptPlugin, options?: TranscriptOptions): Promise<TranscriptResult>
