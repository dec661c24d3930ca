// SPDX-License-Identifier: MIT
import {letIn, need, problemOf, refusal, scriptLine} from './app-access.js'
import {attempt} from './attempt.js'
import './drop.js'
import {h} from './dom.js'
import {copy} from './clipboard.js'
import {appFrames} from './frame.js'
import {remember, remembered} from './memory.js'
import {addressOf, ownApps} from './origins.js'
import {Part} from './part.js'
import {store} from './store.js'

const bundled = [
  {name: 'Zapper', folder: 'zapper', what: 'Channel list, numbers, picture-in-picture, operated with the remote control.'},
  {name: 'Picture geometry', folder: 'geometry', what: 'Place, crop, order and hide the picture, in both spaces.'},
]
const example = 'http://localhost:5173'

/** Runs an app over the picture. */
class App extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['app', 'connection'])
  #address = remembered('app', '')
  /** Why the address can't run. @type {import('./dom.js').Child} */
  #problem = null
  /** Describes which apps the page allows. */
  #letIn = ''
  #copied = ''

  connectedCallback() {
    super.connectedCallback()
    appFrames.addEventListener('change', this.#changed)
    this.#ask()
  }

  disconnectedCallback() {
    super.disconnectedCallback()
    appFrames.removeEventListener('change', this.#changed)
  }

  #changed = () => this.changed()

  async #ask() {
    this.#letIn = await letIn()
    this.changed()
  }

  view() {
    return h('div', {class: 'pane-body'},
      [this.#running(), this.#bundled(), this.#own(), [h('h3', null, 'Files'), h('emp-open-file')]].map(part => h('div', {class: 'stack'}, part)),
      this.#resetDialog())
  }

  #bundled() {
    return [
      h('h3', null, 'Included apps'),
      bundled.map(({name, folder, what}) => h('div', {class: 'app-choice', key: folder},
        h('button', {onclick: () => this.#start(new URL(`${folder}/index.html`, ownApps), name)}, name),
        h('span', {class: 'dim'}, what))),
    ]
  }

  #own() {
    const more = need(addressOf(this.#address)?.origin ?? example)
    return [
      h('h3', null, 'Your own app'),
      h('form', {class: 'row', onsubmit: (/** @type {Event} */ event) => this.#submit(event)},
        h('label', {class: 'unseen', for: 'app-address'}, 'Address of the app'),
        h('input', {id: 'app-address', class: 'grow', value: this.#address, placeholder: `${example}/`, spellcheck: 'false', autocomplete: 'off',
          'aria-describedby': 'app-problem', oninput: (/** @type {Event} */ event) => this.#type(event)}),
        h('button', {class: 'main'}, 'Run')),
      h('div', {id: 'app-problem', role: 'alert', class: 'app-problem'}, this.#problem),
      h('p', null, 'Put this line into the head of its page. It then has the TV as ', h('code', null, 'tvWindow'), ', as on a set:'),
      this.#copyable('line', scriptLine()),
      more && [h('p', null, more.text), this.#copyable(more.name, more.copy)],
      h('p', {class: 'dim'}, this.#letIn),
    ]
  }

  /** @param {string} what @param {string} text */
  #copyable(what, text) {
    return h('div', {class: 'copyable'}, h('code', null, text),
      h('button', {'aria-label': `Copy the ${what}`, onclick: async () => {
        await copy(text)
        this.#copied = what
        this.changed()
      }}, this.#copied === what ? 'Copied' : 'Copy'))
  }

  #running() {
    const app = store.get('app')
    const reload = () => app && appFrames.start(app.address, app.name)
    return [
      h('h3', null, 'Running'),
      h('div', {class: ['app-now', app && 'is-on']},
        app ? [
          h('strong', {class: 'name'}, app.name),
          h('code', {class: 'name dim cut', title: app.address}, app.address),
          h('div', {role: 'status', class: 'app-state'}, this.#state(app.address)),
        ] : h('p', {class: 'dim'}, 'No app. Start one of those below: it runs over the picture and gets the keys of the remote control.')),
      h('div', {class: 'row'},
        h('button', {disabled: !app, onclick: reload}, 'Reload'),
        h('button', {disabled: !app, onclick: this.#close}, 'Close app'),
        h('button', {disabled: !app, onclick: () => this.querySelector('dialog')?.showModal()}, 'Reload and reset the TV')),
    ]
  }

  /** Closes the app. The button disappears, so for keyboard users the focus moves to the choice of apps. */
  #close = (/** @type {MouseEvent} */ {detail}) => {
    if (detail === 0) /** @type {HTMLElement} */ (this.querySelector('.app-choice button')).focus()
    appFrames.close()
  }

  /** @param {string} address */
  #state(address) {
    const {what, name, reason} = appFrames.state
    if (what === 'running') return [h('span', null, 'Has the TV as '), h('code', {class: 'name'}, name)]
    if (what === 'refused') {
      return h('p', {class: 'fail'}, refusal(reason ?? ''))
    }
    const open = h('a', {href: address, target: '_blank', rel: 'noopener'}, 'Open it in a tab')
    if (what === 'loading') return [h('p', null, 'Loading. Does it take long? '), open]
    return [
      h('p', {class: 'fail'}, 'The app has not reported that it runs.'),
      h('ul', null,
        h('li', null, 'Does its server answer? ', open),
        h('li', null, 'Is the line below in the head of its page?'),
        h('li', null, 'Does its server forbid frames (X-Frame-Options, frame-ancestors)?')),
    ]
  }

  #resetDialog() {
    const close = () => this.querySelector('dialog')?.close()
    return h('dialog', {key: 'reset', 'aria-labelledby': 'app-reset-title'},
      h('h3', {id: 'app-reset-title'}, 'Reset the TV?'),
      h('p', null, 'All changes to the TV are lost: channels, settings, faults. The app is reloaded.'),
      h('div', {class: 'row'},
        h('button', {class: 'main', onclick: () => this.#reset(close)}, 'Reset and reload'),
        h('button', {onclick: close}, 'Cancel')))
  }

  /** @param {() => void} close */
  async #reset(close) {
    close()
    const app = store.get('app')
    if (app && await attempt('tv.reset') === undefined) appFrames.start(app.address, app.name)
  }

  /** @param {Event} event */
  #type(event) {
    this.#address = /** @type {HTMLInputElement} */ (event.target).value
    this.#problem = null
    remember('app', this.#address)
    this.changed()
  }

  /** @param {Event} event */
  async #submit(event) {
    event.preventDefault()
    const url = addressOf(this.#address)
    this.#problem = url ? await problemOf(url) : `Enter an address such as ${example}/.`
    if (url && !this.#problem) this.#start(url, url.host)
    this.changed()
    this.#ask()
  }

  /** @param {URL} url @param {string} name */
  #start(url, name) {
    this.#problem = null
    appFrames.start(url.href, name)
    store.set('keys', 'app')
  }
}
customElements.define('emp-app', App)
