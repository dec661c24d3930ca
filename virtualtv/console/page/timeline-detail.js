// SPDX-License-Identifier: MIT
import {act, tv} from './act.js'
import {transcriptLine} from './deed.js'
import {h} from './dom.js'
import './json.js'
import './long-text.js'
import {Part} from './part.js'
import {documentIn, failureOf, replyShown, valueOf} from './reply.js'
import {clock, front, visible} from './shown.js'
import {store} from './store.js'
import {timeline} from './timeline-log.js'
import {differences, titleOf, valueShown} from './timeline-outside.js'
import {isHit} from './timeline-row.js'

/** @typedef {import('./timeline-log.js').Entry} Entry */

const mostLines = 500  // calls, keys or messages shown

/** The details of an entry: its calls, changes, log messages and reply, and the state after it. */
export class TimelineDetail extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['commands', 'connection'])
  /** @type {() => void} */
  onleave = () => {}
  /** @type {Entry | null} */
  #entry = null
  /** @type {any} */
  #state = null
  /** The state before it, to mark differences. @type {any} */
  #before = null
  /** Why there is no state. */
  #reason = ''

  clear() {
    this.#entry = null
  }

  /**
   * @param {Entry} entry
   * @param {(isHeld: boolean) => void} told  called once it is known whether the state after it is available
   */
  async show(entry, told) {
    this.#entry = entry
    this.#state = this.#before = null
    this.#reason = entry.topic === 'command' ? 'Asking the server…' : 'Only commands have a stored state.'
    this.redraw()
    if (entry.topic !== 'command') {
      store.set('past', null)
      return told(false)
    }
    if (entry.server !== timeline.server) {
      this.#reason = 'The server was restarted since and no longer has this state.'
      store.set('past', null)
      this.redraw()
      return told(false)
    }
    await this.#ask(entry, told)
  }

  /** @param {Entry} entry @param {(isHeld: boolean) => void} told */
  async #ask(entry, told) {
    const command = /** @type {number} */ (entry.command)
    const [state, whole, before] = await Promise.allSettled([tv().history(command), entry.whole ?? tv().why(command), command > 1 ? tv().history(command - 1) : null])
    if (this.#entry !== entry) return
    if (whole.status === 'fulfilled') timeline.complete(entry, whole.value)
    this.#before = before.status === 'fulfilled' ? before.value : null
    if (state.status === 'fulfilled') {
      this.#state = state.value
      this.#reason = ''
      told(true)
      store.set('past', {command, entry, state: this.#state})
    } else {
      const {code, message} = state.reason
      this.#reason = code === 1002 ? 'The server no longer has it: it keeps the last 1,000 commands.' : message
      told(false)
      store.set('past', null)
    }
    this.redraw()
  }

  view() {
    const entry = this.#entry
    if (!entry) return null
    return [
      h('div', {class: 'detail-head row'},
        h('h3', {class: 'grow cut name'}, entry.topic === 'command' ? this.#line(entry) : entry.topic),
        h('button', {class: 'plain', title: 'Escape', onclick: () => this.onleave()}, 'Now')),
      h('div', {class: 'detail-body', tabindex: 0, role: 'group', 'aria-label': 'All about it'},
        entry.topic === 'command' ? this.#command(entry) : this.#outside(entry)),
      h('dialog', {'aria-labelledby': 'go-back-title'},
        h('h2', {id: 'go-back-title'}, `Go back to the state after command ${entry.command}?`),
        h('p', null, `The set becomes what it persisted at ${clock(entry.time)}: services, settings keys, sources and services on screen.`),
        h('p', null, 'Engines of all clients are closed and faults and latencies end, as when the set is switched off and on. The timeline stays; you can go forward again in the same way.'),
        h('div', {class: 'row'}, h('button', {class: 'main', onclick: this.#goBack}, 'Go back'), h('button', {onclick: this.#close}, 'Cancel'))),
    ]
  }

  drawn() {
    const entry = this.#entry
    if (!entry) return
    const text = /** @type {import('./long-text.js').LongText | null} */ (this.querySelector('emp-long-text'))
    text?.show(valueOf(replyOf(entry)))
    const reply = /** @type {import('./json.js').JsonTree | null} */ (this.querySelector('emp-json.reply'))
    if (reply && reply.dataset.id !== String(entry.id)) {
      reply.dataset.id = String(entry.id)
      reply.show(documentIn(replyOf(entry)))
      reply.openSmall()
    }
    const state = /** @type {import('./json.js').JsonTree | null} */ (this.querySelector('emp-json.state'))
    if (!state || state.dataset.id === String(entry.id)) return
    state.dataset.id = String(entry.id)
    state.show(this.#state, this.#before ? differences(this.#before, this.#state).map(([path]) => path) : [])
  }

  /** @param {Entry} entry */
  #line({event}) {
    return front(/** @type {string} */ (transcriptLine(event.list ? 'window.executeWithParamList' : 'window.execute', {name: event.name, parameters: event.parameters})), 300)
  }

  /** @param {Entry} entry */
  #command(entry) {
    const {event, calls, changes, log} = entry
    const reply = replyOf(entry)
    const failure = failureOf(event.name, reply)
    const keys = changes.filter(({topic}) => topic === 'settings')
    const others = changes.filter(({topic}) => topic !== 'settings')
    return [
      h('p', {class: 'row'},
        h('span', {class: 'dim'}, `${clock(entry.time)}, ${front(timeline.clientOf(event), 80)}, command ${entry.command}, ${event.duration.toFixed(1)} ms${event.delay > 0 ? `, held back ${event.delay} ms` : ''}`),
        isHit(entry) && h('span', {class: 'fault'}, 'a fault hit it')),
      h('section', {key: 'back', class: 'row'},
        h('button', {disabled: !this.#state, onclick: this.#question, 'aria-describedby': 'go-back-why'}, 'Go back to here…'),
        h('span', {class: 'dim', id: 'go-back-why'}, this.#state ? 'Screen and Planes show it as it was then.' : this.#reason)),
      this.#part('Reply', null, [
        h('p', {class: failure ? 'fail' : null}, h('code', null, replyShown(reply, 80)), failure && ` ${failure}`),
        documentIn(reply) !== undefined && h('emp-json', {key: `json-${entry.id}`, class: 'reply', 'aria-label': 'Reply as a document'}),
        valueOf(reply).length > 40 && h('emp-long-text', {key: `text-${entry.id}`})]),
      this.#part('Calls', calls.length, this.#lines(calls, ({call, fault}) => h('code', {class: fault ? 'fault' : null}, visible(call)))),
      this.#part('Changed keys', keys.length, this.#lines(keys, ({key, before, after}) => h('code', null, visible(`${key} ${valueShown(before)} -> ${valueShown(after)}`)))),
      this.#part('What changed', others.length, this.#lines(others, change => this.#change(change))),
      this.#part('Log', log.length, this.#lines(log, ({level, text}) => h('code', {class: text.includes('!!!!ERROR!!!!') ? 'fail' : null}, h('span', {class: 'dim'}, `${level} `), visible(plain(text))))),
      this.#state && this.#part('State after it', null, [
        h('p', {class: 'dim'}, this.#before ? 'Differences from the previous command are marked.' : 'The previous command is not available, so nothing is marked.'),
        h('emp-json', {key: `state-${entry.id}`, class: 'state', 'aria-label': 'State after the command'})]),
    ]
  }

  /** @param {Entry} entry */
  #outside({time, event, calls, changes, log}) {
    return [
      h('p', {class: 'dim'}, `${clock(time)}, from outside of commands`),
      h('p', {class: event.topic === 'fault' ? 'fault name' : 'name'}, titleOf(event)),
      this.#part('What changed', null, [this.#change(event), ...changes.map(change => h('p', null, h('code', null, visible(titleOf(change)))))]),
      calls.length > 0 && this.#part('Calls', calls.length, this.#lines(calls, ({call}) => h('code', null, visible(call)))),
      log.length > 0 && this.#part('Log', log.length, this.#lines(log, ({level, text}) => h('code', null, h('span', {class: 'dim'}, `${level} `), visible(plain(text))))),
    ]
  }

  /** @param {any} change */
  #change(change) {
    const members = change.before === undefined ? [] : differences(change.before, change.after)
    return h('div', null, h('code', {class: change.topic === 'fault' ? 'fault' : null}, front(`${change.topic} ${titleOf(change)}`, 300)),
      members.length > 0 && h('table', {class: 'differences'}, h('tbody', null, members.slice(0, 60).map(([name, before, after]) =>
        h('tr', null, h('th', {scope: 'row'}, front(name || 'value', 60)), h('td', null, front(valueShown(before), 80)), h('td', null, '→'), h('td', null, front(valueShown(after), 80)))))))
  }

  /** @param {string} title @param {number | null} count @param {import('./dom.js').Child} content */
  #part(title, count, content) {
    return h('section', {key: title, 'aria-label': title}, h('h3', null, title, count !== null && h('span', {class: 'dim'}, ` ${count}`)), content)
  }

  /** @param {any[]} list @param {(one: any) => import('./dom.js').Child} shown */
  #lines(list, shown) {
    if (list.length === 0) return h('p', {class: 'dim'}, 'None.')
    return h('ol', {class: 'lines'}, list.slice(0, mostLines).map(one => h('li', null, shown(one))), list.length > mostLines && h('li', {class: 'dim'}, `${list.length - mostLines} more`))
  }

  get #dialog() {
    return /** @type {HTMLDialogElement} */ (this.querySelector('dialog'))
  }

  #question = () => this.#dialog.showModal()

  #close = () => this.#dialog.close()

  #goBack = async () => {
    const command = this.#entry?.command
    this.#close()
    if (await act('tv.goBack', {command})) this.onleave()
  }
}
customElements.define('emp-timeline-detail', TimelineDetail)

/** The whole reply, once it is known. @param {Entry} entry */
const replyOf = ({event, whole}) => whole ? whole.reply : event.reply

/** Without the colours of a terminal. @param {string} text */
const plain = text => text.replace(/\x1b\[[\d;]*m/g, '').trim()
