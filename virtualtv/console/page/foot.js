// SPDX-License-Identifier: MIT
import {copy} from './clipboard.js'
import {clientCode, message, transcriptLine} from './deed.js'
import {h} from './dom.js'
import {Part} from './part.js'
import {store} from './store.js'

/** The last action of the page: what it was, its error, and buttons to copy it. */
class Foot extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['deed'])

  view() {
    const deed = store.get('deed')
    if (!deed) return h('span', {class: 'dim'}, 'Your last action appears here, ready to copy.')
    const {method, params, error, isUnderWay} = deed
    const line = params && transcriptLine(method, params)
    return [
      h('span', {class: 'grow cut', role: 'status'},
        h('code', null, line ?? method), error && h('span', {class: 'fail'}, ` ${error}`),
        isUnderWay && h('span', {class: 'dim'}, ' has no answer yet')),
      line && this.#copier('line', 'a line of a transcript', () => line),
      params && this.#copier('message', 'a message', () => message(method, params)),
      params && this.#copier('code', 'client code', () => clientCode(method, params)),
    ]
  }

  /**
   * @param {string} word
   * @param {string} what
   * @param {() => string} textOf  called only for a copy, since a list may be long
   */
  #copier(word, what, textOf) {
    return h('button', {key: word, class: 'plain', title: `Copy as ${what}`, 'aria-label': `Copy ${word}: the last action as ${what}`, onclick: () => copy(textOf())}, `copy ${word}`)
  }
}
customElements.define('emp-foot', Foot)
