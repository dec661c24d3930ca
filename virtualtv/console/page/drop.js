// SPDX-License-Identifier: MIT
/* Handles files dropped on the page or opened with a button, and shows the results. */
import {h} from './dom.js'
import {details, summary} from './file-outcome.js'
import {importFound, mostBytes, take} from './files.js'
import {Part} from './part.js'
import {shownName} from './services.js'

/** @typedef {import('./files.js').Outcome} Outcome */
/** @typedef {import('./dom.js').Child} Child */

/** Passes files to the panel that processes them and shows the results. @param {Iterable<File>} files */
const open = files => dispatchEvent(new CustomEvent('emp-open', {detail: [...files]}))

/** A button that opens a file, as an alternative to dropping it. */
class OpenFile extends Part {
  view() {
    return [
      h('button', {title: 'A channel list, a recording, a transcript or a snapshot. You can also drop it anywhere on the page.',
        onclick: () => this.querySelector('input')?.click()}, 'Open a file'),
      h('input', {type: 'file', hidden: true, tabindex: -1, 'aria-label': 'File', onchange: (/** @type {Event} */ event) => {
        const field = /** @type {HTMLInputElement} */ (event.target)
        open(field.files ?? [])
        field.value = ''
      }}),
    ]
  }
}
customElements.define('emp-open-file', OpenFile)

/** Takes files dropped anywhere on the page, and shows the results in a corner that covers no picture. */
class Drop extends Part {
  #isOver = false
  /**
   * The file in progress, the current step, and the share that is done.
   * @type {{name: string, what: string, share?: number} | undefined}
   */
  #busy
  #ending = new AbortController()
  /** @type {Outcome | undefined} */
  #outcome
  /** The element that had the focus before the panel appeared. @type {Element | null} */
  #before = null

  connectedCallback() {
    super.connectedCallback()
    addEventListener('dragover', event => this.#over(event))
    addEventListener('dragleave', event => event.relatedTarget === null && this.#setOver(false))
    addEventListener('drop', event => this.#drop(event))
    addEventListener('emp-open', event => this.#open(/** @type {CustomEvent<File[]>} */ (event).detail))
  }

  /** @param {DragEvent} event */
  #over(event) {
    if (!event.dataTransfer?.types.includes('Files')) return
    event.preventDefault()
    this.#setOver(true)
  }

  /** @param {boolean} isOver */
  #setOver(isOver) {
    if (isOver === this.#isOver) return
    this.#isOver = isOver
    this.changed()
  }

  /** @param {DragEvent} event */
  #drop(event) {
    if (!event.dataTransfer?.types.includes('Files')) return
    event.preventDefault()
    this.#setOver(false)
    this.#open([...event.dataTransfer.files])
  }

  /** @param {File[]} files */
  async #open(files) {
    if (this.#busy !== undefined || files.length === 0) return
    this.#before = document.activeElement
    const [{name}] = files
    /** @type {import('./files.js').Tell} */
    const tell = (what, share) => {
      this.#busy = {name, what, share}
      this.redraw()
    }
    this.#outcome = undefined
    this.#ending = new AbortController()
    tell('is read')
    const outcome = await take(files[0], tell, this.#ending.signal)
    if (outcome && files.length > 1) outcome.note = `${files.length - 1} more files were left out: drop one at a time.`
    this.#busy = undefined
    this.#outcome = outcome
    this.redraw()
    if (!outcome) this.#giveFocusBack()
  }

  #close() {
    this.#outcome = undefined
    this.redraw()
    this.#giveFocusBack()
  }

  #giveFocusBack() {
    if (this.#before instanceof HTMLElement) this.#before.focus()
  }

  view() {
    return [
      this.#isOver && h('div', {key: 'here', class: 'drop-here'},
        h('p', null, `Drop a recording of any length, or a channel list, a transcript or a snapshot of at most ${mostBytes / 1024 / 1024} MiB`)),
      (this.#busy !== undefined || this.#outcome) && h('section', {key: 'result', class: 'file-result', role: 'region', 'aria-label': 'File',
        onkeydown: (/** @type {KeyboardEvent} */ event) => { if (event.key === 'Escape') this.#close() }},
        this.#outcome ? this.#result(this.#outcome) : this.#working()),
    ]
  }

  /** Shows the progress until there is an outcome. */
  #working() {
    const {name, what, share} = this.#busy ?? {name: '', what: ''}
    return [
      this.#head(name, h('span', {class: 'dim'}, what), share !== undefined && h('button', {onclick: () => this.#ending.abort()}, 'Cancel')),
      h('div', {class: 'file-body'}, h('progress', {'aria-label': `${shownName(name)} is worked on`, value: share})),
    ]
  }

  /** @param {string} name @param {Child} what @param {Child} buttons */
  #head(name, what, buttons) {
    return h('header', null,
      h('span', {class: 'grow row', role: 'status'}, h('strong', {class: 'name cut', title: name}, shownName(name)), what), buttons)
  }

  /** @param {Outcome} outcome */
  #result(outcome) {
    const {text, isFailure} = summary(outcome)
    const canImport = outcome.kind === 'recording' && outcome.found?.services.length > 0
    return [
      this.#head(outcome.name, h('span', {class: isFailure ? 'fail' : ''}, text), [
        canImport && h('button', {class: 'main', title: 'Replaces the services of the set', onclick: () => this.#import(false)}, 'Import'),
        canImport && h('button', {title: 'Keeps the services of the set and adds these', onclick: () => this.#import(true)}, 'Add'),
        h('button', {'aria-label': 'Close the result of the file', onclick: () => this.#close()}, 'Close')]),
      h('div', {class: 'file-body', tabindex: 0, role: 'group', 'aria-label': 'Result'}, details(outcome)),
    ]
  }

  /** Imports the services found in the recording. @param {boolean} add */
  async #import(add) {
    const before = this.#outcome
    if (!before) return
    const after = await importFound(before, add)
    if (this.#outcome !== before) return  // The panel was closed meanwhile.
    this.#outcome = after
    this.redraw()
  }
}
customElements.define('emp-drop', Drop)
document.body.append(document.createElement('emp-drop'))
