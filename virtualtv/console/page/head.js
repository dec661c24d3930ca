import {command} from './act.js'
import {h} from './dom.js'
import {Part} from './part.js'
import {store} from './store.js'

const modes = [['Terrestrial', 0], ['Cable', 1], ['Satellite', 2]]

/** Who is connected, and the TV mode. */
class Head extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['connection', 'sessions', 'state'])

  view() {
    const state = store.get('state')
    return [
      h('h1', null, 'emp-window'),
      this.#connection(),
      state && h('label', null, 'TV mode ', h('select', {
        value: String(state.windows.main.tvMode.antenna),
        onchange: (/** @type {Event} */ event) => command('SetTVMode', /** @type {HTMLSelectElement} */ (event.target).value),
      }, modes.map(([name, number]) => h('option', {value: String(number)}, name)))),
    ]
  }

  #connection() {
    const {connected, reason} = store.get('connection')
    if (!connected) return h('span', {class: 'fail', role: 'alert', title: reason}, 'Disconnected, reconnecting')
    const sessions = store.get('sessions')
    const apps = sessions.filter(({engines}) => engines.length > 0).length
    return h('span', {class: 'dim'}, `${apps} ${apps === 1 ? 'engine' : 'engines'}, ${sessions.length} ${sessions.length === 1 ? 'client' : 'clients'}`)
  }
}
customElements.define('emp-head', Head)
