// SPDX-License-Identifier: MIT
/*
 * The subscriptions of a connected client.
 */
import './window.js'

const {EmpRpcError} = globalThis[Symbol.for('emp-window/2')]

/** Calls a listener. Its exceptions are reported as uncaught errors, and do not stop the caller. */
export function tell(listener, event) {
  try {
    listener(event)
  } catch (error) {
    if (globalThis.reportError) globalThis.reportError(error)
    else queueMicrotask(() => { throw error })
  }
}

/** The app's subscriptions. Each new connection subscribes again, starting after the last event delivered. */
export class Events {
  #wire
  #listeners = new Set()  // {topic, listener, after, from, settle, fail}; events up to `from` were delivered
  #last  // the number of the last event, or of the first state
  #server  // the server's run that these numbers belong to
  #end  // why no more events are delivered

  constructor(wire) {
    this.#wire = wire
  }

  on(topic, listener, {after} = {}) {
    const entry = {topic, listener, after}
    const ready = new Promise((settle, fail) => Object.assign(entry, {settle, fail}))
    ready.catch(() => {})
    if (this.#end) entry.fail(this.#end)
    else this.#listeners.add(entry)
    if (this.#wire.isReady) this.#subscribe(entry)
    return Object.assign(() => this.#off(entry), {ready})
  }

  /** Continues on a new connection where the previous one broke. */
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
    this.#end = error
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

  /** Passes the whole state to a listener, either initially or because missed events are no longer available. */
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
    const rejectAnswer = error => error instanceof EmpRpcError && reject(error)  // otherwise the next connection catches up
    this.#wire.send({method, params, resolve, reject: rejectAnswer})
  }
}
