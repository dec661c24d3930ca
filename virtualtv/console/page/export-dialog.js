// SPDX-License-Identifier: MIT
import {tv} from './act.js'
import {given} from './connection.js'
import {h} from './dom.js'
import {download} from './download.js'
import {clientModule, collect, playwrightTest, transcript} from './export.js'
import {Part} from './part.js'
import {front} from './shown.js'
import {timeline} from './timeline-log.js'

/** @typedef {import('./timeline-log.js').Entry} Entry */

const kinds = [['transcript', 'Transcript', 'for emp-window check; its snapshot lies beside it'], ['test', 'Playwright test', 'on a TV of its own; the snapshot lies beside it'],
  ['code', 'Client code', 'JavaScript, on an existing TV']]

/** Asks what to export, and in which form. */
export class ExportDialog extends Part {
  #kind = 'transcript'
  #range = 'shown'
  #from = 0
  #to = 0
  #error = ''
  /** @type {Entry[]} */
  #shown = []
  /** The entries in the range selected in the list; empty if that is a single entry. @type {Entry[]} */
  #chosen = []

  /**
   * Opens the dialog.
   * @param {import('./timeline-filter.js').TimelineFilter} filter
   * @param {Entry | null} chosen  the selected entry
   * @param {Entry[]} range  the selected range
   */
  open(filter, chosen, range) {
    const isCommand = (/** @type {Entry} */ {topic, server}) => topic === 'command' && server === timeline.server
    this.#shown = filter.shown.filter(isCommand)
    this.#chosen = range.length > 1 ? range.filter(isCommand) : []
    if (this.#chosen.length > 0) this.#range = 'chosen'
    else if (this.#range === 'chosen') this.#range = 'shown'
    this.#from = (chosen && isCommand(chosen) ? chosen : this.#shown[0])?.command ?? 0
    this.#to = this.#shown.at(-1)?.command ?? 0
    this.#error = this.#shown.length > 0 ? '' : 'No commands are visible. Remove the filters, or run a command.'
    this.redraw()
    this.#dialog.show()
  }

  get #dialog() {
    return /** @type {HTMLDialogElement} */ (this.querySelector('dialog'))
  }

  view() {
    const {length} = this.#shown
    const number = (/** @type {string} */ label, /** @type {number} */ value, /** @type {(value: number) => void} */ take) => h('label', null, `${label} `,
      h('input', {type: 'number', class: 'number', min: 1, value: String(value), disabled: this.#range !== 'range', oninput: (/** @type {Event} */ event) => take(Number(/** @type {HTMLInputElement} */ (event.target).value))}))
    const radio = (/** @type {string} */ group, /** @type {string} */ value, /** @type {string} */ chosen, /** @type {(value: string) => void} */ take, /** @type {import('./dom.js').Child} */ label) =>
      h('label', {key: value, class: 'choice'}, h('input', {type: 'radio', name: group, value, checked: value === chosen, onchange: () => { take(value); this.redraw() }}), label)
    return h('dialog', {'aria-labelledby': 'export-title', onkeydown: this.#typed},
      h('h2', {id: 'export-title'}, 'Export commands'),
      h('fieldset', null, h('legend', null, 'Which'),
        radio('range', 'shown', this.#range, value => this.#range = value, `those that are shown (${length})`),
        this.#chosen.length > 0 && radio('range', 'chosen', this.#range, value => this.#range = value, `those that are chosen (${this.#chosen.length})`),
        radio('range', 'range', this.#range, value => this.#range = value, 'by number'),
        h('span', {class: 'row'}, number('from', this.#from, value => this.#from = value), number('to', this.#to, value => this.#to = value))),
      h('fieldset', null, h('legend', null, 'As'), kinds.map(([kind, label, help]) => radio('kind', kind, this.#kind, value => this.#kind = value, [label, h('span', {class: 'dim'}, ` ${help}`)]))),
      h('p', {class: 'dim'}, 'Hidden commands are left out if they changed nothing.'),
      h('p', {class: 'fail', role: 'alert'}, this.#error),
      h('div', {class: 'row'}, h('button', {class: 'main', disabled: length === 0, onclick: this.#export}, 'Export'), h('button', {onclick: () => this.#dialog.close()}, 'Cancel')))
  }

  /** @param {KeyboardEvent} event */
  #typed = event => {
    if (event.key !== 'Escape') return
    this.#dialog.close()
    event.stopPropagation()
  }

  #export = async () => {
    try {
      const files = await this.#files()
      for (const [name, content] of files) download(name, content)
      this.#error = ''
      this.#dialog.close()
    } catch (error) {
      this.#error = /** @type {Error} */ (error).message
    }
    this.redraw()
  }

  /** @return {Promise<[string, string][]>} */
  async #files() {
    const chosen = this.#range === 'shown' ? this.#shown : this.#range === 'chosen' ? this.#chosen : this.#shown.filter(({command}) => Number(command) >= this.#from && Number(command) <= this.#to)
    if (chosen.length === 0) throw new Error(`No command from ${this.#from} to ${this.#to} is shown.`)
    const [from, to] = [chosen[0], chosen[chosen.length - 1]]
    const story = await collect(timeline.entries, from, to, new Set(chosen), wholeReply)
    const name = `commands-${from.command}-${to.command}`
    const set = given(tv())
    const what = `Commands ${from.command} to ${to.command} of ${front(set.name, 80)}`
    if (this.#kind === 'code') return [[`${name}.mjs`, clientModule({...story, remarks: [...story.remarks, ...set.remarks]}, set.address, what)]]
    const snapshot = await tv().snapshot(story.first)
    /** @type {[string, string]} */
    const beside = [`${name}.json`, JSON.stringify(snapshot, null, 1)]
    return this.#kind === 'test' ? [[`${name}.spec.mjs`, playwrightTest(story, beside[0], what)], beside] : [[`${name}.txt`, transcript(story, beside[0], what)], beside]
  }
}
customElements.define('emp-export-dialog', ExportDialog)

/** @param {Entry} entry */
async function wholeReply(entry) {
  const {reply} = entry.event
  if (reply?.length === undefined) return reply
  return (entry.whole ??= await tv().why(/** @type {number} */ (entry.command))).reply
}
