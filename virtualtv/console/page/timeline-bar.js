// SPDX-License-Identifier: MIT
import {h} from './dom.js'
import {Part} from './part.js'
import {everything, kinds} from './timeline-filter.js'
import {timeline} from './timeline-log.js'

/** @typedef {import('./timeline-filter.js').Wanted} Wanted */

/** The controls of the timeline: filters, kinds of lines, and the export. */
export class TimelineBar extends Part {
  /** @type {Wanted} */
  wanted = everything
  /** @type {(wanted: Wanted) => void} */
  onwanted = () => {}
  /** @type {() => void} */
  onexport = () => {}
  #count = ''
  /** True when the person has changed the filter and the count was not announced yet. */
  #isAsked = false
  #isTold = false

  /**
   * The number of shown entries, in words. Announced to screen readers after a change of the filter, not with each
   * event.
   */
  get count() {
    return this.#count
  }

  set count(words) {
    this.#count = words
    this.#isTold = this.#isAsked
    this.#isAsked = false
  }

  view() {
    const {wanted} = this
    const {clients, commands, interfaces} = timeline.seen
    const isFiltered = wanted !== everything
    return [
      h('input', {type: 'search', class: 'find', 'aria-label': 'Filter by text', placeholder: 'Filter: name, reply, call, key, log', value: wanted.text,
        oninput: (/** @type {Event} */ event) => this.#want({text: /** @type {HTMLInputElement} */ (event.target).value})}),
      this.#choice('client', 'Client', [...clients]),
      this.#choice('command', 'Command', [...commands].sort()),
      this.#choice('interface', 'Interface', [...interfaces].sort()),
      this.#choice('level', 'Log level', ['0', '1', '2', '3']),
      h('span', {class: 'kinds', role: 'group', 'aria-label': 'Kinds of lines'}, Object.keys(kinds).map(kind => h('button', {
        key: kind, class: 'kind', 'aria-pressed': String(!wanted.hidden.includes(kind)), title: `Show or hide: ${kind}`,
        onclick: () => this.#want({hidden: wanted.hidden.includes(kind) ? wanted.hidden.filter(other => other !== kind) : [...wanted.hidden, kind]}),
      }, kind))),
      h('button', {class: 'plain', disabled: !isFiltered, onclick: () => this.#replace(everything)}, 'Show all'),
      h('span', {class: 'dim tally', 'aria-live': this.#isAsked || this.#isTold ? 'polite' : 'off'}, this.count),
      h('button', {title: 'Exports the visible commands, or a selected range: Shift with a click, or with arrow keys, in the list', onclick: this.onexport}, 'Export…'),
    ]
  }

  /** @param {'client' | 'command' | 'interface' | 'level'} name @param {string} label @param {string[]} values */
  #choice(name, label, values) {
    const chosen = this.wanted[name]
    const offered = chosen && !values.includes(chosen) ? [chosen, ...values] : values
    return h('select', {key: name, 'aria-label': label, title: label, value: chosen, class: chosen ? 'is-set' : null,
      onchange: (/** @type {Event} */ event) => this.#want({[name]: /** @type {HTMLSelectElement} */ (event.target).value})},
    h('option', {value: ''}, label), offered.map(value => h('option', {key: value, value}, value.length > 40 ? `${value.slice(0, 40)}…` : value)))
  }

  /** @param {Partial<Wanted>} changed */
  #want(changed) {
    this.#replace({...this.wanted, ...changed})
  }

  /** @param {Wanted} wanted */
  #replace(wanted) {
    this.wanted = wanted
    this.#isAsked = true
    this.redraw()
    this.onwanted(wanted)
    this.redraw()
  }
}
customElements.define('emp-timeline-bar', TimelineBar)
