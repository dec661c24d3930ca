// SPDX-License-Identifier: MIT
import {h} from './dom.js'
import {download} from './download.js'
import {Part} from './part.js'

/** @typedef {{content: any, remove: () => Promise<void>}} Leftover */

/** Offers to save stored data that can't be used as a file, or to clear it. */
class LeftoverPart extends Part {
  /** @type {Leftover} */
  #what = {content: undefined, remove: async () => {}}
  #said = ''

  /** @param {Leftover} what */
  set what(what) {
    this.#what = what
    this.changed()
  }

  view() {
    return [
      h('div', {class: 'row'},
        h('button', {onclick: () => this.#save()}, 'Save it as a file'),
        h('button', {onclick: () => this.#dialog.showModal()}, 'Clear it')),
      h('p', {class: 'set-said dim', role: 'status'}, this.#said),
      h('dialog', {'aria-labelledby': 'clear-title', onclose: () => this.#closed()},
        h('form', {method: 'dialog', class: 'pane-body'},
          h('h3', {id: 'clear-title'}, 'Clear the stored data?'),
          h('p', null, 'It is lost unless you saved it as a file. The page then reloads with the built-in set, which is stored from then on.'),
          h('div', {class: 'row'}, h('button', {value: 'cancel'}, 'Cancel'), h('button', {class: 'main', value: 'clear'}, 'Clear')))),
    ]
  }

  /** @return {HTMLDialogElement} */
  get #dialog() {
    return /** @type {HTMLDialogElement} */ (this.querySelector('dialog'))
  }

  #save() {
    const name = `tv-kept-${new Date().toISOString().slice(0, 19).replaceAll(':', '')}.json`
    download(name, `${JSON.stringify(this.#what.content, null, 1)}\n`, 'application/json')
    this.#say(`Saved as ${name}`)
  }

  async #closed() {
    const answer = this.#dialog.returnValue
    this.#dialog.returnValue = ''
    if (answer !== 'clear') return
    try {
      await this.#what.remove()
      location.reload()
    } catch (error) {
      this.#say(/** @type {Error} */ (error).message)
    }
  }

  /** @param {string} text */
  #say(text) {
    this.#said = text
    this.changed()
  }
}
customElements.define('emp-leftover', LeftoverPart)
