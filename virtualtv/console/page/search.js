// SPDX-License-Identifier: MIT
import {complain, tv} from './act.js'
import {h} from './dom.js'
import {panes, showPane} from './panes.js'
import {Part} from './part.js'
import {tuneToService} from './remote-deeds.js'
import {numberOf, shownName} from './services.js'
import {store} from './store.js'

const mostOfAKind = 6

/** @typedef {{key: string, kind: string, name: string, more: string, open: () => void}} Finding */

/** @param {string} text @param {string} wanted */
const has = (text, wanted) => text.toLowerCase().includes(wanted)

/** Finds panes, commands and channels by name, and opens them. */
class Search extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['commands', 'connection'])
  #text = ''
  #chosen = 0
  #isOpen = false
  /** The services found. @type {any[]} */
  #channels = []

  connectedCallback() {
    super.connectedCallback()
    addEventListener('keydown', event => {
      if (!(event.ctrlKey || event.metaKey) || event.key !== 'k') return
      event.preventDefault()
      this.querySelector('input')?.select()
      this.querySelector('input')?.focus()
    })
    this.addEventListener('focusout', event => {
      if (!this.contains(/** @type {Node?} */ (event.relatedTarget))) this.#close()
    })
  }

  view() {
    const findings = this.#isOpen ? this.#findings() : []
    this.#chosen = Math.max(0, Math.min(this.#chosen, findings.length - 1))
    return [
      h('input', {
        type: 'search', value: this.#text, placeholder: 'Search', role: 'combobox', autocomplete: 'off', spellcheck: 'false',
        'aria-label': 'Search panes, commands and channels', 'aria-keyshortcuts': 'Control+K', 'aria-autocomplete': 'list',
        'aria-expanded': String(this.#isOpen), 'aria-controls': 'search-found',
        'aria-activedescendant': findings.length > 0 ? `search-${this.#chosen}` : null,
        oninput: (/** @type {Event} */ event) => this.#typed(/** @type {HTMLInputElement} */ (event.target).value),
        onkeydown: (/** @type {KeyboardEvent} */ event) => this.#pressed(event, findings),
      }),
      h('kbd', {class: 'dim', 'aria-hidden': 'true'}, 'Ctrl+K'),
      h('div', {id: 'search-found', class: 'found', role: 'listbox', 'aria-label': 'Found', hidden: !this.#isOpen},
        findings.map((finding, at) => h('div', {
          key: finding.key, id: `search-${at}`, role: 'option', class: 'finding', 'aria-selected': String(at === this.#chosen),
          onmousedown: (/** @type {Event} */ event) => event.preventDefault(), onclick: () => this.#open(finding),
        }, h('span', {class: 'name cut grow'}, finding.name), h('span', {class: 'dim cut'}, finding.more), h('span', {class: 'dim'}, finding.kind)))),
      h('p', {class: 'found empty', hidden: !this.#isOpen || findings.length > 0, role: 'status'}, this.#isOpen && findings.length === 0 ? 'No match.' : ''),
    ]
  }

  /** @return {Finding[]} */
  #findings() {
    const wanted = this.#text.trim().toLowerCase()
    const places = panes.filter(({name}) => has(name, wanted)).map(({name}) => (
      {key: `pane ${name}`, kind: 'pane', name, more: '', open: () => showPane(name)}))
    const commands = store.get('commands').filter(({name}) => has(name, wanted)).map(({name, help}) => (
      {key: `command ${name}`, kind: 'command', name, more: help, open: () => showPane('Command', {command: name})}))
    // The server may not have answered for the last key yet.
    const channels = this.#channels.filter(({name}) => has(name ?? '', wanted)).map(service => (
      {key: `channel ${service.key}`, kind: 'channel', name: shownName(service.name), more: numberOf(service), open: () => { tune(service) }}))
    return [places, commands, channels].flatMap(found => found.slice(0, mostOfAKind))
  }

  /** @param {string} text */
  async #typed(text) {
    this.#text = text
    this.#chosen = 0
    this.#isOpen = text.trim() !== ''
    this.redraw()
    if (!this.#isOpen) return
    try {
      const {services} = await tv().services({text: text.trim(), limit: mostOfAKind})
      if (this.#text === text) this.#channels = services
      this.changed()
    } catch {
      // Without a connection no channels can be found; the head shows that.
    }
  }

  /** @param {KeyboardEvent} event @param {Finding[]} findings */
  #pressed(event, findings) {
    const step = {ArrowDown: 1, ArrowUp: -1}[event.key]
    if (step) this.#chosen = (this.#chosen + step + findings.length) % Math.max(1, findings.length)
    else if (event.key === 'Enter' && findings[this.#chosen]) this.#open(findings[this.#chosen])
    else if (event.key === 'Escape') this.#close()
    else return
    event.preventDefault()
    event.stopPropagation()
    this.redraw()
  }

  /** @param {Finding} finding */
  #open(finding) {
    this.#close()
    finding.open()
  }

  #close() {
    this.#text = ''
    this.#isOpen = false
    this.#channels = []
    this.redraw()
  }
}
customElements.define('emp-search', Search)

/** @param {any} service */
async function tune(service) {
  const {text, failed} = await tuneToService(service)
  if (failed) complain('SetChannelByServiceid', text)
}
