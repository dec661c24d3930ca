// SPDX-License-Identifier: MIT
import {command, complain} from './act.js'
import './channel-edit.js'
import './channel-export.js'
import {h} from './dom.js'
import './list.js'
import {Part} from './part.js'
import {tuneToService} from './remote-deeds.js'
import {troubleOf} from './reply.js'
import {ServicePages} from './service-pages.js'
import {counted, nameOf, numberOf} from './services.js'
import {front} from './shown.js'
import {store} from './store.js'

const short = /** @type {{[antenna: string]: string}} */ ({terrestrial: 'terr', cable: 'cable', satellite: 'sat'})

/** The favourite groups to choose from. */
const favouriteGroups = Array.from({length: 256}, (_, group) => h('option', {value: String(group)}, String(group)))

/** The list of services: search, tune, mark as favourite, edit, export. */
class Channels extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['state', 'services', 'connection'])
  #pages = new ServicePages(() => this.changed())
  #filter = {text: '', antenna: '', kind: '', group: ''}
  #favourite = 1
  #onlyFavourites = false
  #version = -1
  /** @type {import('./remote-deeds.js').Outcome} */
  #said = {text: ''}
  /** The panel below the list: the edited service, or the export. @type {{edit: any} | 'export' | undefined} */
  #panel
  /** The key of the service in the selected row; it stays the same when the service moves. @type {number | undefined} */
  #chosenKey

  view() {
    if (!store.get('connection').connected && this.#pages.total === undefined) return h('p', {class: 'empty'}, 'Channels appear here once the TV is connected.')
    if (this.#version !== store.get('services')) this.#refresh()
    return [h('div', {class: 'channel-filters'}, this.#filters()), this.#list(), this.#panelBelow(), this.#foot()]
  }

  #refresh() {
    const isFirst = this.#version < 0
    this.#version = store.get('services')
    if (isFirst) this.#pages.find({})
    else this.#pages.refresh()
  }

  #filters() {
    return [
      h('input', {type: 'search', 'aria-label': 'Search channels', placeholder: 'Search by name', spellcheck: 'false',
        oninput: (/** @type {Event} */ event) => this.#narrow({text: valueOf(event).trim()})}),
      h('div', {class: 'channel-selects'},
        this.#select('Antenna', 'antenna', ['terrestrial', 'cable', 'satellite']),
        this.#select('Kind', 'kind', ['television', 'radio', 'data']),
        this.#select('Group', 'group', this.#pages.groups)),
      h('div', {class: 'row'},
        h('label', null, 'Favourite group ', h('select', {value: String(this.#favourite), onchange: (/** @type {Event} */ event) => {
          this.#favourite = Number(valueOf(event))
          this.#narrow({})
        }}, favouriteGroups)),
        h('label', null, h('input', {type: 'checkbox', checked: this.#onlyFavourites, onchange: (/** @type {Event} */ event) => {
          this.#onlyFavourites = /** @type {HTMLInputElement} */ (event.target).checked
          this.#narrow({})
        }}), 'only these')),
    ]
  }

  /** @param {string} label @param {'antenna' | 'kind' | 'group'} name @param {string[]} choices */
  #select(label, name, choices) {
    const chosen = this.#filter[name]
    const offered = chosen && !choices.includes(chosen) ? [chosen, ...choices] : choices
    return h('select', {key: name, 'aria-label': label, value: chosen, class: chosen ? 'is-set' : null, onchange: (/** @type {Event} */ event) => this.#narrow({[name]: valueOf(event)})},
      h('option', {key: '', value: ''}, `${label}: all`), offered.map(choice => h('option', {key: choice, value: choice}, front(choice, 60))))
  }

  /** @param {Partial<{text: string, antenna: string, kind: string, group: string}>} filter */
  #narrow(filter) {
    this.#filter = {...this.#filter, ...filter}
    const given = Object.entries(this.#filter).filter(([, value]) => value)
    const list = this.#listElement
    if (list) {
      list.scrollTop = 0
      list.chosen = -1
    }
    this.#pages.find({...Object.fromEntries(given), ...this.#onlyFavourites && {favourite: this.#favourite}})
    this.changed()
  }

  /** @return {import('./list.js').LongList | null} */
  get #listElement() {
    return this.querySelector('emp-long-list')
  }

  #list() {
    const {total} = this.#pages
    if (total === 0) return h('p', {key: 'empty', class: 'empty grow'}, this.#empty())
    return h('emp-long-list', {
      key: 'list', grid: true, id: 'channel-list', class: 'grow', 'aria-label': 'Channels: Enter tunes, Space marks as favourite, E edits', 'aria-busy': String(total === undefined),
      row: (/** @type {number} */ at) => this.#row(at),
      onrange: (/** @type {number} */ from, /** @type {number} */ to) => this.#pages.want(from, to),
      onchoose: (/** @type {number} */ at) => { this.#chosenKey = this.#pages.at(at)?.key },
      onopen: (/** @type {number} */ at) => this.#tune(at),
      onkey: (/** @type {number} */ at, /** @type {KeyboardEvent} */ event) => this.#typed(at, event),
    })
  }

  drawn() {
    const list = this.#listElement
    if (!list) return
    list.length = this.#pages.total ?? 0
    this.#followChosen(list)
    list.redraw()
  }

  /** The selected service may have moved. An edited service stays visible. @param {import('./list.js').LongList} list */
  #followChosen(list) {
    if (list.chosen < 0 || this.#chosenKey === undefined || this.#pages.at(list.chosen)?.key === this.#chosenKey) return
    const at = this.#pages.indexOf(this.#chosenKey)
    if (at >= 0 && typeof this.#panel === 'object') list.choose(at)
    else list.chosen = at
  }

  #empty() {
    return store.get('state')?.services === 0
      ? 'The set has no channels. Drop a channel list on the page (VDR\'s channels.conf, or one of libdvbv5) to import it.'
      : 'No channel matches. Search for part of a name, or set all filters above to all.'
  }

  /** @param {number} at */
  #row(at) {
    const service = this.#pages.at(at)
    if (!service) return h('span', {role: 'gridcell', class: 'dim'}, '…')
    const {name, kind, antenna, hidden, locked, favourites} = service
    const isFavourite = favourites.includes(this.#favourite)
    return [
      h('span', {role: 'gridcell', class: 'channel-number mono'}, numberOf(service)),
      h('span', {role: 'gridcell', class: 'grow cut channel-name'}, nameOf(name)),
      h('span', {role: 'gridcell', class: 'channel-marks'},
        onAir(service).map(window => h('span', {class: 'on-air', title: `On the ${window === 'pip' ? 'picture-in-picture' : 'main'} window`}, window === 'pip' ? 'pip' : 'on air')),
        locked && h('span', {class: 'dim', title: 'Locked: asks for a code'}, 'locked'),
        hidden && h('span', {class: 'dim', title: 'Hidden: in no list of the set'}, 'hidden'),
        kind !== 'television' && h('span', {class: 'dim'}, kind),
        h('span', {class: 'dim channel-antenna', title: antenna}, short[antenna] ?? antenna)),
      h('span', {role: 'gridcell', class: 'channel-edit'}, h('button', {
        class: 'plain', tabindex: -1, title: 'Edit (E)', 'aria-label': `Edit ${name || 'no name'}`, onclick: () => this.#edit(at)}, 'Edit')),
      h('span', {role: 'gridcell'}, h('button', {
        class: ['plain', 'star', isFavourite && 'is-set'], tabindex: -1, 'aria-pressed': String(isFavourite), 'aria-label': `Favourite of group ${this.#favourite}: ${name || 'no name'}`,
        onclick: () => this.#star(at),
      }, isFavourite ? '★' : '☆')),
    ]
  }

  #foot() {
    const {total, failure} = this.#pages
    const {text, failed} = this.#said
    const count = total === undefined ? 'Loading channels' : counted(total, 'channel')
    return h('div', {class: 'channel-foot'},
      failure ? h('span', {class: 'fail cut', title: failure}, failure) : h('span', {class: 'dim', role: 'status'}, count),
      h('span', {class: ['cut', 'grow', failed && 'fail'], role: 'status', title: text}, h('bdi', null, text)),
      h('button', {class: 'plain', 'aria-expanded': String(this.#panel === 'export'), onclick: () => this.#open(this.#panel === 'export' ? undefined : 'export')}, 'Export list…'))
  }

  #panelBelow() {
    const panel = this.#panel
    if (panel === undefined) return undefined
    const end = (said = '') => this.#end(panel === 'export' ? 'button[aria-expanded]' : 'emp-long-list', said)
    const onkeydown = (/** @type {KeyboardEvent} */ event) => {
      if (event.key !== 'Escape') return
      event.preventDefault()
      event.stopPropagation()
      end()
    }
    return panel === 'export' ? h('emp-channel-export', {key: 'export', onkeydown, onend: () => end()})
      : h('emp-channel-edit', {key: 'edit', service: panel.edit, onkeydown, onend: end})
  }

  /** @param {{edit: any} | 'export' | undefined} panel */
  #open(panel) {
    this.#panel = panel
    this.redraw()
  }

  /** Closes the panel. @param {string} next  the element to focus @param {string} [said]  a message to show */
  #end(next, said = '') {
    if (said) this.#said = {text: said}
    this.#open(undefined)
    this.#focus(next)
  }

  /** @param {number} at */
  #edit(at) {
    const service = this.#pages.at(at)
    const list = this.#listElement
    if (!service || !list) return
    list.choose(at)
    this.#open({edit: service})
    this.#focus('emp-channel-edit input')
  }

  /** @param {string} selector */
  #focus(selector) {
    const element = /** @type {HTMLElement | null} */ (this.querySelector(selector))
    element?.focus()
  }

  /** @param {number} at @param {KeyboardEvent} event */
  #typed(at, event) {
    if (event.key !== ' ' && event.key.toLowerCase() !== 'e') return
    event.preventDefault()
    if (event.key === ' ') this.#star(at)
    else this.#edit(at)
  }

  /** @param {number} at */
  async #tune(at) {
    const service = this.#pages.at(at)
    if (!service) return
    this.#said = await tuneToService(service)
    this.changed()
  }

  /** Adds a service to the favourite group, or removes it. @param {number} at */
  async #star(at) {
    const service = this.#pages.at(at)
    if (!service) return
    if (!service.id) return complain('UpdateFavorites', 'this service has no id, which the command needs; its knob favourites can be set by key')
    const group = this.#favourite
    const failure = troubleOf('UpdateFavorites', await command('UpdateFavorites', service.id, service.favourites.includes(group) ? 0 : 1, group))
    this.#said = failure ? {text: failure, failed: true} : {text: ''}
    this.changed()
  }
}
customElements.define('emp-channels', Channels)

/** @param {Event} event  of a field */
function valueOf(event) {
  return /** @type {HTMLInputElement} */ (event.target).value
}

/** The windows that show a service. @param {{key: number}} service @return {string[]} */
function onAir({key}) {
  const windows = store.get('state')?.windows
  return ['main', 'pip'].filter(name => windows?.[name].service?.key === key && windows[name].source.number === 0)
}
