/*
 * A TV in memory: the set as WebAssembly, in this page or process, behind the client that also speaks to servers. Part of the
 * script tv.js too, so it loads nothing by itself.
 */
import {Tv} from './connected.js'
import {instantiate} from './module.js'
import './window.js'

const {EmpConnectionError, EmpTvError, memory, sets} = globalThis[Symbol.for('emp-window/2')]

/** Turns of their own, in order, without the least pause that timers have in browsers. */
function turns() {
  if (globalThis.setImmediate) return globalThis.setImmediate
  const waiting = []
  const {port1, port2} = new MessageChannel()
  port1.onmessage = () => waiting.shift()()
  return run => {
    waiting.push(run)
    port2.postMessage(0)
  }
}

const later = turns()

/** Lets the thread stand still for milliseconds, as a call on a set does that takes its time. */
export function block(milliseconds) {
  const end = performance.now() + milliseconds
  try {
    Atomics.wait(new Int32Array(new SharedArrayBuffer(4)), 0, 0, milliseconds)
  } catch {
    // A page may not wait, and one of a site that is not isolated has no SharedArrayBuffer.
  }
  while (performance.now() < end);
}

/** A set as long as it is there. What it can't do any more throws a named error. */
class MemorySet {
  #set
  #closed

  constructor(module, {wait = true} = {}) {
    try {
      this.#set = instantiate(module, {block, wait})
    } catch (cause) {
      throw new EmpTvError('module', `createTv: the module can't be started: ${cause.message}`, {cause})
    }
  }

  /** A connection of `listener(text)`, to a session that a call has opened or to one of its own: {take(text), close()}. */
  connect(listener, session) {
    return this.#use(set => set.connect(listener, session))
  }

  /** The answer to a request, which has run when this returns. */
  post(text, session) {
    return this.#use(set => set.post(text, session))
  }

  close() {
    if (this.#closed) return
    this.#closed = true
    this.#set.close()
    this.#set = undefined
  }

  #use(call) {
    if (this.#closed) throw new EmpConnectionError(`${memory} was closed`)
    return call(this.#set)
  }
}

/** What Wire needs of a socket, on a set. Messages of the set come in turns of their own, as from a server. */
export class SetSocket {
  readyState = 0
  #set
  #connection

  constructor(set) {
    this.#set = set
    later(() => this.#open())
  }

  send(text) {
    this.#connection.take(text)
  }

  close(code = 1000, reason = '') {
    if (this.readyState === 3) return
    this.readyState = 3
    this.#connection?.close()
    later(() => this.onclose?.({code, reason}))
  }

  #open() {
    if (this.readyState !== 0) return
    try {
      this.#connection = this.#set.connect(text => later(() => this.readyState === 1 && this.onmessage?.({data: text})))
    } catch (error) {
      this.onerror?.({message: error.message})
      this.close(1006)
      return
    }
    this.readyState = 1
    this.onopen?.()
  }
}

/** Asks a set at once. @param what  for the error: what of the options is to blame where it refuses */
function ask(set, method, params, what) {
  const {result, error} = JSON.parse(set.post(JSON.stringify({jsonrpc: '2.0', id: 1, method, params})))
  if (!error) return result
  const reason = (error.data?.reason ?? error.message).replace(`${what}: `, '')
  throw new EmpTvError(what, `createTv: ${what}: ${reason}`, {reason})
}

/** Gives a new set what it starts from. */
function fill(set, {snapshot, list}) {
  if (snapshot !== undefined) ask(set, 'tv.restore', {snapshot}, 'snapshot')
  if (list !== undefined) ask(set, 'tv.import', {content: list, name: 'list'}, 'list')
}

/** Makes a set of a compiled module. @param options  {snapshot, list, wait} of `createTv` */
export function makeSet(module, options) {
  const set = new MemorySet(module, options)
  try {
    fill(set, options)
  } catch (error) {
    set.close()
    throw error
  }
  return set
}

/**
 * Connects a client to a set, which ends with it.
 * @param before  called by the client's `close`, while set and client are there  @return {tv, opened}, as Tv.begin
 */
export function clientOf(set, {appId, widgetId} = {}, before = () => {}) {
  const {tv, opened} = Tv.begin('', () => new SetSocket(set), {appId, widgetId})
  sets.set(tv, set)
  const disconnect = tv.close.bind(tv)
  tv.close = async () => {
    try {
      await before()
    } finally {
      await disconnect()
      set.close()
    }
  }
  return {tv, opened}
}
