// SPDX-License-Identifier: MIT
import {copy} from './clipboard.js'
import {h} from './dom.js'
import {Part} from './part.js'
import {visible} from './shown.js'

const most = 2000     // characters shown at first
const piece = 8000    // characters of a block; only visible blocks are rendered

/** A text of any length: shows its start, and all of it on request. */
export class LongText extends Part {
  text = ''
  #isWhole = false

  /** @param {string} text */
  show(text) {
    if (this.text === text) return
    this.text = text
    this.#isWhole = false
    this.redraw()
  }

  view() {
    const {text} = this
    const isLong = text.length > most
    const shown = this.#isWhole ? text : text.slice(0, most)
    const pieces = Array.from({length: Math.max(1, Math.ceil(shown.length / piece))}, (_, at) => shown.slice(at * piece, (at + 1) * piece))
    return [
      h('pre', {class: 'long-text name', tabindex: isLong ? 0 : null}, pieces.map(part => h('span', {class: isLong && this.#isWhole ? 'text-piece' : null}, visible(part)))),
      h('span', {class: 'row'},
        isLong && h('button', {class: 'plain', onclick: this.#toggle}, this.#isWhole ? 'Show the front' : `Show all ${text.length.toLocaleString('en')} characters`),
        text !== '' && h('button', {class: 'plain', onclick: () => copy(text)}, 'Copy value')),
    ]
  }

  #toggle = () => {
    this.#isWhole = !this.#isWhole
    this.redraw()
  }
}
customElements.define('emp-long-text', LongText)
