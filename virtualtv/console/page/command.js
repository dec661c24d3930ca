// SPDX-License-Identifier: MIT
import {act, tv} from './act.js'
import {completions, lineOf, parse, readHistory, withLine} from './command-line.js'
import './command-result.js'
import {h} from './dom.js'
import {Part} from './part.js'
import {commandNamed} from './reply.js'
import {store} from './store.js'
import {timeline} from './timeline-log.js'

/** @typedef {import('./command-result.js').Outcome} Outcome */

const mostOutcomes = 50
const mostParameters = 4

/** Runs commands and lines of the shell on the page's own engine. */
class Command extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['commands', 'timeline', 'connection'])
  #line = ''
  #history = readHistory()
  #place = this.#history.length  // position in the history
  /** @type {{id: number, outcome: Outcome}[]} */
  #outcomes = []
  #id = 0
  #isOpen = false
  #at = -1  // the selected completion
  #isFollowing = false

  connectedCallback() {
    super.connectedCallback()
    addEventListener('emp-show', this.#shown)
  }

  disconnectedCallback() {
    super.disconnectedCallback()
    removeEventListener('emp-show', this.#shown)
  }

  /** Called when the page's search has found a command. */
  #shown = (/** @type {Event} */ event) => {
    const {command} = /** @type {CustomEvent} */ (event).detail
    if (command) requestAnimationFrame(() => this.#pick(command))
  }

  view() {
    const typed = parse(this.#line)
    const command = typed?.kind === 'command' ? typed : undefined
    return [
      h('div', {class: 'command-top'},
        h('form', {class: 'row', onsubmit: this.#submitted},
          this.#combobox(),
          h('button', {class: 'main', type: 'submit', disabled: this.#line.trim() === ''}, 'Run')),
        h('div', {class: 'row dim'}, this.#window(),
          h('label', {title: 'Passes any number of parameters, as one list'}, h('input', {type: 'checkbox', checked: Boolean(command?.isList), disabled: !command || command.name === '',
            onchange: () => command && this.#change(lineOf(command.name, command.parameters, !command.isList))}), 'Parameter list')),
        command && command.name !== '' && this.#parameters(command)),
      h('div', {class: 'command-results', role: 'log', 'aria-label': 'Replies', tabindex: 0},
        this.#outcomes.length === 0 && h('p', {class: 'empty'}, 'Type the name of a command, or a line of the shell such as .get main. Arrow up recalls earlier lines.'),
        this.#outcomes.map(({id, outcome}) => h('emp-command-result', {key: id, outcome}))),
    ]
  }

  drawn() {
    const input = this.#input
    if (input && input.value !== this.#line) input.value = this.#line
    const results = this.querySelector('.command-results')
    if (results && this.#isFollowing) requestAnimationFrame(() => { results.scrollTop = results.scrollHeight })
    this.#isFollowing = false
    this.querySelector('[role="option"][aria-selected="true"]')?.scrollIntoView({block: 'nearest'})
  }

  get #input() {
    return /** @type {HTMLInputElement | null} */ (this.querySelector('input[role="combobox"]'))
  }

  /** Shows the window selected for later commands of this page. */
  #window() {
    const engine = store.get('connection').connected ? `${tv().session}:main` : ''
    const window = timeline.windows.get(engine) ?? 'main'
    return h('span', {class: 'grow'}, 'Window of this page: ', h('b', {class: 'window-in-use'}, window === 'pip' ? '1 pip' : '0 main'))
  }

  get #choices() {
    return this.#isOpen ? completions(this.#line.trim()) : []
  }

  #combobox() {
    const choices = this.#choices
    return h('div', {class: 'grow combobox'},
      h('input', {
        role: 'combobox', 'aria-label': 'Command', 'aria-autocomplete': 'list', 'aria-expanded': String(choices.length > 0), 'aria-controls': 'command-choices',
        'aria-activedescendant': choices[this.#at] ? `choice-${choices[this.#at].name}` : null, class: 'mono', autocomplete: 'off', autocapitalize: 'off', spellcheck: 'false',
        placeholder: 'SetChannel 3 0', oninput: this.#typed, onkeydown: this.#pressed, onblur: () => this.#close(),
      }),
      h('ul', {id: 'command-choices', role: 'listbox', 'aria-label': 'Commands', hidden: choices.length === 0}, choices.map(({name, help, parameters}, at) => h('li', {
        key: name, id: `choice-${name}`, role: 'option', 'aria-selected': String(at === this.#at), onmousedown: (/** @type {Event} */ event) => { event.preventDefault(); this.#pick(name) },
      }, h('code', null, name), h('span', {class: 'dim'}, ` ${parameters.map((/** @type {any} */ parameter) => parameter.name).join(' ')}`), h('span', {class: 'dim cut'}, help)))))
  }

  /** @param {{name: string, parameters: string[], isList: boolean}} command */
  #parameters({name, parameters, isList}) {
    const known = isList ? undefined : commandNamed(name)
    const count = Math.max(known?.parameters.length ?? 0, parameters.length + (known ? 0 : 1))
    const most = isList ? count : Math.max(Math.min(count, mostParameters), parameters.length)
    return h('div', {class: 'parameters', role: 'group', 'aria-label': 'Parameters', tabindex: most > 0 ? null : 0},
      Array.from({length: most}, (_, at) => {
        const {name: label, help} = known?.parameters[at] ?? {name: `parameter ${at + 1}`, help: at >= mostParameters && !isList ? 'Only a parameter list can have this many.' : ''}
        return h('label', {key: at, class: 'parameter', title: help}, h('span', {class: 'parameter-name'}, label),
          h('input', {class: 'mono', value: parameters[at] ?? '', 'aria-label': label, 'aria-description': help, onkeydown: this.#entered,
            oninput: (/** @type {Event} */ event) => this.#fill(name, parameters, isList, at, /** @type {HTMLInputElement} */ (event.target).value)}),
          h('span', {class: 'dim parameter-help'}, help))
      }),
      h('p', {class: 'dim'}, known ? known.help : commandNamed(name) && isList ? 'Its parameters as a list.' : 'The catalogue does not have this command; the engine may refuse it.'),
      known?.answers && h('p', {class: 'dim'}, `Answers: ${known.answers}`))
  }

  /** @param {string} name @param {string[]} parameters @param {boolean} isList @param {number} at @param {string} value */
  #fill(name, parameters, isList, at, value) {
    const filled = Array.from({length: Math.max(parameters.length, at + 1)}, (_, index) => index === at ? value : parameters[index] ?? '')
    while (filled.at(-1) === '') filled.pop()
    this.#change(lineOf(name, filled, isList))
  }

  /** @param {string} line */
  #change(line) {
    this.#line = line
    this.#place = this.#history.length
    this.redraw()
  }

  #close() {
    this.#isOpen = false
    this.#at = -1
    this.redraw()
  }

  /** @param {string} name */
  #pick(name) {
    const takesSome = commandNamed(name)?.parameters.length > 0
    this.#isOpen = false
    this.#at = -1
    this.#change(takesSome ? `${name} ` : name)
    this.#input?.focus()
  }

  #typed = (/** @type {Event} */ event) => {
    this.#line = /** @type {HTMLInputElement} */ (event.target).value
    this.#place = this.#history.length
    this.#isOpen = /^\w+$/.test(this.#line.trim()) && !/\s$/.test(this.#line) && !commandNamed(this.#line)
    this.#at = -1
    this.redraw()
  }

  #entered = (/** @type {KeyboardEvent} */ event) => {
    if (event.key !== 'Enter') return
    event.preventDefault()
    this.#run()
  }

  #pressed = (/** @type {KeyboardEvent} */ event) => {
    const choices = this.#choices
    const isList = choices.length > 0
    if (event.key === 'ArrowDown' && (event.altKey || (!isList && this.#line === ''))) this.#isOpen = true
    else if (event.key === 'ArrowDown') isList ? this.#at = (this.#at + 1) % choices.length : this.#recall(1)
    else if (event.key === 'ArrowUp') isList ? this.#at = (this.#at <= 0 ? choices.length : this.#at) - 1 : this.#recall(-1)
    else if (event.key === 'Escape' && isList) this.#isOpen = false
    else if ((event.key === 'Enter' || (event.key === 'Tab' && !event.shiftKey)) && isList && this.#at >= 0) return this.#chosen(event, choices[this.#at].name)
    else return
    event.preventDefault()
    event.stopPropagation()
    this.redraw()
  }

  /** @param {KeyboardEvent} event @param {string} name */
  #chosen(event, name) {
    event.preventDefault()
    this.#pick(name)
  }

  /** @param {number} step */
  #recall(step) {
    this.#place = Math.max(0, Math.min(this.#place + step, this.#history.length))
    this.#line = this.#history[this.#place] ?? ''
  }

  #submitted = (/** @type {Event} */ event) => {
    event.preventDefault()
    this.#run()
  }

  async #run() {
    const line = this.#line.trim().replace(/^>\s*/, '')
    if (line === '') return
    this.#history = withLine(this.#history, line)
    this.#isOpen = false
    this.#change('')
    const typed = parse(line)
    const id = ++this.#id
    const name = typed?.kind === 'command' ? typed.name : ''
    this.#tell(id, {line, name, isRunning: true})
    this.#tell(id, {line, name, ...await outcomeOf(typed)})
  }

  /** @param {number} id @param {Outcome} outcome */
  #tell(id, outcome) {
    this.#outcomes = [...this.#outcomes.filter(other => other.id !== id), {id, outcome}].sort((one, other) => one.id - other.id).slice(-mostOutcomes)
    this.#isFollowing = true
    this.redraw()
  }
}
customElements.define('emp-command', Command)

/** Runs what was typed. @param {ReturnType<typeof parse>} typed @return {Promise<Partial<Outcome>>} */
async function outcomeOf(typed) {
  if (!typed) return {error: 'A quote is not closed, or nothing follows a \\. Quote a text as in \'two words\'.'}
  const failed = () => ({error: store.get('deed').error ?? 'It was not run.'})
  if (typed.kind === 'shell') {
    const answer = await act('tv.run', {line: typed.line})
    return answer ? {lines: answer.lines} : failed()
  }
  const {name, parameters, isList} = typed
  if (name === '') return {error: 'Enter the name of a command, as in SetChannel 3 0.'}
  if (!isList && parameters.length > mostParameters) return {error: `A command takes at most ${mostParameters} parameters. Tick "Parameter list", or start with +, to pass any number.`}
  const known = commandNamed(name)
  const reply = isList ? await act('window.executeWithParamList', {name, parameters})
    : known && parameters.length <= known.parameters.length ? await act(`window.${name}`, parameters)
      : await act('window.execute', {name, parameters})
  return reply ? {reply} : failed()
}
