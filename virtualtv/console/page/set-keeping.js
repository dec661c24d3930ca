// SPDX-License-Identifier: MIT
import {tv} from './act.js'
import {attempt} from './attempt.js'
import {copy} from './clipboard.js'
import {besides, linkTo} from './connection.js'
import {h} from './dom.js'
import {download} from './download.js'
import {Part} from './part.js'

/** Saves the set as a file, restores it, switches it off and on, or resets it. */
class SetKeeping extends Part {
  /** @type {{text: string, failed?: boolean}} */
  #said = {text: ''}

  view() {
    const {text, failed} = this.#said
    return h('section', {'aria-labelledby': 'keeping-title'},
      h('h3', {id: 'keeping-title'}, 'Save and restore'),
      besides(),
      h('div', {class: 'row'},
        h('button', {title: 'Download everything that the set stores, as a file', onclick: () => this.#save()}, 'Snapshot'),
        linkTo && h('button', {title: 'Copy an address that contains this set', onclick: () => this.#copyLink()}, 'Copy link'),
        h('button', {title: 'Restore the set from a snapshot', onclick: () => this.#field.click()}, 'Restore'),
        h('button', {title: 'Switch the set off and on; removes faults and latencies', onclick: () => this.#do('tv.restart', 'Restarted; faults and latencies were removed')}, 'Restart'),
        h('button', {title: 'Go back to the built-in set', onclick: () => this.#dialog.showModal()}, 'Reset')),
      h('input', {type: 'file', hidden: true, accept: '.json,application/json', 'aria-label': 'Snapshot to restore', onchange: (/** @type {Event} */ event) => this.#restore(event)}),
      h('p', {class: ['set-said', failed ? 'fail' : 'dim'], role: 'status'}, text),
      h('dialog', {'aria-labelledby': 'reset-title', onclose: (/** @type {Event} */ event) => this.#closed(event)},
        h('form', {method: 'dialog', class: 'pane-body'},
          h('h3', {id: 'reset-title'}, 'Reset the set?'),
          h('p', null, 'The set goes back to the built-in one. Its channels, favourites, settings keys, faults and latencies are lost; to keep them, save a snapshot first.'),
          h('div', {class: 'row'}, h('button', {value: 'cancel'}, 'Cancel'), h('button', {class: 'main', value: 'reset'}, 'Reset')))))
  }

  /** @return {HTMLInputElement} */
  get #field() {
    return /** @type {HTMLInputElement} */ (this.querySelector('input[type="file"]'))
  }

  /** @return {HTMLDialogElement} */
  get #dialog() {
    return /** @type {HTMLDialogElement} */ (this.querySelector('dialog'))
  }

  /** @param {Event} event */
  #closed(event) {
    const dialog = /** @type {HTMLDialogElement} */ (event.target)
    const answer = dialog.returnValue
    dialog.returnValue = ''
    if (answer === 'reset') this.#do('tv.reset', 'Reset to the built-in set')
  }

  /** @param {string} method @param {string} done @param {any} [params] */
  async #do(method, done, params) {
    const refused = await attempt(method, params)
    this.#say(refused ?? done, refused !== undefined)
  }

  async #save() {
    try {
      const name = `tv-${new Date().toISOString().slice(0, 19).replaceAll(':', '')}.json`
      download(name, `${JSON.stringify(await tv().snapshot(), null, 1)}\n`, 'application/json')
      this.#say(`Saved as ${name}`)
    } catch (error) {
      this.#say(/** @type {Error} */ (error).message, true)
    }
  }

  async #copyLink() {
    try {
      const link = await linkTo?.(await tv().snapshot()) ?? ''
      await copy(link)
      this.#say(`Copied a link of ${link.length.toLocaleString('en')} characters`)
    } catch (error) {
      this.#say(/** @type {Error} */ (error).message, true)
    }
  }

  /** @param {Event} event */
  async #restore(event) {
    const field = /** @type {HTMLInputElement} */ (event.target)
    const file = field.files?.[0]
    if (!file) return
    try {
      await this.#do('tv.restore', `Restored from ${file.name}`, {snapshot: JSON.parse(await file.text())})
    } catch (error) {
      this.#say(`${file.name} is not a snapshot: ${/** @type {Error} */ (error).message}`, true)
    }
    field.value = ''
  }

  /** @param {string} text @param {boolean} [failed] */
  #say(text, failed) {
    this.#said = {text, failed}
    this.changed()
  }
}
customElements.define('emp-set-keeping', SetKeeping)
