/* Files that are dropped on the page, or opened with a button, and what became of them. */
import {h} from './dom.js'
import {mostBytes, take} from './files.js'
import {Part} from './part.js'
import {shownName} from './services.js'

/** @typedef {import('./files.js').Outcome} Outcome */

/** Hands files to the panel that shows what becomes of them. @param {Iterable<File>} files */
const open = files => dispatchEvent(new CustomEvent('emp-open', {detail: [...files]}))

/** A button that opens a file, for those who do not drop. */
class OpenFile extends Part {
  view() {
    return [
      h('button', {title: 'A channel list, a transcript or a snapshot. You can also drop it anywhere on the page.',
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

/** Takes what is dropped anywhere on the page, and shows what became of it in a corner that hides no picture. */
class Drop extends Part {
  #isOver = false
  /** The file that is being worked on, and what happens to it. @type {{name: string, what: string} | undefined} */
  #busy
  /** @type {Outcome | undefined} */
  #outcome
  /** Who had the focus before the panel came. @type {Element | null} */
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
    const tell = (/** @type {string} */ what) => {
      this.#busy = {name, what}
      this.redraw()
    }
    this.#outcome = undefined
    tell('is read')
    const outcome = await take(files[0], tell)
    if (files.length > 1) outcome.note = `${files.length - 1} more files were left out: drop one at a time.`
    this.#busy = undefined
    this.#outcome = outcome
    this.redraw()
  }

  #close() {
    this.#outcome = undefined
    this.redraw()
    if (this.#before instanceof HTMLElement) this.#before.focus()
  }

  view() {
    return [
      this.#isOver && h('div', {key: 'here', class: 'drop-here'},
        h('p', null, `Drop a channel list, a transcript or a snapshot, of at most ${mostBytes / 1024 / 1024} MiB`)),
      (this.#busy !== undefined || this.#outcome) && h('section', {key: 'result', class: 'file-result', role: 'region', 'aria-label': 'File',
        onkeydown: (/** @type {KeyboardEvent} */ event) => event.key === 'Escape' && this.#close()},
        this.#outcome ? this.#result(this.#outcome) : this.#working()),
    ]
  }

  /** What happens to the file until there is an outcome. */
  #working() {
    const {name, what} = this.#busy ?? {name: '', what: ''}
    return [
      this.#head(name, h('span', {class: 'dim'}, what)),
      h('div', {class: 'file-body'}, h('progress', {'aria-label': `${shownName(name)} ${what}`})),
    ]
  }

  /** @param {string} name @param {import('./dom.js').Child} what @param {boolean} [canClose] */
  #head(name, what, canClose = false) {
    return h('header', null,
      h('span', {class: 'grow row', role: 'status'}, h('strong', {class: 'name cut', title: name}, shownName(name)), what),
      canClose && h('button', {'aria-label': 'Close the result of the file', onclick: () => this.#close()}, 'Close'))
  }

  /** @param {Outcome} outcome */
  #result({name, kind, problem, way, result, note}) {
    const [what, isFailure] = summary(kind, problem, result)
    return [
      this.#head(name, h('span', {class: isFailure ? 'fail' : ''}, what), true),
      h('div', {class: 'file-body', tabindex: 0, role: 'group', 'aria-label': 'What became of it'},
        problem && h('p', {class: 'fail name', role: 'alert'}, problem),
        way && h('p', null, way),
        note && h('p', {class: 'dim'}, note),
        !problem && kind === 'list' && h('p', null, counts(result)),
        kind === 'list' && result && problemTable(result),
        !problem && kind === 'transcript' && (result.passed ? h('p', null, 'It prints what it says.') : diff(result.diff)),
        !problem && kind === 'snapshot' && h('p', null, 'The TV is what it says. Engines were closed; faults and latencies are gone.')),
    ]
  }
}
customElements.define('emp-drop', Drop)
document.body.append(document.createElement('emp-drop'))

/** @param {Outcome['kind']} kind @param {string | undefined} problem @param {any} result @return {[string, boolean]} and whether that is bad */
function summary(kind, problem, result) {
  if (problem !== undefined) return [{list: 'was not imported', transcript: 'was not checked', snapshot: 'was not restored', none: 'was not taken'}[kind], true]
  if (kind === 'list') return [result.total > 0 ? 'imported, with problems' : 'imported', result.total > 0]
  if (kind === 'snapshot') return ['restored', false]
  return result.passed ? ['passed', false] : ['failed', true]
}

/** @param {any} result  of an import */
const counts = ({imported, added, changed, gone, total}) =>
  `${imported} ${imported === 1 ? 'service' : 'services'}: ${added} added, ${changed} changed, ${gone} gone; ${total} ${total === 1 ? 'line' : 'lines'} could not be read`

/** What is wrong with a list, by line. @param {any} result  of an import, or what its error tells */
function problemTable({total, problems}) {
  return [
    problems.length > 0 && h('table', null,
      h('thead', null, h('tr', null, h('th', {scope: 'col'}, 'Line'), h('th', {scope: 'col'}, 'What is wrong'))),
      h('tbody', null, problems.map((/** @type {any} */ {line, at, reason}) => h('tr', null,
        h('td', {class: 'mono'}, line ?? at), h('td', {class: 'name'}, reason))))),
    total > problems.length && h('p', {class: 'dim'}, `${total - problems.length} more are not shown.`),
  ]
}

/** @param {string} text  a unified diff */
function diff(text) {
  const kinds = [['+++', 'place'], ['---', 'place'], ['@@', 'place'], ['+', 'added'], ['-', 'gone']]
  const lines = text.replace(/\n$/, '').split('\n')
  const shown = lines.slice(0, 2000)
  return [
    h('pre', {class: 'diff', 'aria-label': 'Differences: - expected, + printed'},
      shown.map(line => h('span', {class: kinds.find(([start]) => line.startsWith(start))?.[1] ?? ''}, line))),
    lines.length > shown.length && h('p', {class: 'dim'}, `${lines.length - shown.length} more lines are not shown.`),
  ]
}
