// SPDX-License-Identifier: MIT
import {copy} from './clipboard.js'
import {h} from './dom.js'
import './json.js'
import './long-text.js'
import {Part} from './part.js'
import {documentIn, failureOf, replyShown, valueOf} from './reply.js'
import {front, visible} from './shown.js'

/** @typedef {{line: string, name: string, reply?: any, lines?: string[], error?: string, isRunning?: boolean}} Outcome */

const mostLines = 200  // lines of the shell's output shown at first

/** The result of a line. */
export class CommandResult extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['commands'])
  /** @type {Outcome} */
  #outcome = {line: '', name: ''}
  #isWhole = false

  set outcome(/** @type {Outcome} */ outcome) {
    this.#outcome = outcome
    this.changed()
  }

  view() {
    const {line, reply, lines, error, isRunning} = this.#outcome
    return [
      h('div', {class: 'row result-line'}, h('code', {class: 'grow cut name'}, h('span', {class: 'dim'}, '> '), front(line, 300)),
        h('button', {class: 'plain', 'aria-label': `Copy as a transcript line: ${front(line, 60)}`, title: 'Copy as a line of a transcript', onclick: () => copy(`> ${line}`)}, 'copy')),
      isRunning && h('p', {class: 'dim'}, 'Running…'),
      error !== undefined && h('p', {class: 'fail'}, error),
      lines && this.#shell(lines),
      reply && this.#reply(reply),
    ]
  }

  /** @param {string[]} lines */
  #shell(lines) {
    const shown = this.#isWhole ? lines : lines.slice(0, mostLines)
    if (lines.length === 0) return h('p', {class: 'dim'}, 'No output.')
    return [
      h('pre', {class: 'name', tabindex: 0, 'aria-label': 'Output'}, shown.map(line => [h('span', {class: line.startsWith('error: ') ? 'fail' : null}, visible(line.slice(0, 5000))), '\n'])),
      lines.length > shown.length && h('button', {class: 'plain', onclick: () => { this.#isWhole = true; this.redraw() }}, `Show all ${lines.length} lines`),
    ]
  }

  /** @param {any} reply */
  #reply(reply) {
    const failure = failureOf(this.#outcome.name, reply)
    const text = valueOf(reply)
    return [
      h('p', {class: failure ? 'fail' : null}, h('code', null, replyShown(reply, 100)), failure && ` ${failure}`),
      documentIn(reply) !== undefined && h('emp-json', {'aria-label': 'Reply as a document'}),
      text.length > 60 && h('emp-long-text', null),
    ]
  }

  drawn() {
    const {reply} = this.#outcome
    if (!reply) return
    const text = /** @type {import('./long-text.js').LongText | null} */ (this.querySelector('emp-long-text'))
    text?.show(valueOf(reply))
    const tree = /** @type {import('./json.js').JsonTree | null} */ (this.querySelector('emp-json'))
    if (!tree || tree.dataset.shown) return
    tree.dataset.shown = 'yes'
    tree.show(documentIn(reply))
    tree.openSmall()
  }
}
customElements.define('emp-command-result', CommandResult)
