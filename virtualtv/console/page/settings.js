// SPDX-License-Identifier: MIT
import {attempt} from './attempt.js'
import {h} from './dom.js'
import {Part} from './part.js'
import {store} from './store.js'

/** The settings keys: list, set, remove. */
class Settings extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['settings'])
  /** @type {{[key: string]: string | undefined}} */
  #refused = {}

  view() {
    const settings = store.get('settings')
    return h('section', {class: 'settings', 'aria-labelledby': 'settings-title'},
      h('h3', {id: 'settings-title'}, 'Settings keys'),
      settings.length === 0 && h('p', {class: 'dim'}, 'No keys are set. Set one below, or run a command that sets one.'),
      h('ul', {key: 'list', class: 'knob-list'}, settings.map(setting => this.#setting(setting))),
      this.#form())
  }

  /** @param {{key: string, value: string | number}} setting */
  #setting({key, value}) {
    const kind = typeof value === 'number' ? 'int' : 'str'
    return h('li', {key, class: 'setting'},
      h('bdi', {class: 'mono name'}, key), h('code', {class: 'dim', title: kind === 'int' ? 'a number' : 'a text'}, kind),
      h('input', {class: 'mono', 'aria-label': `Value of ${key}`, value: String(value), spellcheck: 'false',
        onchange: (/** @type {Event} */ event) => this.#set(key, kind, /** @type {HTMLInputElement} */ (event.target).value)}),
      h('button', {class: 'plain', 'aria-label': `Remove ${key}`, title: 'Remove', onclick: () => this.#remove(key)}, '×'),
      this.#refused[key] && h('p', {class: 'fail', role: 'alert'}, this.#refused[key]))
  }

  #form() {
    return h('form', {key: 'form', class: 'row', 'aria-label': 'Set a settings key', onsubmit: (/** @type {Event} */ event) => this.#add(event)},
      h('input', {name: 'key', 'aria-label': 'Key', placeholder: 'Key', required: true, class: 'grow', spellcheck: 'false'}),
      h('select', {name: 'kind', 'aria-label': 'Kind'}, h('option', {value: 'str'}, 'str'), h('option', {value: 'int'}, 'int')),
      h('input', {name: 'value', 'aria-label': 'Value', placeholder: 'Value', class: 'grow', spellcheck: 'false'}),
      h('button', null, 'Set'),
      this.#refused[''] && h('p', {class: 'fail', role: 'alert'}, this.#refused['']))
  }

  /** @param {Event} event */
  async #add(event) {
    event.preventDefault()
    const form = /** @type {HTMLFormElement} */ (event.target)
    const data = new FormData(form)
    const refused = await this.#refusal(String(data.get('key')), String(data.get('kind')), String(data.get('value')))
    this.#tell('', refused)
    if (!refused) form.reset()
  }

  /** @param {string} key @param {string} kind @param {string} value */
  async #set(key, kind, value) {
    this.#tell(key, await this.#refusal(key, kind, value))
  }

  /** @param {string} key */
  async #remove(key) {
    this.#tell(key, await attempt('tv.removeSetting', {key}))
  }

  /** @param {string} key @param {string} kind @param {string} text @return {Promise<string | undefined>} */
  async #refusal(key, kind, text) {
    if (kind === 'str') return attempt('tv.setSetting', {key, value: text})
    if (!/^-?\d+$/.test(text)) return `'${text}' is no whole number; choose str for a text`
    return attempt('tv.setSetting', {key, value: Number(text)})
  }

  /** @param {string} key @param {string | undefined} refused */
  #tell(key, refused) {
    this.#refused = {...this.#refused, [key]: refused}
    this.changed()
  }
}
customElements.define('emp-settings', Settings)
