/*
 * What has happened on the TV, as the timeline shows it: the commands of all clients, each with what belongs to it, and what
 * changed the set from outside. Holds the last ones only.
 */

const mostEntries = 10_000

/**
 * @typedef {object} Entry
 * @property {number} number  of its event
 * @property {string} topic  `command`, or what happened from outside
 * @property {number} time  when it was told, ms
 * @property {number} [command]  the command's number, for `tv.why` and the like
 * @property {any} event  as it was told
 * @property {any[]} calls  the `call` events of the command
 * @property {any[]} changes  other events of the command
 * @property {any[]} log  its log lines
 */

class TimelineLog {
  /** @type {Entry[]} */
  entries = []
  version = 0
  /** Events of commands that have not ended yet, by number of the command. @type {Map<number, any[]>} */
  #open = new Map()

  /** @param {any} event  of any topic */
  take(event) {
    if (event.state !== undefined) return
    if (event.command !== undefined && event.topic !== 'command') {
      const events = this.#open.get(event.command)
      if (events) events.push(event)
      else this.#open.set(event.command, [event])
      return
    }
    const events = this.#open.get(event.command) ?? []
    this.#open.delete(event.command)
    this.#add(event, events)
  }

  /** @param {any} event @param {any[]} events  what belongs to it */
  #add(event, events) {
    this.entries.push({
      number: event.number, topic: event.topic, time: Date.now(), command: event.command, event,
      calls: events.filter(({topic}) => topic === 'call'),
      log: events.filter(({topic}) => topic === 'log').flatMap(({lines}) => lines),
      changes: events.filter(({topic}) => topic !== 'call' && topic !== 'log'),
    })
    if (this.entries.length > mostEntries * 1.1) this.entries.splice(0, this.entries.length - mostEntries)
    ++this.version
  }
}

/** The timeline of this page. */
export const timeline = new TimelineLog()
