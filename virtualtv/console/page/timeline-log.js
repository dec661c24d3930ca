// SPDX-License-Identifier: MIT
/*
 * The entries of the timeline: the commands of all clients, each with its events, and changes of the set from outside.
 * Keeps only the last ones.
 */
import {shortName} from './timeline-outside.js'

const mostEntries = 10_000

/**
 * @typedef {object} Entry
 * @property {number} id  increases with each entry
 * @property {string} topic  `command`, the topic of an event outside of commands, or `resync`
 * @property {number} time  ms since 1970
 * @property {number} [command]  the command's number, for `tv.why` and the like
 * @property {string} server  the server's run to which that number belongs
 * @property {any} event  the event itself
 * @property {any[]} calls  the `call` events of the command, or of the opening of an engine
 * @property {any[]} changes  the other events of it
 * @property {any[]} log  its log messages
 * @property {any} [whole]  the result of `tv.why`, once it was requested
 */

/** The name of a command's engine, as in events of the topic `engine`. @param {any} event  of a command */
export const engineOf = event => event.session ? `${event.session}:${event.engine}` : event.engine

/** @param {string} topic */
const isDetail = topic => topic === 'call' || topic === 'log'

export class TimelineLog {
  /** @type {Entry[]} */
  entries = []
  version = 0
  /** The number of dropped entries. */
  gone = 0
  /** Application ids by engine. @type {Map<string, string>} */
  applications = new Map()
  /** The windows that engines have selected, except the main one. @type {Map<string, string>} */
  windows = new Map()
  /** The values that the filters offer. */
  seen = {clients: new Set(), commands: new Set(), interfaces: new Set()}
  server = ''
  /** Number of the last event. */
  last = 0
  #id = 0
  /** Events of commands that have not ended yet, by number of the command. @type {Map<number, any[]>} */
  #open = new Map()
  /** Events of an engine that is being opened or closed. @type {any[]} */
  #opening = []

  /** @param {any} event  of any topic */
  take(event) {
    if (event.state !== undefined) return this.#begin(event)
    this.last = event.number
    if (event.topic === 'command') {
      this.#add(event, this.#open.get(event.command) ?? [])
      this.#open.delete(event.command)
    } else if (event.command !== undefined) {
      const events = this.#open.get(event.command)
      if (events) events.push(event)
      else this.#open.set(event.command, [event])
    } else {
      this.#takeFromOutside(event)
    }
  }

  /** Handles the state at the start of a subscription, or after missed events. @param {any} event */
  #begin(event) {
    const isAnother = this.server !== '' && this.server !== event.server
    if (isAnother) this.windows.clear()
    this.server = event.server
    this.#open.clear()
    this.#opening = []
    if (event.resync) this.#add({topic: 'resync', number: event.number, isAnother}, [])
  }

  /** Handles events outside of commands. Events while an engine is opened belong to its opening. @param {any} event */
  #takeFromOutside(event) {
    if (event.topic === 'engine') {
      this.#add(event, this.#opening)
      this.#opening = []
      this.#takeEngine(event)
    } else if (event.topic === 'log' && this.#opening.length === 0) {
      const engine = this.#lastEngine()
      if (engine) engine.log.push(...event.lines)
      else this.#add(event, [event])
    } else if (isDetail(event.topic) || (this.#opening.length > 0 && (event.topic === 'settings' || event.what === 'hit'))) {
      this.#opening.push(event)
    } else {
      const [first, ...more] = this.#opening
      if (first) this.#add(first, [first, ...more])
      this.#opening = []
      this.#add(event, [])
    }
  }

  /** The engine that was opened or closed last, unless a command ran since. */
  #lastEngine() {
    const last = this.entries.findLast(({topic}) => topic === 'engine' || topic === 'command')
    return last?.topic === 'engine' ? last : undefined
  }

  /** @param {any} event */
  #takeEngine({what, engine, appId}) {
    this.windows.delete(engine)
    if (what === 'opened') this.applications.set(engine, appId)
  }

  /** @param {any} event @param {any[]} events  events that belong to it */
  #add(event, events) {
    const entry = {
      id: ++this.#id, topic: event.topic, time: event.time ?? Date.now(), command: event.command, server: this.server, event,
      calls: events.filter(({topic}) => topic === 'call'),
      log: events.filter(({topic}) => topic === 'log').flatMap(({lines}) => lines),
      changes: events.filter(({topic}) => !isDetail(topic)),
    }
    this.entries.push(entry)
    if (this.entries.length > mostEntries * 1.1) {
      this.gone += this.entries.length - mostEntries
      this.entries.splice(0, this.entries.length - mostEntries)
    }
    ++this.version
    if (entry.topic === 'command') this.#note(entry)
  }

  /** Updates the values for filters, and the window that the engine has selected. @param {Entry} entry */
  #note({event, calls}) {
    this.seen.clients.add(this.clientOf(event))
    this.seen.commands.add(event.name)
    for (const {operation} of calls) this.seen.interfaces.add(interfaceOf(operation))
    if (event.name !== 'SetWindow' || !event.reply?.accepted) return
    const isPip = /^\s*[+-]?0*[1-9]/.test(event.parameters[0] ?? '')
    this.windows.set(engineOf(event), isPip ? 'pip' : 'main')
  }

  /** Adds the calls of a command that ran before this page subscribed to calls. @param {Entry} entry @param {any} whole */
  complete(entry, whole) {
    entry.whole = whole
    if (entry.calls.length > 0 || entry.log.length > 0) return
    entry.calls = whole.calls.map((/** @type {string} */ call) => ({
      call, operation: call.replace(/\[[^\]]*\]/, '').replace(/\(.*/s, ''), fault: call.endsWith(' [fault]')}))
    entry.log = whole.log
    for (const {operation} of entry.calls) this.seen.interfaces.add(interfaceOf(operation))
    ++this.version
  }

  /** The client of a command: the application's id, or else the session's short name. @param {any} event */
  clientOf(event) {
    const application = this.applications.get(engineOf(event))
    const name = application || shortName(event.session ?? '')
    const engine = event.engine === 'main' || !event.session ? '' : `:${event.engine}`
    return (name || '(no name)') + engine
  }
}

/** @param {string} operation  as in `IServiceNavigation::GetTvMode` */
export const interfaceOf = operation => operation.split('::')[0]

/** The timeline of this page. */
export const timeline = new TimelineLog()
