// SPDX-License-Identifier: MIT
/*
 * A TV in memory: the set as WebAssembly, in this page or process, with the same client as for servers. This file is
 * also part of the script tv.js, so it loads nothing by itself.
 */
import {Tv} from './connected.js'
import {EmpModuleError, startSet} from './module.js'
import './window.js'

const {EmpConnectionError, EmpTvError, memory, sets} = globalThis[Symbol.for('emp-window/2')]

/** Runs tasks in separate turns, in order, without the minimum delay of timers in browsers. */
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

/** Converts a failure of the module to an EmpTvError, or, if it was closed, to an EmpConnectionError. */
function named(error) {
  if (!(error instanceof EmpModuleError)) return error
  if (error.code === 'closed') return new EmpConnectionError(`${memory} was closed`)
  const what = {memory: 'memory', snapshot: 'snapshot', version: 'module', compile: 'module'}[error.code] ?? 'failed'
  const where = what === 'snapshot' ? `${what}: ` : ''
  return new EmpTvError(what, `${memory}: ${where}${error.message}`, {cause: error, reason: error.message})
}

function attempt(call) {
  try {
    return call()
  } catch (error) {
    throw named(error)
  }
}

function checkSnapshot(snapshot) {
  const isDocument = typeof snapshot === 'object' && snapshot !== null
  if (snapshot === undefined || isDocument || (typeof snapshot === 'string' && snapshot !== '')) return
  const reason = `what tv.snapshot() answers is wanted, not ${snapshot === '' ? 'an empty text' : String(snapshot)}`
  throw new EmpTvError('snapshot', `${memory}: snapshot: ${reason}`, {reason})
}

/** A set whose failures are EmpTvErrors. */
class MemorySet {
  isClosed = false
  #set

  constructor(module, {snapshot, wait, maximumMemory}) {
    checkSnapshot(snapshot)
    this.#set = attempt(() => startSet(module, {snapshot, waits: wait, maximumMemory}))
  }

  /** Connects `listener(text)` to an existing session or to a new one. Returns {send(text), close()}. */
  open(listener, session) {
    const {send, close} = attempt(() => this.#set.open(listener, session))
    return {send: text => attempt(() => send(text)), close: () => attempt(close)}
  }

  /** Runs a request, and returns its answer. */
  post(text, session) {
    return attempt(() => this.#set.post(text, session))
  }

  close() {
    this.isClosed = true
    this.#set.close()
  }
}

/** A socket for Wire, connected to a set. Messages of the set arrive in separate turns, as from a server. */
export class SetSocket {
  readyState = 0
  isNear = true
  #set
  #connection

  constructor(set) {
    this.#set = set
    later(() => this.#open())
  }

  send(text) {
    this.#connection.send(text)
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
      this.#connection = this.#set.open(text => later(() => this.readyState === 1 && this.onmessage?.({data: text})))
    } catch (error) {
      this.onerror?.({message: error.message})
      this.close(1006)
      return
    }
    this.readyState = 1
    this.onopen?.()
  }
}

/** True if a call failed for lack of memory, even where the set reports that it refused something. */
const isShort = ({code, data}) => (code === -32603 || code === 1001) && / memory/.test(data?.reason)

/** Imports a list before any client is connected. */
function importList(set, content) {
  const call = {jsonrpc: '2.0', id: 1, method: 'tv.import', params: {content, name: 'list'}}
  const {error} = JSON.parse(set.post(JSON.stringify(call)))
  if (!error) return
  const {reason: whole = error.message, problems: [first] = []} = error.data ?? {}
  const where = first ? `: ${first.line === undefined ? first.at : `line ${first.line}`}: ${first.reason}` : ''
  const reason = whole.replace(/^list: /, '') + where
  throw new EmpTvError(isShort(error) ? 'memory' : 'list', `${memory}: list: ${reason}`, {reason})
}

/** The options of `createTv`, an empty object by default. @throws TypeError if they are not an object */
export function optionsOf(options = {}) {
  if (typeof options === 'object' && options !== null && !Array.isArray(options)) return options
  throw new TypeError(`an object with the options of createTv is wanted, not '${String(options)}'`)
}

/** Creates a set from a compiled module. @param options  {snapshot, list, wait, maximumMemory} of `createTv` */
export function makeSet(module, options) {
  const set = new MemorySet(module, options)
  try {
    if (options.list !== undefined) importList(set, options.list)
  } catch (error) {
    set.close()
    throw error
  }
  return set
}

/**
 * Connects a client to a set. The client's `close` also closes the set.
 * @param before  called by the client's `close` first, while set and client still exist; may return a promise
 * @return {tv, opened}, as Tv.begin
 */
export function clientOf(set, {appId, widgetId} = {}, before = () => {}) {
  const {tv, opened} = Tv.begin('', () => new SetSocket(set), {appId, widgetId})
  sets.set(tv, set)
  const disconnect = tv.close.bind(tv)
  const end = async () => {
    try {
      await before()
    } finally {
      await disconnect()
      set.close()
    }
  }
  let ended
  tv.close = () => ended ??= end()
  return {tv, opened}
}
