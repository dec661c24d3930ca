// SPDX-License-Identifier: MIT
/*
 * The connected client, which `connect` and `createTv` return, regardless of how it is connected.
 */
import {Events, tell} from './events.js'
import {Wire} from './wire.js'
import './window.js'

const {EmpConnectionError, parametersOf, valueOf, executed, commandsOf, memory} = globalThis[Symbol.for('emp-window/2')]

/** The known name nearest to a misspelled one; undefined when none is close. */
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

/** A connected client. client.d.ts describes its members. */
export class Tv {
  isVirtual = true
  window
  #wire
  #events
  #options
  #listeners = new Set()  // listeners to the connection
  #usedWindow = false  // a command has run on the current connection
  #base
  #commands

  /**
   * @param address  of the server; empty for a set in memory
   * @param dial  creates a socket, as for Wire
   * @param options  as for `connect`
   */
  constructor(address, dial, options) {
    this.address = address
    this.#options = options
    this.#base = address || memory
    this.#wire = new Wire({
      dial,
      base: this.#base,
      patience: options.patience ?? 10_000,
      pauses: {first: options.firstPause ?? 100, longest: options.longestPause ?? 5000},
      welcome: (ready, fail) => this.#welcome(ready, fail),
      lost: reason => this.#tellConnection({connected: false, reason}),
      event: event => this.#events.take(event),
    })
    this.#events = new Events(this.#wire)
    this.window = this.#windowCommands()
  }

  /**
   * Creates a client that is still connecting; its calls wait for the connection.
   * @return {tv, opened}; the promise `opened` is fulfilled when the client is connected
   */
  static begin(address, dial, options) {
    const tv = new Tv(address, dial, options)
    const opened = tv.#wire.open().catch(error => {
      tv.#wire.close()
      throw error
    })
    return {tv, opened}
  }

  static async connect(address, dial, options) {
    const {tv, opened} = Tv.begin(address, dial, options)
    await opened
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
    this.#listeners.add(listener)
    tell(listener, {connected: this.connected})
    return Object.assign(() => { this.#listeners.delete(listener) }, {ready: Promise.resolve()})
  }

  close() {
    this.#events.close(new EmpConnectionError(`the connection to ${this.#base} was closed`))
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
  export(format) { return this.call('tv.export', format === undefined ? {} : {format}) }
  scan(options) { return this.call('tv.scan', options) }
  importScan(options = {}) { return this.call('tv.importScan', options) }
  editService(service, change, value) {
    return this.call('tv.editService', value === undefined ? {service, change} : {service, change, value})
  }
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
    const resolve = answer => {
      const {session, server} = answer ?? {}
      if (typeof session !== 'string') {
        fail(new EmpConnectionError(`session.open: the answer of ${this.#base} has no session; is that emp-window?`))
        return
      }
      const isAnother = this.session !== undefined
      Object.assign(this, {session, server})
      ready()
      this.#events.resume()
      if (isAnother && this.#usedWindow) {
        console.warn(`emp-window: the connection to ${this.#base} broke and is back, with a new session: the window ` +
                     'that was selected and the channels that were found are gone.')
      }
      this.#usedWindow = false
      this.#tellConnection({connected: true})
    }
    const reject = error => {
      if (error instanceof EmpConnectionError) error.sent = false  // none of the caller's calls has been sent
      fail(error)
    }
    this.#wire.send({method: 'session.open', params: {appId, widgetId}, resolve, reject})
  }

  #tellConnection(event) {
    for (const listener of [...this.#listeners]) tell(listener, event)
  }

  /** An object with a function for every name, since only the server knows the commands. */
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
