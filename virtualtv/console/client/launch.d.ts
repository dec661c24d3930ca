// SPDX-License-Identifier: MIT
/** A virtual TV of a test's own, for Node. */
import type {ConnectOptions, Snapshot, Tv} from './client.js'

export interface LaunchOptions extends ConnectOptions {
  /** File of a channel list that the set imports. */
  list?: string | URL
  /** File of a snapshot, or what `tv.snapshot()` answered. */
  snapshot?: string | URL | Snapshot
  /** Directory of the set's state, which is kept; without one the set is fresh and in memory. */
  state?: string | URL
  /** Path of emp-window; by default the variable EMP_WINDOW, else it is looked for in the PATH. */
  program?: string | URL
  /** Further words for `emp-window serve`, such as '--allow-origin'. */
  options?: string[]
}

export interface LaunchedTv extends Tv {
  /** Of emp-window. */
  readonly pid: number
  /** Ends emp-window too; done when it has ended. */
  close(): Promise<void>
}

/** Starts a virtual TV and connects to it. It ends with `close()`, and with this process. */
export function launch(options?: LaunchOptions): Promise<LaunchedTv>
