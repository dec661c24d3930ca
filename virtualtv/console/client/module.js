// SPDX-License-Identifier: MIT
/*
 * The virtual TV as WebAssembly: one set in this process, without a server. It runs in Node from 18 on, in pages and in
 * workers.
 *
 *   import {compile, compileNow, startSet} from './module.js'
 *   const module = await compile(new URL('./emp-window.wasm', import.meta.url))
 *   const set = startSet(module)
 *
 *   compile(source)      returns a promise of the WebAssembly.Module. The source is a URL, also as a text; in Node also
 *                        a path; a Response; bytes; or a module. Fetched bytes are compiled while they arrive.
 *   compileNow(bytes)    returns the module at once. On a page's own thread, some browsers refuse modules larger than
 *                        some kilobytes; the error then says what to do.
 *   startSet(module, {snapshot, waits, maximumMemory, complain})
 *                        switches a set on: the built-in one, or that of a snapshot, a result of `tv.snapshot` as text
 *                        or document. Each call creates a separate set, which is freed when nothing refers to it.
 *                          waits          if false, latencies do not delay replies, as with --no-wait of the server
 *                          maximumMemory  bytes that the set may use; a call that needs more fails, the set continues
 *                          complain(line) receives what the set could not read or persist; console.warn by default
 *
 * A set:
 *   set.open(listener, session)  connects a client, as a WebSocket to the server does. `listener(text)` receives the
 *                        messages to this client in order, replies and events. `session` names a session opened by a
 *                        post, which the client takes over. Returns {send(text), close()}. Before `send` returns, the
 *                        listener has received the reply, unless a latency delays it; then a timer delivers it. A
 *                        listener may send, post and close; its exceptions are reported as uncaught errors.
 *   set.post(text, session)  handles a request like POST /rpc, with `session` as the header Emp-Session if given, and
 *                        returns the text of the reply, '' for notifications. It is synchronous: a latency that delays
 *                        the reply blocks the thread, as the call does on a set.
 *   set.close()          ends the set: clients receive nothing more, timers are stopped.
 *
 * Messages are exactly those of the wire. All other failures throw EmpModuleError with a `code`:
 *   'version'   the module has another version than this file, or is not the virtual TV's
 *   'compile'   the module can't be compiled here; the message may say what to do
 *   'snapshot'  the snapshot is invalid; the message says what is wrong
 *   'memory'    there is not enough memory; the set is as it was before the call
 *   'session'   the session given to `open` does not exist
 *   'closed'    the set or the client is closed
 *   'failed'    the set could not carry out the call, or has broken down; then every later call fails in the same way
 */

const version = '1.3.0'
const hostName = `emp-window ${version}`
const pageSize = 65536
const failed = -1

export class EmpModuleError extends Error {
  constructor(code, message, options) {
    super(message, options)
    this.name = 'EmpModuleError'
    this.code = code
  }
}

const messageOf = error => (error instanceof Error ? error.message : String(error))

function cannotCompile(error) {
  return new EmpModuleError('compile', `the virtual TV's module can't be compiled: ${messageOf(error)}`, {cause: error})
}

function isNode() {
  return typeof process === 'object' && Boolean(process.versions?.node)
}

/** The URL for a text, which is an address, or in Node also a path. */
async function addressOf(text) {
  const isPath = isNode() && !/^[a-z][a-z\d+.-]+:/i.test(text)  // a single letter is a drive, not a scheme
  return isPath ? (await import('node:url')).pathToFileURL(text) : new URL(text, globalThis.location?.href)
}

async function fetched(address) {
  if (address.protocol === 'file:' && isNode()) {
    const {readFile} = await import('node:fs/promises')
    return WebAssembly.compile(await readFile(address))
  }
  return compileResponse(await fetch(address))
}

async function compileResponse(response) {
  if (!response.ok) throw new Error(`${response.url} answers ${response.status}`)
  const isTyped = response.headers.get('content-type')?.split(';')[0].trim() === 'application/wasm'
  if (isTyped && WebAssembly.compileStreaming) return WebAssembly.compileStreaming(response)
  return WebAssembly.compile(await response.arrayBuffer())
}

async function compiled(source) {
  if (source instanceof WebAssembly.Module) return source
  if (typeof Response === 'function' && source instanceof Response) return compileResponse(source)
  if (typeof source === 'string') return fetched(await addressOf(source))
  if (source instanceof URL) return fetched(source)
  return WebAssembly.compile(source)
}

function checked(module) {
  const modules = WebAssembly.Module.imports(module).map(wanted => wanted.module)
  const other = modules.find(name => name.startsWith('emp-window '))
  if (!other) throw new EmpModuleError('version', "this WebAssembly is not the virtual TV's module")
  if (other !== hostName) {
    const theirs = other.slice('emp-window '.length)
    throw new EmpModuleError('version', `the virtual TV's module is of version ${theirs}, the client of ${version}`)
  }
  return module
}

export async function compile(source) {
  try {
    return checked(await compiled(source))
  } catch (error) {
    throw error instanceof EmpModuleError ? error : cannotCompile(error)
  }
}

export function compileNow(bytes) {
  try {
    return checked(new WebAssembly.Module(bytes))
  } catch (error) {
    if (error instanceof EmpModuleError) throw error
    const isRefused = error instanceof RangeError
    const failure = cannotCompile(error)
    if (isRefused) failure.message += '; wait for compile(), or load the app in a worker'
    throw failure
  }
}

export function startSet(module, options = {}) {
  return new ModuleSet(checked(module), options)
}

/** Calls a listener. Its exceptions are reported as uncaught errors, and do not stop the caller. */
function tell(listener, text) {
  try {
    listener(text)
  } catch (error) {
    if (globalThis.reportError) globalThis.reportError(error)
    else queueMicrotask(() => { throw error })
  }
}

/** Blocks this thread. */
function block(milliseconds) {
  const end = performance.now() + milliseconds
  try {
    Atomics.wait(new Int32Array(new SharedArrayBuffer(4)), 0, 0, milliseconds)
  } catch {
    // a page's own thread may not wait
  }
  while (performance.now() < end);
}

/** Node 18 has no global `crypto`. These random numbers are for names of sessions and the like, not for secrets. */
function fillByChance(bytes) {
  if (globalThis.crypto) globalThis.crypto.getRandomValues(bytes)
  else bytes.forEach((_, at) => { bytes[at] = Math.random() * 256 })
}

/** The system functions for the module's C library: time, random numbers, and output to the console. */
function systemOf(memory) {
  const view = () => new DataView(memory().buffer)
  const well = 0
  const noSuchSystem = 52
  const clock = () => BigInt(Math.round((performance.timeOrigin + performance.now()) * 1e6))
  const known = {
    clock_time_get(_clock, _precision, place) {
      view().setBigUint64(place, clock(), true)
      return well
    },
    getentropy(place, size) {
      fillByChance(new Uint8Array(memory().buffer, place, size))
      return well
    },
    random_get: (place, size) => known.getentropy(place, size),
    environ_sizes_get(count, size) {
      view().setUint32(count, 0, true)
      view().setUint32(size, 0, true)
      return well
    },
    environ_get: () => well,
    fd_write(_file, pieces, count, written) {
      let text = ''
      let size = 0
      for (let at = pieces; at < pieces + 8 * count; at += 8) {
        const bytes = new Uint8Array(memory().buffer, view().getUint32(at, true), view().getUint32(at + 4, true))
        text += decoder.decode(bytes)
        size += bytes.length
      }
      if (text) console.warn(text)
      view().setUint32(written, size, true)
      return well
    },
    emscripten_notify_memory_growth() {},
    proc_exit(status) {
      throw new Error(`it has ended with status ${status}`)
    },
  }
  return {known, unknown: () => noSuchSystem}
}

const encoder = new TextEncoder()
const decoder = new TextDecoder()
const initialPages = 128  // 8 MiB, as the module was linked
const mostMemory = 2 ** 31
const longText = 16384  // 16-bit units
const failures = ['failed', 'memory', 'session', 'snapshot']  // by the module's numbers

function pagesIn(maximumMemory) {
  const least = initialPages * pageSize
  if (typeof maximumMemory === 'number' && maximumMemory >= least) {
    return Math.floor(Math.min(maximumMemory, mostMemory) / pageSize)
  }
  throw new EmpModuleError('memory', `maximumMemory: ${least} bytes at least are wanted, not ${String(maximumMemory)}`)
}

/** A snapshot as the module takes it. @param snapshot  text or document */
function textOf(snapshot = '') {
  if (typeof snapshot !== 'object') return snapshot
  try {
    return String(JSON.stringify(snapshot))  // which may be undefined
  } catch (cause) {
    throw new EmpModuleError('snapshot', `it can't be written as JSON: ${messageOf(cause).split('\n')[0]}`, {cause})
  }
}

class ModuleSet {
  #memory
  #calls  // the module's functions
  #complain
  #listeners = new Map()  // by the client's number
  #outbox = []  // messages to deliver after the module's function has returned
  #isTelling = false
  #replies = new Map()  // to posts, by number
  #posts = 0
  #timers = new Map()  // {due, timer} by number
  #failure  // of the call in progress
  #end  // why no more calls are possible

  constructor(module, {snapshot, waits = true, maximumMemory = mostMemory, complain = line => console.warn(line)}) {
    this.#complain = complain
    this.#calls = this.#instantiate(module, pagesIn(maximumMemory))
    this.#call('start', this.#lay(textOf(snapshot)), waits ? 1 : 0)
  }

  open(listener, session = '') {
    const number = this.#call('connect', this.#lay(session))
    this.#listeners.set(number, listener)
    return {
      send: text => {
        if (!this.#listeners.has(number)) {
          throw this.#end ?? new EmpModuleError('closed', 'this client of the virtual TV is closed')
        }
        this.#call('take', number, this.#lay(text))
      },
      close: () => {
        if (this.#listeners.delete(number) && !this.#end) this.#call('disconnect', number)
      },
    }
  }

  post(text, session = '') {
    const number = ++this.#posts
    const size = this.#lay(session + text)
    this.#call('post', number, encoder.encode(session).length, size)
    while (!this.#replies.has(number)) this.#waitForTimer()
    const reply = this.#replies.get(number)
    this.#replies.delete(number)
    return reply
  }

  close() {
    this.#end ??= new EmpModuleError('closed', 'this virtual TV is closed')
    for (const {timer} of this.#timers.values()) clearTimeout(timer)
    this.#timers.clear()
    this.#listeners.clear()
    this.#outbox = []
    this.#calls = this.#memory = undefined
  }

  #instantiate(module, maximum) {
    const {known, unknown} = systemOf(() => this.#memory)
    const host = {
      send: (client, place, size) => { this.#outbox.push([client, this.#textAt(place, size)]) },
      answer: (number, place, size) => { this.#replies.set(number, this.#textAt(place, size)) },
      after: (milliseconds, number, isAwaited) => this.#setTimer(milliseconds, number, isAwaited),
      complain: (place, size) => this.#complain(this.#textAt(place, size)),
      fail: (kind, place, size) => { this.#failure = new EmpModuleError(failures[kind], this.#textAt(place, size)) },
    }
    try {
      this.#memory = new WebAssembly.Memory({initial: initialPages, maximum})
      const imports = {}
      for (const {module: from, name, kind} of WebAssembly.Module.imports(module)) {
        imports[from] ??= from === hostName ? host : {}
        if (from !== hostName) imports[from][name] = kind === 'memory' ? this.#memory : (known[name] ?? unknown)
      }
      return new WebAssembly.Instance(module, imports).exports
    } catch (error) {
      const code = error instanceof RangeError ? 'memory' : 'failed'
      throw new EmpModuleError(code, `the virtual TV can't start: ${messageOf(error)}`, {cause: error})
    }
  }

  #textAt(place, size) {
    return decoder.decode(new Uint8Array(this.#memory.buffer, place >>> 0, size))
  }

  /** Copies a text to the place where the module reads it. @returns its size in bytes. */
  #lay(text) {
    const bytes = text.length > longText ? encoder.encode(text) : undefined
    const room = bytes ? bytes.length : 3 * text.length
    const place = this.#enter('place', room) >>> 0
    if (place === 0) throw this.#takeFailure()
    const there = new Uint8Array(this.#memory.buffer, place, room)
    if (!bytes) return encoder.encodeInto(text, there).written
    there.set(bytes)
    return room
  }

  /** Calls a function of the module, then delivers its messages. */
  #call(name, ...args) {
    const answer = this.#enter(name, ...args)
    const failure = answer === failed ? this.#takeFailure() : undefined
    this.#tellAll()
    if (failure) throw failure
    return answer
  }

  #enter(name, ...args) {
    if (this.#end) throw this.#end
    try {
      return this.#calls[name](...args)
    } catch (error) {
      this.#end = new EmpModuleError('failed', `the virtual TV has broken down: ${messageOf(error)}`, {cause: error})
      this.close()
      throw this.#end
    }
  }

  #takeFailure() {
    const failure = this.#failure ?? new EmpModuleError('failed', 'the virtual TV could not do it')
    this.#failure = undefined
    return failure
  }

  #tellAll() {
    if (this.#isTelling) return
    this.#isTelling = true
    while (this.#outbox.length > 0) {
      const [client, text] = this.#outbox.shift()
      const listener = this.#listeners.get(client)
      if (listener) tell(listener, text)
    }
    this.#isTelling = false
  }

  /** @param isAwaited  true if a client waits for the result; otherwise Node may exit before it. */
  #setTimer(milliseconds, number, isAwaited) {
    const timer = setTimeout(() => this.#elapse(number), milliseconds)
    if (!isAwaited) timer.unref?.()
    this.#timers.set(number, {due: performance.now() + milliseconds, timer})
  }

  #elapse(number) {
    this.#timers.delete(number)
    this.#call('elapse', number)
  }

  #waitForTimer() {
    if (this.#timers.size === 0) throw new EmpModuleError('failed', 'the virtual TV does not answer')
    const [number, {due, timer}] = [...this.#timers].reduce((first, next) => (next[1].due < first[1].due ? next : first))
    block(due - performance.now())
    clearTimeout(timer)
    this.#elapse(number)
  }
}
