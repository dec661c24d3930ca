// SPDX-License-Identifier: MIT
import {h} from './dom.js'
import {keyOf, rows, shortcutOf} from './keys.js'
import {Part} from './part.js'
import {deeds, tuneToNumber} from './remote-deeds.js'
import {store} from './store.js'

const patience = 1500  // ms, after a digit
const mostDigits = 4

/** @typedef {import('./keys.js').Key} Key */

/** The remote control: its keys operate the TV, or the app that runs over the picture. */
class Remote extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['app', 'keys'])
  #digits = ''
  #timer = 0
  /** @type {import('./remote-deeds.js').Outcome} */
  #said = {text: ''}

  connectedCallback() {
    super.connectedCallback()
    addEventListener('keydown', this.#typed)
  }

  disconnectedCallback() {
    super.disconnectedCallback()
    removeEventListener('keydown', this.#typed)
  }

  get #isForApp() {
    return store.get('app') !== null && store.get('keys') === 'app'
  }

  view() {
    const {text, failed} = this.#said
    return h('div', {class: 'remote'},
      h('p', {class: ['remote-said', failed && 'fail'], role: 'status', title: text}, this.#digits ? h('code', null, `${this.#digits}_`) : h('bdi', {class: 'remote-outcome'}, text)),
      rows.map(({spans, keys}, at) => h('div', {key: at, class: 'remote-row'}, keys.map((key, index) => this.#button(key, spans[index])))),
      this.#switch())
  }

  /** @param {Key} key @param {number} span  number of columns */
  #button(key, span) {
    const shortcut = shortcutOf(key)
    return h('button', {
      key: key.name, class: ['remote-key', `span-${span}`, key.look], 'aria-label': key.name, 'aria-keyshortcuts': shortcut.replaceAll(', ', ' ') || null,
      title: shortcut && shortcut !== key.name ? `${key.name} (${shortcut})` : key.name,
      onmousedown: keepFocus,
      onclick: () => this.#press(key),
    }, faceOf(key))
  }

  #switch() {
    const app = store.get('app')
    return h('div', {class: 'remote-keys', role: 'group', 'aria-label': 'Keys to'}, h('span', {class: 'dim'}, 'Keys to'),
      h('button', {'aria-pressed': String(!this.#isForApp), onmousedown: keepFocus, onclick: () => store.set('keys', 'tv')}, 'TV'),
      h('button', {'aria-pressed': String(this.#isForApp), disabled: !app, title: app ? app.name : 'No app runs', onmousedown: keepFocus,
        onclick: () => store.set('keys', 'app')}, 'App'))
  }

  /** @param {KeyboardEvent} event */
  #typed = event => {
    const key = keyOf(event)
    if (!key) return
    if (this.#isForApp) this.#press(key.name === 'Previous channel' ? {...key, name: 'Back'} : key)
    else if (this.#digits && ['Backspace', 'Escape'].includes(event.key)) this.#setDigits(event.key === 'Escape' ? '' : this.#digits.slice(0, -1))
    else if (isForTv(key) || this.#digits || key.letter === event.key.toLowerCase()) this.#press(key)
    else return
    event.preventDefault()
  }

  /** @param {Key} key */
  #press(key) {
    if (this.#isForApp) {
      dispatchEvent(new CustomEvent('emp-key', {detail: {name: key.name}}))
      this.#say({text: `${key.name} to the app`})
    } else if (/^\d$/.test(key.name)) this.#setDigits(this.#digits + key.name)
    else if (key.name === 'OK' && this.#digits) this.#tune()
    else this.#do(key)
  }

  /** @param {Key} key */
  async #do(key) {
    this.#setDigits('')
    const deed = deeds[key.name]
    this.#say(deed ? await deed() : {text: `${key.name} is for apps, and none has the keys`})
  }

  /** @param {string} digits */
  #setDigits(digits) {
    clearTimeout(this.#timer)
    this.#digits = digits
    if (digits.length >= mostDigits) this.#tune()
    else if (digits) this.#timer = setTimeout(() => this.#tune(), patience)
    this.changed()
  }

  async #tune() {
    clearTimeout(this.#timer)
    const digits = this.#digits
    this.#digits = ''
    this.#say({text: digits})
    this.#say(await tuneToNumber(digits))
  }

  /** @param {import('./remote-deeds.js').Outcome} outcome */
  #say(outcome) {
    this.#said = outcome
    this.changed()
  }
}
customElements.define('emp-remote', Remote)

/** Keeps the focus, so that the keyboard still operates the remote control. @param {Event} event */
function keepFocus(event) {
  event.preventDefault()
}

/** True if the TV itself handles the key. @param {Key} key */
function isForTv(key) {
  return key.name in deeds || /^\d$/.test(key.name)
}

/** The face of a key, with its letter underlined. @param {Key} key @return {import('./dom.js').Child} */
function faceOf({face, letter, icon}) {
  const at = letter && (icon || face.length > 1) ? face.toLowerCase().indexOf(letter) : -1
  return [
    icon && h('svg', {viewBox: '0 0 10 10', 'aria-hidden': 'true'}, h('path', {d: icon, 'fill-rule': 'evenodd'})),
    at < 0 ? face : [face.slice(0, at), h('u', null, face[at]), face.slice(at + 1)],
  ]
}
