// SPDX-License-Identifier: MIT
/*
 * The set of this tab, as the page sees it. It runs in a worker if the browser lets page and worker share memory,
 * otherwise on the page's own thread. Apps in frames of the same origin find it under a symbol on the page's window,
 * and call it synchronously.
 */
import {Caller} from './calls.js'
import {TabSet} from './tab-set.js'

/** A set on the page's own thread, with the interface of the worker. */
class OwnThread {
  #set

  /** @param {TabSet} set */
  constructor(set) {
    this.#set = set
  }

  /** @param {string} text @param {string} [session] */
  post(text, session) {
    return this.#set.post(text, session)
  }

  leave() {
    this.#set.leave()
  }

  /** @param {any} message */
  tell({port, hold, number}) {
    if (port) this.#set.serve(port)
    else if (hold) this.#set.hold(number, hold)
    else this.#set.release(number)
  }
}

/** A set in a worker. */
class OtherThread {
  caller
  #worker

  /** @param {Worker} worker */
  constructor(worker) {
    this.#worker = worker
    this.caller = new Caller(worker)
  }

  /** @param {string} text @param {string} [session] */
  post(text, session) {
    return this.caller.post(text, session)
  }

  leave() {
    this.caller.leave()
  }

  /** @param {any} message */
  tell(message) {
    this.#worker.postMessage(message, message.port ? [message.port] : [])
  }
}

/** @param {any} from @return {Promise<{thread: OtherThread, keeping: import('./tab-set.js').Keeping}>} */
async function startWorker(from) {
  const worker = new Worker(new URL('worker.js', import.meta.url), {type: 'module', name: 'set'})
  const {keeping, problem} = await new Promise((resolve, reject) => {
    worker.onmessage = ({data}) => resolve(data)
    worker.onerror = ({message}) => reject(new Error(`the set's worker can't be loaded${message ? `: ${message}` : ''}`))
    worker.postMessage({start: from})
  })
  if (problem) throw new Error(problem)
  return {thread: new OtherThread(worker), keeping}
}

/** @param {any} from @return {Promise<{thread: OwnThread, keeping: import('./tab-set.js').Keeping}>} */
async function startHere(from) {
  const {set, keeping} = await TabSet.start(from)
  return {thread: new OwnThread(set), keeping}
}

/** The interface of the set for pages of the same origin. */
export class Tab {
  /** @type {OwnThread | OtherThread} */
  #thread
  #held = 0
  /** The ports of clients. @type {Set<MessagePort>} */
  #ports = new Set()
  keeping

  /** @param {{thread: OwnThread | OtherThread, keeping: import('./tab-set.js').Keeping}} made */
  constructor({thread, keeping}) {
    this.#thread = thread
    this.keeping = keeping
  }

  /**
   * Creates the set.
   * @param {import('./tab-set.js').From} from
   * @param {{here: boolean}} how  `here`: on the page's own thread, otherwise in a worker
   */
  static async start(from, {here}) {
    return new Tab(await (here ? startHere(from) : startWorker(from)))
  }

  /** Milliseconds after which a call fails; undefined if calls run on this thread. */
  get patience() {
    return this.#thread instanceof OtherThread ? this.#thread.caller.patience : undefined
  }

  set patience(milliseconds) {
    if (this.#thread instanceof OtherThread && milliseconds !== undefined) this.#thread.caller.patience = milliseconds
  }

  /** Runs a request, and returns its answer. @param {string} text @param {string} [session] @return {string} */
  post(text, session) {
    try {
      return this.#thread.post(text, session)
    } catch (error) {
      const {isLost, message} = /** @type {import('./calls.js').CallError} */ (error)
      if (isLost) this.#cut(message)
      throw error
    }
  }

  /**
   * Saves the set, and releases the stored data for other tabs. For a page that is left: later changes of the set are
   * not stored.
   */
  leave() {
    this.#thread.leave()
  }

  /** A port for a client: `connect(() => new PortSocket(tab.port()))`. @return {MessagePort} */
  port() {
    const {port1, port2} = new MessageChannel()
    this.#ports.add(port1)
    this.#thread.tell({port: port2})
    return port1
  }

  /** Reports the end of the connection to all clients. @param {string} reason */
  #cut(reason) {
    for (const port of this.#ports) port.dispatchEvent(new MessageEvent('message', {data: {closed: {code: 1006, reason}}}))
    this.#ports.clear()
  }

  /**
   * Keeps a session alive until the caller releases it, or leaves its page.
   * @param {string} session @param {Window} window  the caller's @return {() => void} releases the session
   */
  hold(session, window) {
    const number = ++this.#held
    const release = () => {
      window.removeEventListener('pagehide', release)
      this.#thread.tell({number})
    }
    window.addEventListener('pagehide', release)
    this.#thread.tell({hold: session, number})
    return release
  }
}
