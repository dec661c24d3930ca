// SPDX-License-Identifier: MIT
import {tv} from './act.js'
import {attempt} from './attempt.js'
import {h} from './dom.js'
import './fault-form.js'
import {Part} from './part.js'
import {behind, linesOf, scenarios, slowKnob} from './scenarios.js'
import {store} from './store.js'

/** The current faults, scenarios that set faults, and a form for any other fault. */
class Faults extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['faults', 'state', 'connection'])
  #latency = '0'
  #isListening = false
  /** The scenario that failed, and why. */
  #problem = {name: '', reason: ''}

  view() {
    this.#listen()
    // Each part has its own element, so that changes in one do not move the others.
    return h('div', {class: 'pane-body'}, h('div', {class: 'stack'}, this.#set()), h('div', {class: 'stack'}, this.#scenarios()), h('emp-fault-form'))
  }

  drawn() {
    // The form may have missed changes while the pane was hidden.
    const form = this.querySelector('emp-fault-form')
    if (form instanceof Part) form.redraw()
  }

  /** The latency is not part of the state, so it is fetched once, and updated by events. */
  #listen() {
    if (this.#isListening || !store.get('connection').connected) return
    this.#isListening = true
    tv().on('*', (/** @type {any} */ event) => {
      if (event.topic === 'knob' && event.name === slowKnob) this.#slow(String(event.after))
      else if (event.state !== undefined || event.started !== undefined) tv().get(slowKnob).then(value => this.#slow(value), () => {})
    })
  }

  /** @param {string} latency */
  #slow(latency) {
    if (latency === this.#latency) return
    this.#latency = latency
    this.changed()
  }

  #set() {
    const faults = store.get('faults')
    return [
      h('div', {class: 'row'},
        h('h3', {class: 'grow'}, `Faults set${faults.length ? `: ${faults.length}` : ''}`),
        h('button', {disabled: faults.length === 0, onclick: this.#remove}, 'Remove all')),
      faults.length === 0 && h('p', {class: 'dim'}, 'None. Run a scenario, or choose a call below.'),
      h('ul', {class: 'fault-list', 'aria-label': 'Faults set'}, faults.map(({id, fault, hits}) => h('li', {key: id},
        h('code', {class: 'fault name'}, `.fault ${fault}`),
        h('span', {class: 'dim hits'}, `fault ${id}, `, h('span', {key: hits, class: 'flash'}, hits === 1 ? '1 hit' : `${hits} hits`)),
        h('button', {'aria-label': `Remove fault ${id}`, onclick: (/** @type {MouseEvent} */ event) => this.#remove(event, id)}, 'Remove')))),
    ]
  }

  /** Removes a fault, or all. The button disappears, so for keyboard users the focus moves to the next one. */
  #remove = async (/** @type {MouseEvent} */ {detail, currentTarget}, /** @type {number | undefined} */ id = undefined) => {
    const buttons = /** @type {HTMLElement[]} */ ([...this.querySelectorAll('.fault-list button')])
    const at = buttons.indexOf(/** @type {HTMLElement} */ (currentTarget))
    const next = at < 0 ? undefined : buttons[at + 1] ?? buttons[at - 1]
    if (detail === 0) (next ?? /** @type {HTMLElement} */ (this.querySelector('#fault-search'))).focus()
    const removed = store.get('faults').filter(fault => id === undefined || fault.id === id)
    if (await attempt('tv.clearFaults', id === undefined ? {} : {id}) !== undefined) return
    for (const step of behind(removed)) await attempt(step.method, step.params)
  }

  #scenarios() {
    const seen = {state: store.get('state'), faults: store.get('faults'), latency: this.#latency}
    return [
      h('h3', null, 'Scenarios'),
      h('ul', {class: 'scenarios', 'aria-label': 'Scenarios'}, scenarios.map(({name, effect, steps, isOn, undo}) => {
        const isSet = isOn(seen)
        const next = isSet ? undo(seen) : steps
        return h('li', {key: name, class: isSet ? 'set' : ''},
          h('strong', {class: isSet ? 'fault' : ''}, name),
          h('button', {'aria-label': `${isSet ? 'Undo' : 'Run'}: ${name}`, onclick: () => this.#run(name, next)}, isSet ? 'Undo' : 'Run'),
          h('span', {class: 'wide dim'}, effect),
          h('span', {class: 'wide'}, linesOf(next).map(line => h('code', null, line)),
            this.#problem.name === name && h('span', {class: 'fail', role: 'alert'}, this.#problem.reason)))
      })),
    ]
  }

  /** @param {string} name @param {import('./scenarios.js').Step[]} steps */
  async #run(name, steps) {
    this.#problem = {name: '', reason: ''}
    for (const {method, params} of steps) {
      const reason = await attempt(method, params)
      if (reason === undefined) continue
      this.#problem = {name, reason}
      break
    }
    this.changed()
  }
}
customElements.define('emp-faults', Faults)
