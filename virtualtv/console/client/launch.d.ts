// SPDX-License-Identifier: MIT
/** A separate virtual TV for a test, in Node. */
import type {ConnectOptions, Snapshot, Tv} from './client.js'

export interface LaunchOptions extends ConnectOptions {
  /** File of a channel list to import. */
  list?: string | URL
  /** File of a snapshot, or a result of `tv.snapshot()`. */
  snapshot?: string | URL | Snapshot
  /** Directory for the set's state; without one the set is fresh and in memory. */
  state?: string | URL
  /** Path of emp-window; by default the variable EMP_WINDOW, or else searched in the PATH. */
  program?: string | URL
  /** Further arguments for `emp-window serve`, such as '--allow-origin'. */
  options?: string[]
}

export interface LaunchedTv extends Tv {
  /** Process id of emp-window. */
  readonly pid: number
  /** Also ends emp-window; fulfilled when it has ended. */
  close(): Promise<void>
}

/** Starts a virtual TV and connects to it. It ends with `close()`, and with this process. */
export function launch(options?: LaunchOptions): Promise<LaunchedTv>
