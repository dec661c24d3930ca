// SPDX-License-Identifier: MIT
/*
 * The set of a tab, on the thread where it runs: creates it, from stored data or a link, and serves clients.
 */
import {keepSet} from '../kept.js'
import {load} from '../load.js'
import {makeSet} from '../memory.js'
import {servePort} from '../port.js'
import '../window.js'

const {sets} = /** @type {any} */ (globalThis)[Symbol.for('emp-window/2')]

/**
 * Where the set came from, and whether it is persisted.
 * @typedef {object} Keeping
 * @property {'kept' | 'link' | 'broken link' | 'in use' | 'storage' | 'unusable'} as
 * @property {string} [reason]  why it is not persisted
 * @property {string} [session]  the session that persists it
 * @property {any} [unusable]  stored data that can't be used
 */

/**
 * What a set is created from.
 * @typedef {object} From
 * @property {string} key  the key of the stored set
 * @property {number} patience  ms to wait for another page to release the key
 * @property {any} [snapshot]  the snapshot in the link
 * @property {string} [problem]  why the link can't be read
 */

/** @typedef {{set: any, keeping: Keeping, keeper?: {close: () => Promise<void>}}} Made */

/** @param {WebAssembly.Module} module @param {any} snapshot @return {Made} */
function fromLink(module, snapshot) {
  try {
    return {set: makeSet(module, {snapshot}), keeping: {as: 'link'}}
  } catch (error) {
    return {set: makeSet(module, {}), keeping: {as: 'broken link', reason: reasonOf(error)}}
  }
}

/** @param {any} error */
const reasonOf = error => error.reason ?? error.message

/** What becomes of the set, by the error that kept it from being persisted. @type {{[what: string]: Keeping['as']}} */
const ways = {'in use': 'in use', storage: 'storage', kept: 'unusable'}

/** @param {WebAssembly.Module} module @param {From} from @return {Promise<Made>} */
async function fromStorage(module, {key, patience}) {
  try {
    const {set, keeper} = await keepSet(key, (/** @type {any} */ snapshot, /** @type {any} */ unusable) => {
      try {
        return makeSet(module, snapshot === undefined ? {} : {snapshot})
      } catch (error) {
        throw unusable(error)
      }
    }, patience)
    return {set, keeping: {as: 'kept', session: keeper.session}, keeper}
  } catch (error) {
    const {what, message, reason, snapshot} = /** @type {any} */ (error)
    const as = ways[what]
    if (!as) throw error
    const why = reason ?? message.replace(`persist '${key}': `, '')
    return {set: makeSet(module, {}), keeping: {as, reason: why, unusable: snapshot}}
  }
}

/** @param {WebAssembly.Module} module @param {From} from @return {Promise<Made>} */
async function make(module, from) {
  const {snapshot, problem} = from
  if (problem !== undefined) return {set: makeSet(module, {}), keeping: {as: 'broken link', reason: problem}}
  return snapshot !== undefined ? fromLink(module, snapshot) : fromStorage(module, from)
}

/** A set that serves clients. */
export class TabSet {
  #set
  #connections = new Map()
  #keeper

  /** @param {any} set @param {Made['keeper']} keeper */
  constructor(set, keeper) {
    this.#set = set
    this.#keeper = keeper
    sets.set(this, set)
  }

  /** @param {From} from @return {Promise<{set: TabSet, keeping: Keeping}>} */
  static async start(from) {
    const module = await load()
    const {set, keeping, keeper} = await make(module, from)
    return {set: new TabSet(set, keeper), keeping}
  }

  /** Saves the set a last time, and releases the stored data. */
  async leave() {
    await this.#keeper?.close().catch(() => {})  // It has already reported the error.
  }

  /** Serves a client at the other end of a port. @param {MessagePort} port */
  serve(port) {
    servePort(/** @type {any} */ (this), port)  // it uses only the set
  }

  /** @param {string} text @param {string} [session] @return {string} */
  post(text, session) {
    return this.#set.post(text, session)
  }

  /** Keeps a session alive until it is released. @param {number} number  chosen by the caller @param {string} session */
  hold(number, session) {
    this.#connections.set(number, this.#set.open(() => {}, session))
  }

  /** @param {number} number */
  release(number) {
    this.#connections.get(number)?.close()
    this.#connections.delete(number)
  }
}
