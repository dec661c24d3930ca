/*
 * The set of a tab, on the thread on which it runs: makes it, from what this browser keeps or from a link, and serves clients.
 */
import {keepSet} from '../kept.js'
import {load} from '../load.js'
import {makeSet} from '../memory.js'
import {servePort} from '../port.js'
import '../window.js'

const {sets} = globalThis[Symbol.for('emp-window/2')]

/**
 * How the set came about and whether it is kept.
 * @typedef {object} Keeping
 * @property {'kept' | 'link' | 'broken link' | 'in use' | 'storage' | 'unusable'} as
 * @property {string} [reason]
 * @property {string} [session]  by which it is kept
 */

/** @param {WebAssembly.Module} module @param {any} snapshot @return {{set: any, keeping: Keeping}} */
function fromLink(module, snapshot) {
  try {
    return {set: makeSet(module, {snapshot}), keeping: {as: 'link'}}
  } catch (error) {
    return {set: makeSet(module, {}), keeping: {as: 'broken link', reason: reasonOf(error)}}
  }
}

/** @param {any} error */
const reasonOf = error => error.reason ?? error.message

/** @param {WebAssembly.Module} module @param {string} key @return {Promise<{set: any, keeping: Keeping}>} */
async function fromStorage(module, key) {
  try {
    const {set, keeper} = await keepSet(key, (/** @type {any} */ snapshot, /** @type {any} */ unusable) => {
      try {
        return makeSet(module, snapshot === undefined ? {} : {snapshot})
      } catch (error) {
        throw unusable(error)
      }
    })
    return {set, keeping: {as: 'kept', session: keeper.session}}
  } catch (error) {
    const {what, message} = /** @type {any} */ (error)
    const as = {'in use': 'in use', storage: 'storage', kept: 'unusable'}[what]
    if (!as) throw error
    return {set: makeSet(module, {}), keeping: {as, reason: message}}
  }
}

/** A set that clients are served from. */
export class TabSet {
  #set
  #connections = new Map()

  /** @param {any} set */
  constructor(set) {
    this.#set = set
    sets.set(this, set)
  }

  /**
   * @param {{key: string, snapshot?: any, problem?: string}} from  the key under which the set is kept; a link's snapshot, or what
   *   is wrong with the link
   * @return {Promise<{set: TabSet, keeping: Keeping}>}
   */
  static async start({key, snapshot, problem}) {
    const module = await load()
    const {set, keeping} = problem !== undefined ? {set: makeSet(module, {}), keeping: /** @type {Keeping} */ ({as: 'broken link', reason: problem})}
      : snapshot !== undefined ? fromLink(module, snapshot) : await fromStorage(module, key)
    return {set: new TabSet(set), keeping}
  }

  /** Serves a client at the other end of a port. @param {MessagePort} port */
  serve(port) {
    servePort(this, port)
  }

  /** @param {string} text @param {string} [session] @return {string} */
  post(text, session) {
    return this.#set.post(text, session)
  }

  /** Keeps a session until it is let go. @param {number} number  of the caller's choice @param {string} session */
  hold(number, session) {
    this.#connections.set(number, this.#set.open(() => {}, session))
  }

  /** @param {number} number */
  release(number) {
    this.#connections.get(number)?.close()
    this.#connections.delete(number)
  }
}
