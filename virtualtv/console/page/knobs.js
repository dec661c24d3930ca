// SPDX-License-Identifier: MIT
import {tv} from './act.js'
import {attempt} from './attempt.js'
import {h} from './dom.js'
import {latencySection} from './latencies.js'
import {Part} from './part.js'
import {store} from './store.js'

const mostShown = 200

/** All knobs of the set, including latencies: search, read, set. */
class Knobs extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['knobs', 'connection'])
  #search = ''
  /** Names of latencies and their values. @type {[string, string][]} */
  #latencies = []
  /** The document of knobs to which the latencies belong. @type {any} */
  #latenciesOf = null
  /** The knob of a service that the search names. @type {{name: string, value: string} | undefined} */
  #asked
  /** @type {{[name: string]: string | undefined}} */
  #refused = {}
  #isAsking = false

  view() {
    const known = store.get('knobs')
    if (!known) {
      this.#ask()
      return h('p', {class: 'dim'}, 'Loading knobs.')
    }
    if (this.#latenciesOf !== known) this.#readLatencies(known)
    const all = [...known.knobs, ...this.#hidden()]
    const words = this.#search.toLowerCase().split(/\s+/).filter(Boolean)
    const found = all.filter(knob => {
      const text = `${knob.name} ${kindOf(knob.name, known.kinds)?.help ?? ''}`.toLowerCase()
      return words.every(word => text.includes(word))
    })
    return [h('section', {key: 'knobs', class: 'knobs', 'aria-labelledby': 'knobs-title'},
      h('h3', {id: 'knobs-title'}, 'Knobs'),
      h('input', {type: 'search', 'aria-label': 'Search knobs', placeholder: 'Search, or name one: service.#1.name', spellcheck: 'false',
        oninput: (/** @type {Event} */ event) => this.#find(/** @type {HTMLInputElement} */ (event.target).value)}),
      h('p', {class: 'dim'}, `${found.length} of ${all.length} knobs${found.length > mostShown ? `, the first ${mostShown} of which are shown` : ''}`),
      h('ul', {class: 'knob-list'}, found.slice(0, mostShown).map(knob => this.#knob(knob, kindOf(knob.name, known.kinds))))),
    latencySection(this.#latencies, this.#refused, (name, value) => this.#set(name, value))]
  }

  async #ask() {
    if (this.#isAsking || !store.get('connection').connected) return
    this.#isAsking = true
    try {
      store.set('knobs', await tv().knobs())
    } catch {
      // Asked again with the next connection.
    } finally {
      this.#isAsking = false
    }
  }

  /** The list of knobs leaves latencies out. @param {any} known */
  async #readLatencies(known) {
    this.#latenciesOf = known
    try {
      const lines = await tv().run('.get latency')
      this.#latencies = lines.map(line => /** @type {[string, string]} */ (line.split(' = ')))
    } catch {
      // Reported with the next change.
    }
    this.changed()
  }

  /** Knobs that only a search shows, since they are many. */
  #hidden() {
    const found = this.#asked && this.#asked.name === this.#search ? [this.#asked] : []
    const latencies = this.#search ? this.#latencies.map(([name, value]) => ({name, value})) : []
    return [...latencies, ...found].map(knob => ({...knob, canBeSet: true}))
  }

  /** @param {string} search */
  async #find(search) {
    this.#search = search.trim()
    this.changed()
    if (/^service\.[^.]+\../.test(this.#search)) await this.#read(this.#search)
  }

  /** @param {string} name  of a service's knob */
  async #read(name) {
    try {
      this.#asked = {name, value: await tv().get(name)}
    } catch {
      this.#asked = undefined  // no such knob, at least not yet
    }
    this.changed()
  }

  /** @param {{name: string, value: string, canBeSet: boolean}} knob @param {any} kind */
  #knob({name, value, canBeSet}, kind) {
    const refused = this.#refused[name]
    return h('li', {key: name, class: 'knob'},
      h('code', {class: 'knob-name name'}, name),
      canBeSet
        ? h('input', {class: 'mono', 'aria-label': name, value, title: `Takes ${kind?.takes ?? 'a value'}`, spellcheck: 'false',
          onchange: (/** @type {Event} */ event) => this.#set(name, /** @type {HTMLInputElement} */ (event.target).value)})
        : h('code', {class: 'name knob-value'}, value),
      refused ? h('p', {class: 'fail', role: 'alert'}, refused)
        : h('p', {class: 'dim'}, kind?.help ?? '', ` (${canBeSet ? kind?.takes ?? 'a value' : 'read only'})`))
  }

  /** @param {string} name @param {string} value */
  async #set(name, value) {
    this.#refused = {...this.#refused, [name]: await attempt('tv.set', {name, value})}
    if (name.startsWith('service.')) await this.#read(name)
    this.changed()
  }
}
customElements.define('emp-knobs', Knobs)

/** The kind of knob with a name: parts in capitals match anything. @param {string} name @param {any[]} kinds */
function kindOf(name, kinds) {
  const parts = name.split('.')
  return kinds.find(kind => kind.name === name) ?? kinds.find(kind => {
    const pattern = kind.name.split('.')
    const fits = (/** @type {string} */ part, /** @type {number} */ at) => part === parts[at] || /^[A-Z]+$/.test(part)
    return pattern[0] === 'WINDOW' ? /^(main|pip)$/.test(parts[0]) && pattern[1] === parts[1]
      : pattern.length <= parts.length && pattern.every(fits)
  })
}
