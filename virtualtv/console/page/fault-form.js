// SPDX-License-Identifier: MIT
import {tv} from './act.js'
import {attempt} from './attempt.js'
import {transcriptLine} from './deed.js'
import {h} from './dom.js'
import './list.js'
import {Part} from './part.js'
import {store} from './store.js'

/** @typedef {import('./list.js').LongList} LongList */

const ways = {
  code: 'answers this result', null: 'answers a null pointer', unwritten: 'succeeds, writes nothing', throw: 'throws an exception',
  outputs: 'writes these outputs',
}

/** A form to create a fault: which call, how it fails, when, and for which session. */
class FaultForm extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['operations', 'sessions'])
  #search = ''
  #operation = ''
  /** @type {keyof typeof ways} */
  #way = 'code'
  #fields = {result: '0', nth: '1', times: '1', window: '', session: ''}
  #isAlways = false
  /** @type {{[name: string]: string}} */
  #outputs = {}
  #problem = ''

  view() {
    return [
      h('h3', null, 'Make a call fail'),
      h('label', {class: 'unseen', for: 'fault-search'}, 'Search calls'),
      h('input', {id: 'fault-search', type: 'search', placeholder: 'Search calls and outputs', value: this.#search,
        oninput: (/** @type {Event} */ event) => this.#find(event)}),
      h('emp-long-list', {id: 'operations', class: 'operations', 'aria-label': 'Calls to the set'}),
      this.#operation ? this.#form() : h('p', {class: 'dim'}, 'Choose a call from the plug-in to the set, to make it fail.'),
    ]
  }

  drawn() {
    const list = /** @type {LongList} */ (this.querySelector('emp-long-list'))
    const found = this.#found()
    list.length = found.length
    list.keyOf = at => found[at].name
    list.chosen = found.findIndex(({name}) => name === this.#operation)
    list.row = at => [h('code', {class: 'cut', title: found[at].name}, found[at].name),
      h('span', {class: 'dim cut outputs'}, outputsOf(found[at]).join(', '))]
    list.onchoose = at => this.#choose(found[at].name)
    list.redraw()
  }

  #found() {
    const words = this.#search.toLowerCase().split(/\s+/)
    return store.get('operations').filter(operation => {
      const text = [operation.name, ...outputsOf(operation)].join(' ').toLowerCase()
      return words.every(word => text.includes(word))
    })
  }

  /** @param {Event} event */
  #find(event) {
    this.#search = /** @type {HTMLInputElement} */ (event.target).value
    const list = this.querySelector('emp-long-list')
    if (list) list.scrollTop = 0
    this.redraw()
  }

  /** @param {string} name */
  #choose(name) {
    if (name === this.#operation) return
    this.#operation = name
    this.#outputs = {}
    this.#problem = ''
    if (this.#way === 'outputs' && this.#names().length === 0) this.#way = 'code'
    this.changed()
  }

  /** The outputs of the selected call. @return {string[]} */
  #names() {
    const operation = store.get('operations').find(({name}) => name === this.#operation)
    return operation ? outputsOf(operation) : []
  }

  #form() {
    const names = this.#names()
    const params = this.#params()
    return h('form', {class: 'fault-form', onsubmit: (/** @type {Event} */ event) => this.#submit(event)},
      this.#labelled('Call', h('code', {class: 'name'}, this.#operation)),
      this.#select('how', 'How', this.#way, Object.entries(ways).filter(([way]) => way !== 'outputs' || names.length > 0),
        value => { this.#way = /** @type {keyof typeof ways} */ (value) }),
      this.#way === 'code' && this.#input('result', 'Result', 'a number; a text for calls that answer one'),
      this.#way === 'outputs' && names.map(name => this.#output(name)),
      this.#input('nth', 'From call', 'The first call that it hits, counted from now', 'number'),
      this.#times(),
      this.#select('window', 'Window', this.#fields.window, [['', 'both'], ['main', 'main'], ['pip', 'pip']], value => { this.#fields.window = value }),
      this.#select('session', 'Session', this.#fields.session, [['', 'all'], ...this.#sessions()], value => { this.#fields.session = value }),
      h('pre', {class: 'wide fault', 'aria-label': 'As a line of a transcript'}, transcriptLine('tv.fault', params)),
      params.session && h('p', {class: 'wide dim'}, 'The line does not include the session: transcripts name engines instead.'),
      h('p', {class: 'wide fail fault-problem', role: 'alert'}, this.#problem),
      h('div', {class: 'wide'}, h('button', {class: 'main'}, 'Set fault')))
  }

  /** @return {string[][]} */
  #sessions() {
    const own = store.get('connection').connected ? tv().session : ''
    return store.get('sessions').map(({session, shared, engines}) =>
      [session, `${session}${session === own ? ', this page' : ''}${shared ? ', requests without one' : ''}${engines.length ? '' : ', no engine'}`])
  }

  /** @param {string} label @param {import('./dom.js').Child} what */
  #labelled(label, what) {
    return [h('span', {class: 'dim'}, label), what]
  }

  /** @param {'result' | 'nth'} name @param {string} label @param {string} hint @param {string} [type] */
  #input(name, label, hint, type = 'text') {
    return [h('label', {class: 'dim', for: `fault-${name}`}, label),
      h('input', {id: `fault-${name}`, type, min: type === 'number' && 1, title: hint, value: this.#fields[name], required: type === 'number',
        oninput: (/** @type {Event} */ event) => this.#set(() => { this.#fields[name] = valueOf(event) })})]
  }

  /** @param {string} name */
  #output(name) {
    return [h('label', {class: 'dim cut', for: `fault-out-${name}`, title: name}, name),
      h('input', {key: `out-${name}`, id: `fault-out-${name}`, value: this.#outputs[name] ?? '', placeholder: 'left as it is', spellcheck: 'false',
        oninput: (/** @type {Event} */ event) => this.#set(() => { this.#outputs[name] = valueOf(event) })})]
  }

  #times() {
    return [h('label', {class: 'dim', for: 'fault-times'}, 'How often'),
      h('span', {class: 'row'},
        h('input', {id: 'fault-times', type: 'number', min: 1, value: this.#fields.times, disabled: this.#isAlways, required: true,
          oninput: (/** @type {Event} */ event) => this.#set(() => { this.#fields.times = valueOf(event) })}),
        h('label', {class: 'row'}, h('input', {type: 'checkbox', checked: this.#isAlways,
          onchange: (/** @type {Event} */ event) => this.#set(() => { this.#isAlways = /** @type {HTMLInputElement} */ (event.target).checked })}), 'always'))]
  }

  /** @param {string} id @param {string} label @param {string} value @param {string[][]} options @param {(value: string) => void} take */
  #select(id, label, value, options, take) {
    return [h('label', {class: 'dim', for: `fault-${id}`}, label),
      h('select', {id: `fault-${id}`, value, onchange: (/** @type {Event} */ event) => this.#set(() => take(valueOf(event)))},
        options.map(([option, text]) => h('option', {key: option, value: option}, text)))]
  }

  /** @param {() => void} change */
  #set(change) {
    change()
    this.#problem = ''
    this.changed()
  }

  #params() {
    const {result, nth, times, window, session} = this.#fields
    /** @type {{[name: string]: any}} */
    const params = {operation: this.#operation}
    if (nth !== '1') params.nth = Number(nth)
    if (this.#isAlways || times !== '1') params.times = this.#isAlways ? 'always' : Number(times)
    if (window) params.window = window
    if (session) params.session = session
    if (this.#way === 'outputs') params.outputs = Object.fromEntries(Object.entries(this.#outputs).filter(([, value]) => value !== ''))
    else params.result = {code: /^-?\d{1,10}$/.test(result) ? Number(result) : result, null: null, unwritten: 'unwritten', throw: 'throw'}[this.#way]
    return params
  }

  /** @param {Event} event */
  async #submit(event) {
    event.preventDefault()
    this.#problem = await attempt('tv.fault', this.#params()) ?? ''
    this.changed()
  }
}
customElements.define('emp-fault-form', FaultForm)

/** The outputs that a fault can write; interfaces can't be written. @param {{outputs: string[]}} operation */
const outputsOf = ({outputs}) => outputs.filter(name => name !== 'interface')

/** @param {Event} event */
const valueOf = event => /** @type {HTMLInputElement} */ (event.target).value
