// SPDX-License-Identifier: MIT
/*
 * The data of the page, in named parts. Subscribers of parts are notified once per frame, regardless of the number of
 * changes, so events may arrive at any rate.
 */

/**
 * @typedef {object} Known
 * @property {{connected: boolean, reason?: string, advice?: string, since: number}} connection  `advice`:
 *   what a person can do
 * @property {any} state  the document of `tv.state`; null until it is known
 * @property {any} past  the past state that is shown: {command, entry, state}; null for none
 * @property {number} services  increases when the list of services or their favourite groups change
 * @property {string | null | undefined} keptIn  directory of the set's state; null for a set in memory
 * @property {any[]} sessions  as `tv.sessions` lists them
 * @property {any[]} faults  as `tv.faults` lists them
 * @property {any[]} settings  as `tv.settings` lists them
 * @property {any} knobs  as `tv.knobs` lists them; null until a pane needs them
 * @property {any[]} commands  the plug-in's commands: {name, help, answers, failures: [{value, description}], parameters: [{name, help, schema}]}
 * @property {any[]} operations  as `tv.operations` lists them
 * @property {number} timeline  increases when the timeline changes
 * @property {any} deed  the last action of the page: {method, params, result, error, data, isUnderWay}; `data` is the
 *   error's
 * @property {{address: string, name: string} | null} app  the app that runs over the picture
 * @property {{main: string, pip: string}} live  why a window's recording is not played; empty without a problem
 * @property {boolean} sound  true if the sound of the main window is turned on
 * @property {'tv' | 'app'} keys  where the keys of the remote control go
 */

export class Store {
  /** @type {Known} */
  #known
  /** @type {Set<{parts: Set<string>, listener: () => void}>} */
  #listeners = new Set()
  /** @type {Set<string>} */
  #changed = new Set()
  #isScheduled = false

  /** @param {Known} known */
  constructor(known) {
    this.#known = known
  }

  /** @template {keyof Known} Part @param {Part} part @return {Known[Part]} */
  get(part) {
    return this.#known[part]
  }

  /** @template {keyof Known} Part @param {Part} part @param {Known[Part]} value */
  set(part, value) {
    if (this.#known[part] === value) return
    this.#known[part] = value
    this.#changed.add(part)
    if (this.#isScheduled) return
    this.#isScheduled = true
    onFrame(() => this.#tell())
  }

  /**
   * Subscribes to changes of these parts, at most one call per frame.
   * @param {(keyof Known)[]} parts
   * @param {() => void} listener
   * @return {() => void} unsubscribes
   */
  subscribe(parts, listener) {
    const entry = {parts: new Set(parts), listener}
    this.#listeners.add(entry)
    return () => this.#listeners.delete(entry)
  }

  #tell() {
    this.#isScheduled = false
    const changed = this.#changed
    this.#changed = new Set()
    for (const {parts, listener} of [...this.#listeners]) {
      if ([...changed].some(part => parts.has(part))) listener()
    }
  }
}

/** Calls back before the next frame, or soon in a hidden tab, which has no frames. @param {() => void} callback */
export function onFrame(callback) {
  if (document.hidden) setTimeout(callback, 100)
  else requestAnimationFrame(callback)
}

/** The data of this page. */
export const store = new Store({
  connection: {connected: false, since: Date.now()},
  state: null, past: null, services: 0, keptIn: undefined, sessions: [], faults: [], settings: [], knobs: null, commands: [], operations: [],
  timeline: 0, deed: null, app: null, live: {main: '', pip: ''}, sound: false, keys: 'tv',
})
