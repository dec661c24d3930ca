/*
 * The client of the virtual TV's server: `connect` for tests and tools, `installWindow` for apps that call the plug-in
 * synchronously as on the set. The same file runs in browsers and in Node from 20.16 on; what only Node needs is in files
 * of its own, which are loaded there alone.
 */
import './window.js'

const {EmpConnectionError, EmpRpcError, baseOf, socketUrl, parametersOf, encode, valueOf, executed, commandsOf, install} =
  globalThis[Symbol.for('emp-window/1')]
export {EmpConnectionError, EmpRpcError}

const handshakePatience = 10_000  // ms until a connection that does not come about is given up

/** What `nearest` finds is told to someone who misspelled `name`; nothing when no name is close. */
function nearest(name, names) {
  const plain = text => text.toLowerCase().replaceAll('_', '')
  const distance = (one, other) => {
    let row = Array.from({length: other.length + 1}, (_, at) => at)
    for (let i = 1; i <= one.length; ++i) {
      const above = row
      row = [i]
      for (let j = 1; j <= other.length; ++j) {
        row.push(Math.min(above[j] + 1, row[j - 1] + 1, above[j - 1] + (one[i - 1] === other[j - 1] ? 0 : 1)))
      }
    }
    return row.at(-1)
  }
  const wanted = plain(name)
  const [best] = names.map(other => [distance(wanted, plain(other)), other]).sort(([one], [other]) => one - other)
  return best && best[0] <= 3 ? best[1] : undefined
}

/** Calls a listener; what it throws is reported as an uncaught error and stops nothing here. */
function tell(listener, event) {
  try {
    listener(event)
  } catch (error) {
    if (globalThis.reportError) globalThis.reportError(error)
    else queueMicrotask(() => { throw error })
  }
}

/**
 * A WebSocket to the server that carries calls and events and is made anew when it breaks. It keeps the calls that were
 * not answered; a call that was sent once is never sent again.
 */
class Wire {
  isClosed = false
  #socket  // while it can be used
  #isReady = false  // the session is open, so calls may be sent
  #inFlight = new Map()  // {method, resolve, reject} by id
  #waiting = new Set()  // calls that no connection has been there for
  #id = 0
  #pause
  #patience
  #pauses
  #welcome
  #lost
  #event

  /**
   * @param url  of the WebSocket  @param patience  ms for which calls wait for a connection
   * @param pauses  {first, longest}, ms before it is made anew: doubles with each try that fails
   * @param welcome  called with each new connection, before any other call  @param lost  called when one breaks
   * @param event  called with the parameters of each event
   */
  constructor({url, base, patience, pauses, welcome, lost, event}) {
    Object.assign(this, {url, base})
    this.#patience = patience
    this.#pauses = pauses
    this.#welcome = welcome
    this.#lost = lost
    this.#event = event
  }

  get isReady() {
    return this.#isReady
  }

  /** Makes the connection. Fails when it does not come about. */
  async open() {
    const WebSocket = globalThis.WebSocket ?? (await import('./node-websocket.js')).NodeWebSocket
    await new Promise((resolve, reject) => this.#shakeHands(new WebSocket(this.url), resolve, reject))
    for (const call of this.#waiting) {
      clearTimeout(call.timer)
      this.send(call)
    }
    this.#waiting.clear()
  }

  /** Makes a call as soon as there is a connection. */
  call(method, params) {
    return new Promise((resolve, reject) => {
      const call = {method, params, resolve, reject}
      if (this.isClosed) {
        reject(new EmpConnectionError(`${method}: the connection to ${this.base} was closed`))
      } else if (this.#isReady) {
        this.send(call)
      } else {
        this.#wait(call)
      }
    })
  }

  /** Sends a call {method, params, resolve, reject} on the connection that there is. Answers are told at once, in order. */
  send(call) {
    let text
    try {
      text = encode({jsonrpc: '2.0', id: ++this.#id, method: call.method, params: call.params})
    } catch (error) {
      call.reject(error)
      return
    }
    this.#inFlight.set(this.#id, call)
    this.#socket.send(text)
  }

  close() {
    if (this.isClosed) return Promise.resolve()
    this.isClosed = true
    clearTimeout(this.#pause)
    const reason = `the connection to ${this.base} was closed`
    for (const call of this.#waiting) this.#fail(call, reason)
    this.#waiting.clear()
    const socket = this.#socket
    this.#break(reason)
    if (!socket || socket.readyState === 3) return Promise.resolve()
    return new Promise(resolve => {
      socket.onclose = () => resolve()
      socket.close(1000)
    })
  }

  #wait(call) {
    call.timer = setTimeout(() => {
      this.#waiting.delete(call)
      this.#fail(call, `no connection to ${this.base} for ${this.#patience} ms`)
    }, this.#patience)
    this.#waiting.add(call)
  }

  #fail(call, reason, sent = false) {
    clearTimeout(call.timer)
    call.reject(new EmpConnectionError(`${call.method}: ${reason}`, {sent}))
  }

  #shakeHands(socket, resolve, reject) {
    let why = ''
    let status
    const giveUp = setTimeout(() => {
      why = `no answer within ${handshakePatience} ms`
      ended({code: 1006, reason: ''})
      socket.close()
    }, handshakePatience)
    const ended = ({code, reason}) => {
      clearTimeout(giveUp)
      const wasReady = this.#isReady && this.#socket === socket
      const what = why || reason || `close code ${code}`
      if (this.#socket === socket) this.#break(`the connection to ${this.base} broke (${what})`)
      reject(new EmpConnectionError(`${this.base} can't be reached: ${what}`, {status}))
      if (wasReady) this.#reconnect()
    }
    const ready = () => {
      clearTimeout(giveUp)
      this.#isReady = true
      resolve()
    }
    socket.onerror = event => {
      why = event.message ?? ''
      status = event.error?.status
    }
    socket.onclose = ended
    socket.onmessage = ({data}) => this.#take(data)
    socket.onopen = () => {
      if (this.isClosed) {
        socket.close()
        return
      }
      this.#socket = socket
      this.#welcome(ready, error => {
        reject(error)
        socket.close()
      })
    }
  }

  /** The connection is gone: what was in flight may or may not have run, and fails. */
  #break(reason) {
    const wasReady = this.#isReady
    this.#socket = undefined
    this.#isReady = false
    const calls = [...this.#inFlight.values()]
    this.#inFlight.clear()
    for (const call of calls) this.#fail(call, reason, true)
    if (wasReady) this.#lost(reason)
  }

  /** Tries again until a connection is there, with growing pauses that differ from client to client. */
  #reconnect(attempt = 0) {
    if (this.isClosed) return
    const pause = Math.min(this.#pauses.longest, this.#pauses.first * 2 ** attempt) * (0.5 + Math.random() / 2)
    this.#pause = setTimeout(() => {
      this.open().catch(() => this.#reconnect(attempt + 1))
    }, pause)
  }

  #take(data) {
    let message
    try {
      message = JSON.parse(data)
    } catch {
      this.#socket?.close(4000, 'a message is no JSON')
      return
    }
    if (message.method === 'event') this.#event(message.params)
    else if ('id' in message) this.#answer(message)
  }

  #answer({id, result, error}) {
    // The server could not read a call, so it does not know its id.
    if (id === null && this.#inFlight.size === 1) [id] = this.#inFlight.keys()
    const call = this.#inFlight.get(id)
    if (!call) {
      if (id === null) this.#socket?.close(4000, 'a call could not be read')
      return
    }
    this.#inFlight.delete(id)
    if (error) call.reject(new EmpRpcError(error, call.method))
    else call.resolve(result)
  }
}

/** The events that the app listens to: subscribed anew on each connection, from the last one on that was told. */
class Events {
  #wire
  #listeners = new Set()  // {topic, listener, after, from, settle, fail}; from is the number that it has all before
  #last  // the number of the last event, or of the first state
  #server  // whose numbers these are

  constructor(wire) {
    this.#wire = wire
  }

  on(topic, listener, {after} = {}) {
    const entry = {topic, listener, after}
    const ready = new Promise((settle, fail) => Object.assign(entry, {settle, fail}))
    ready.catch(() => {})
    this.#listeners.add(entry)
    if (this.#wire.isReady) this.#subscribe(entry)
    return Object.assign(() => this.#off(entry), {ready})
  }

  /** A new connection is there: goes on where the one before broke. */
  resume() {
    const known = [...this.#listeners].filter(entry => entry.from !== undefined)
    if (known.length > 0) this.#catchUp(known)
    for (const entry of this.#listeners) if (entry.from === undefined) this.#subscribe(entry)
  }

  take(event) {
    if (event.number > this.#last) this.#last = event.number
    for (const entry of [...this.#listeners]) {
      const isMeant = entry.topic === '*' || entry.topic === event.topic
      if (!isMeant || !(event.number > entry.from) || !this.#listeners.has(entry)) continue
      entry.from = event.number
      tell(entry.listener, event)
    }
  }

  close(error) {
    for (const entry of this.#listeners) entry.fail(error)
    this.#listeners.clear()
  }

  #subscribe(entry) {
    const {topic, after} = entry
    this.#send('events.subscribe', {topics: [topic], ...after !== undefined && {after}}, answer => {
      const from = after === undefined || answer.resync ? answer.number : after
      const isFirst = ![...this.#listeners].some(other => other.from !== undefined)
      if (isFirst) this.#last = from
      this.#server = answer.server
      this.#present(entry, answer, from)
    }, error => {
      this.#listeners.delete(entry)
      entry.fail(error)
      console.error(`emp-window: can't listen to '${entry.topic}': ${error.message}`)
    })
  }

  #catchUp(entries) {
    const topics = [...new Set(entries.map(entry => entry.topic))]
    this.#send('events.subscribe', {topics, after: this.#last, server: this.#server}, answer => {
      if (!answer.resync && answer.server === this.#server) return
      this.#last = answer.number
      this.#server = answer.server
      for (const entry of entries) this.#present(entry, answer)
    }, error => console.error(`emp-window: can't listen again: ${error.message}`))
  }

  /** Gives a listener the whole state, at first or because the events since the last one are not held any more. */
  #present(entry, {number, server, state}, from = number) {
    if (!this.#listeners.has(entry)) return
    const resync = entry.from !== undefined
    entry.from = from
    tell(entry.listener, {topic: entry.topic, number, server, state, ...resync && {resync}})
    entry.settle()
  }

  #off(entry) {
    if (!this.#listeners.delete(entry)) return
    entry.settle()
    const topics = new Set([...this.#listeners].map(other => other.topic))
    if (!this.#wire.isReady || topics.has(entry.topic)) return
    this.#send('events.unsubscribe', {topics: [entry.topic]}, () => {}, () => {})
  }

  #send(method, params, resolve, reject) {
    const rejectAnswer = error => error instanceof EmpRpcError && reject(error)  // else the next connection catches up
    this.#wire.send({method, params, resolve, reject: rejectAnswer})
  }
}

/** A connected client. What it offers is described in client.d.ts. */
class Tv {
  isVirtual = true
  window
  #wire
  #events
  #options
  #watchers = new Set()  // of the connection
  #usedWindow = false  // on the connection that there is
  #commands

  constructor(address, options) {
    this.address = baseOf(address)
    this.#options = options
    this.#wire = new Wire({
      url: socketUrl(this.address, options),
      base: this.address,
      patience: options.patience ?? 10_000,
      pauses: {first: options.firstPause ?? 100, longest: options.longestPause ?? 5000},
      welcome: (ready, fail) => this.#welcome(ready, fail),
      lost: reason => this.#tellConnection({connected: false, reason}),
      event: event => this.#events.take(event),
    })
    this.#events = new Events(this.#wire)
    this.window = this.#windowCommands()
  }

  static async connect(address, options) {
    const tv = new Tv(address, options)
    try {
      await tv.#wire.open()
    } catch (error) {
      tv.#wire.close()
      throw error
    }
    return tv
  }

  get connected() {
    return this.#wire.isReady
  }

  call(method, params = {}) {
    return this.#wire.call(method, params)
  }

  async Execute(name, ...parameters) {
    this.#usedWindow = true
    return executed(await this.call('window.execute', {name, parameters: parametersOf(parameters)}))
  }

  async executeWithParamList(name, parameters = []) {
    this.#usedWindow = true
    return executed(await this.call('window.executeWithParamList', {name, parameters: parametersOf(parameters)}))
  }

  on(topic, listener, options) {
    if (typeof listener !== 'function') throw new TypeError(`a function is wanted that listens to '${topic}'`)
    if (topic !== 'connection') return this.#events.on(topic, listener, options)
    this.#watchers.add(listener)
    tell(listener, {connected: this.connected})
    return Object.assign(() => { this.#watchers.delete(listener) }, {ready: Promise.resolve()})
  }

  close() {
    this.#events.close(new EmpConnectionError(`the connection to ${this.address} was closed`))
    return this.#wire.close()
  }

  async run(line) { return (await this.call('tv.run', {line})).lines }
  state() { return this.call('tv.state') }
  services(query = {}) { return this.call('tv.services', query) }
  knobs() { return this.call('tv.knobs') }
  async get(name) { return (await this.call('tv.get', {name})).value }
  set(name, value) { return this.call('tv.set', {name, value}) }
  async operations() { return (await this.call('tv.operations')).operations }
  async fault(operation, options = {}) { return (await this.call('tv.fault', {operation, ...options})).id }
  async faults() { return (await this.call('tv.faults')).faults }
  clearFaults(id) { return this.call('tv.clearFaults', {id}) }
  async settings() { return (await this.call('tv.settings')).settings }
  setSetting(key, value) { return this.call('tv.setSetting', {key, value}) }
  removeSetting(key) { return this.call('tv.removeSetting', {key}) }
  check(transcript) { return this.call('tv.check', {transcript}) }
  import(content, options = {}) { return this.call('tv.import', {content, ...options}) }
  async sessions() { return (await this.call('tv.sessions')).sessions }
  restart() { return this.call('tv.restart') }
  reset() { return this.call('tv.reset') }
  async snapshot(before) { return (await this.call('tv.snapshot', before === undefined ? {} : {before})).snapshot }
  restore(snapshot) { return this.call('tv.restore', {snapshot}) }
  why(command) { return this.call('tv.why', {command}) }
  history(command) { return this.call('tv.history', {command}) }
  goBack(command) { return this.call('tv.goBack', {command}) }
  discover() { return this.call('rpc.discover') }

  #welcome(ready, fail) {
    const {appId, widgetId} = this.#options
    const resolve = ({session, server}) => {
      const isAnother = this.session !== undefined
      Object.assign(this, {session, server})
      ready()
      this.#events.resume()
      if (isAnother && this.#usedWindow) {
        console.warn(`emp-window: the connection to ${this.address} broke and is back, with a new session: the window ` +
                     'that was selected and the channels that were found are gone.')
      }
      this.#usedWindow = false
      this.#tellConnection({connected: true})
    }
    const reject = error => {
      if (error instanceof EmpConnectionError) error.sent = false  // of the caller's calls nothing has been sent
      fail(error)
    }
    this.#wire.send({method: 'session.open', params: {appId, widgetId}, resolve, reject})
  }

  #tellConnection(event) {
    for (const listener of [...this.#watchers]) tell(listener, event)
  }

  /** An object with a function for any name that could be a command's; the server knows which are. */
  #windowCommands() {
    const functions = new Map()
    const get = (_, name) => {
      if (typeof name !== 'string' || !/^[A-Z]/.test(name)) return undefined
      if (!functions.has(name)) functions.set(name, (...parameters) => this.#command(name, parameters))
      return functions.get(name)
    }
    return new Proxy({}, {get})
  }

  async #command(name, parameters) {
    this.#usedWindow = true
    try {
      return valueOf(await this.call(`window.${name}`, parametersOf(parameters)))
    } catch (error) {
      if (error.code === -32601) await this.#explain(error, name)
      throw error
    }
  }

  async #explain(error, name) {
    this.#commands ??= commandsOf(await this.discover())
    if (this.#commands.includes(name)) return
    const meant = nearest(name, this.#commands)
    error.message = `the plug-in has no command '${name}'${meant ? `; did you mean '${meant}'?` : ''}`
  }
}

/** Connects to a server at an http address, as in `await connect('http://127.0.0.1:8090')`. */
export function connect(address, options = {}) {
  return Tv.connect(address, options)
}

/** In Node, which has no synchronous requests: a worker makes them, and this thread waits. */
function workerTransport(base, token) {
  const threads = globalThis.process?.getBuiltinModule?.('node:worker_threads')
  if (!threads) throw new EmpConnectionError('installWindow wants a browser, or Node from 20.16 on')
  const signal = new Int32Array(new SharedArrayBuffer(4))
  const {port1: port, port2} = new threads.MessageChannel()
  const wait = patience => {
    Atomics.wait(signal, 0, 0, patience)
    Atomics.store(signal, 0, 0)
    return threads.receiveMessageOnPort(port)?.message
  }
  const here = import.meta.url  // in a variable, so that no bundler takes the worker for one of the page's
  const worker = new threads.Worker(new URL('./node-window.js', here),
    {workerData: {base, token, signal, port: port2}, transferList: [port2], execArgv: [], stdin: false})
  worker.unref()
  port.unref()
  if (!wait(handshakePatience)) throw new EmpConnectionError('the worker that calls the virtual TV did not start')
  return {
    post(body, session) {
      port.postMessage({post: {body, session}})
      const {status, text, error, sent} = wait()
      if (error) throw new EmpConnectionError(`${base} can't be reached: ${error}`, {sent})
      return {status, text}
    },
    adopt: session => port.postMessage({adopt: session}),
    release: () => port.postMessage({release: true}),
  }
}

/** Puts the synchronous object of the set under `options.name` into `target`; see `install` in window.js. */
export function installWindow(target, options) {
  const isPage = typeof globalThis.XMLHttpRequest === 'function'
  return install(target, {...options, transport: isPage ? undefined : workerTransport})
}

/** Runs a transcript on anything that has `Execute`; see transcript.js. */
export async function runTranscript(...args) {
  return (await import('./transcript.js')).runTranscript(...args)
}
