// SPDX-License-Identifier: MIT
/*
 * Decides which entries of the timeline are shown. Works incrementally, a few milliseconds at a time, so that nothing
 * waits for it.
 */
import {failureOf, replyShown} from './reply.js'
import {interfaceOf} from './timeline-log.js'
import {titleOf} from './timeline-outside.js'

/** @typedef {import('./timeline-log.js').Entry} Entry */
/** @typedef {{text: string, client: string, command: string, interface: string, level: string, hidden: string[]}} Wanted */

const share = 5  // ms per frame

/** Kinds of entries that can be hidden. @type {{[kind: string]: string[]}} */
export const kinds = {
  commands: ['command'],
  'set': ['source', 'service', 'mode', 'plane', 'tracks', 'favourites', 'services', 'inputs', 'knob'],
  keys: ['settings'],
  faults: ['fault'],
  clients: ['engine', 'session', 'call', 'log'],
}

/** @type {Wanted} */
export const everything = {text: '', client: '', command: '', interface: '', level: '', hidden: []}

export class TimelineFilter {
  /** The shown entries. @type {Entry[]} */
  shown = []
  wanted = everything
  /** The number of shown entries that were dropped. */
  dropped = 0
  /** @type {RegExp | undefined} */
  #text
  #hidden = new Set()
  #next = 0  // position among all entries, including dropped ones

  /** @param {import('./timeline-log.js').TimelineLog} log */
  constructor(log) {
    this.log = log
  }

  /** @param {Wanted} wanted */
  set(wanted) {
    this.wanted = wanted
    this.#text = wanted.text ? new RegExp(wanted.text.replace(/[.*+?^${}()|[\]\\]/g, '\\$&'), 'i') : undefined
    this.#hidden = new Set(wanted.hidden.flatMap(kind => kinds[kind] ?? []))
    this.shown = []
    this.#next = 0
  }

  /** Filters new entries for a few milliseconds. @return {boolean} true when all are done */
  work() {
    const {entries, gone} = this.log
    const oldest = entries[0]?.id ?? 0
    let stale = 0
    while (stale < this.shown.length && this.shown[stale].id < oldest) ++stale
    if (stale > 0) this.shown.splice(0, stale)
    this.dropped = stale
    this.#next = Math.max(this.#next, gone)
    const end = performance.now() + share
    for (; this.#next - gone < entries.length; ++this.#next) {
      if (this.#next % 8 === 0 && performance.now() > end) return false
      const entry = entries[this.#next - gone]
      if (this.#matches(entry)) this.shown.push(entry)
    }
    return true
  }

  /** @param {Entry} entry */
  #matches(entry) {
    const {wanted, log} = this
    const {event} = entry
    if (entry.topic === 'resync') return true
    if (this.#hidden.has(entry.topic)) return false
    if (wanted.client && !(entry.topic === 'command' && log.clientOf(event) === wanted.client)) return false
    if (wanted.command && event.name !== wanted.command) return false
    if (wanted.interface && !entry.calls.some(({operation}) => interfaceOf(operation) === wanted.interface)) return false
    if (wanted.level && !entry.log.some(({level}) => level === Number(wanted.level))) return false
    return !this.#text || this.#textsOf(entry).some(text => /** @type {RegExp} */ (this.#text).test(text))
  }

  /** @param {Entry} entry @return {string[]} */
  #textsOf({topic, event, calls, changes, log}) {
    const own = topic === 'command'
      ? [`${event.name} ${event.parameters.join(' ')}`, replyShown(event.reply, Infinity), failureOf(event.name, event.reply) ?? '', this.log.clientOf(event)]
      : [`${topic} ${titleOf(event)}`]
    return [...own, ...calls.map(({call}) => call), ...changes.map(titleOf), ...log.map(({text}) => text)]
  }
}
