// SPDX-License-Identifier: MIT
import {command} from './act.js'
import {disconnected, keeping, people} from './connection.js'
import {h} from './dom.js'
import {antennaModes} from './numbers.js'
import {Part} from './part.js'
import './search.js'
import {front} from './shown.js'
import {store} from './store.js'

/** Shows where the set's state is, who is connected, and the TV mode. */
class Head extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['connection', 'keptIn', 'sessions', 'state'])

  view() {
    const state = store.get('state')
    return [
      h('h1', null, 'emp-window'),
      this.#keptIn(),
      this.#connection(),
      state && h('label', null, 'TV mode ', h('select', {
        value: String(state.windows.main.tvMode.antenna),
        onchange: (/** @type {Event} */ event) => command('SetTVMode', antennaModes[Number(/** @type {HTMLSelectElement} */ (event.target).value)][0]),
      }, antennaModes.map(([, name], antenna) => h('option', {value: String(antenna)}, name)))),
      h('emp-search', {class: 'search'}),
    ]
  }

  #keptIn() {
    const directory = store.get('keptIn')
    if (directory === undefined) return null
    const {where, isPath, title, isTrouble} = keeping(directory)
    return h('span', {class: ['cut kept-in', isTrouble ? 'fail' : 'dim'], title}, 'State: ', isPath ? h('code', {class: 'name'}, front(where, 500)) : where)
  }

  #connection() {
    const {connected, reason, advice} = store.get('connection')
    if (!connected) return h('span', {class: 'fail', role: 'alert', title: reason}, disconnected, advice && `. ${advice}`)
    const sessions = people(store.get('sessions'))
    const apps = sessions.filter(({engines}) => engines.length > 0).length
    return h('span', {class: 'dim who'}, `${apps} ${apps === 1 ? 'engine' : 'engines'}, ${sessions.length} ${sessions.length === 1 ? 'client' : 'clients'}`)
  }
}
customElements.define('emp-head', Head)
