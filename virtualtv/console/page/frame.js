// SPDX-License-Identifier: MIT
/*
 * The frame in which an app runs over the picture, and what passes between it and the page: keys of the remote control
 * go to the app; the app reports that it is running, and passes on keys typed while it has the focus. Both sides check
 * the sender and the origin of a message.
 */
import {complain} from './act.js'
import {h} from './dom.js'
import {keyboardKeys} from './keys.js'
import {Part} from './part.js'
import {store} from './store.js'

/** The standard `key` of each button of the remote control. @type {{[button: string]: string}} */
const keysOfButtons = {
  ok: 'Enter', enter: 'Enter', up: 'ArrowUp', down: 'ArrowDown', left: 'ArrowLeft', right: 'ArrowRight',
  'channel up': 'ChannelUp', 'channel down': 'ChannelDown', 'previous channel': 'NavigatePrevious', 'channel list': 'ListProgram',
  red: 'ColorF0Red', green: 'ColorF1Green', yellow: 'ColorF2Yellow', blue: 'ColorF3Blue',
  play: 'MediaPlay', pause: 'MediaPause', stop: 'MediaStop', record: 'MediaRecord', rewind: 'MediaRewind',
  'fast forward': 'MediaFastForward', forward: 'MediaFastForward',
  back: 'GoBack', return: 'GoBack', exit: 'Exit', info: 'Info', guide: 'Guide', menu: 'ContextMenu', tools: 'ContextMenu', home: 'BrowserHome',
  'volume up': 'AudioVolumeUp', 'volume down': 'AudioVolumeDown', mute: 'AudioVolumeMute', 'mute picture': 'AudioVolumeMute',
  audio: 'MediaAudioTrack', subtitle: 'Subtitle', subtitles: 'Subtitle', teletext: 'Teletext', text: 'Teletext',
  source: 'TVInput', input: 'TVInput', power: 'Power', pip: 'PinPToggle', 'picture-in-picture': 'PinPToggle', swap: 'DisplaySwap',
}

/** The `key` that an app receives for a button; undefined if there is none. @param {string} name  name of the button */
export function keyOf(name) {
  return /^[0-9]$/.test(name) ? name : Object.hasOwn(keysOfButtons, name.toLowerCase()) ? keysOfButtons[name.toLowerCase()] : undefined
}

/**
 * The state of the app.
 * @typedef {object} AppState
 * @property {'none' | 'loading' | 'silent' | 'running' | 'refused'} what  `silent`: loaded, but the
 *   app has not reported that it runs
 * @property {string} [name]  the name under which the app has the TV
 * @property {string} [reason]
 */

/** Reports changes with the event `change`. */
class AppFrames extends EventTarget {
  /** @type {AppState} */
  state = {what: 'none'}
  /** Increases with each load that a person requested. */
  run = 0

  /** @param {AppState} state */
  become(state) {
    this.state = state
    this.dispatchEvent(new Event('change'))
  }

  /** Loads the app, or reloads it if it runs. @param {string} address @param {string} name  of the app, for people */
  start(address, name) {
    ++this.run
    this.become({what: 'loading'})
    store.set('app', {address, name})
  }

  close() {
    store.set('app', null)
    store.set('keys', 'tv')
    this.become({what: 'none'})
  }
}

export const appFrames = new AppFrames()

/** The layer over the picture in which the app runs. */
class AppFrame extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['app'])

  connectedCallback() {
    super.connectedCallback()
    addEventListener('emp-key', this.#pressed)
    addEventListener('message', this.#told)
    document.addEventListener('securitypolicyviolation', this.#refused)
  }

  disconnectedCallback() {
    super.disconnectedCallback()
    removeEventListener('emp-key', this.#pressed)
    removeEventListener('message', this.#told)
    document.removeEventListener('securitypolicyviolation', this.#refused)
  }

  view() {
    const app = store.get('app')
    return app && h('iframe', {
      key: appFrames.run, title: `App ${app.name}`, sandbox: 'allow-scripts allow-same-origin', src: app.address,
      onload: () => appFrames.state.what === 'loading' && appFrames.become({what: 'silent'}),
    })
  }

  /** @return {{frame: Window, origin: string} | undefined}  the app's window and its expected origin */
  #app() {
    const app = store.get('app')
    const frame = this.querySelector('iframe')?.contentWindow
    return app && frame ? {frame, origin: new URL(app.address).origin} : undefined
  }

  /** Sends a button of the remote control to the app. @param {Event} event */
  #pressed = event => {
    const {name} = /** @type {CustomEvent} */ (event).detail ?? {}
    const app = this.#app()
    if (!app || typeof name !== 'string') return
    const key = keyOf(name)
    if (key === undefined) return complain(name, 'apps know no key of this name')
    for (const kind of ['keydown', 'keyup']) app.frame.postMessage({type: 'emp-window/key', kind, key}, app.origin)
  }

  /** @param {MessageEvent} event */
  #told = ({source, origin, data}) => {
    const app = this.#app()
    if (!app || source !== app.frame || origin !== app.origin) return
    if (data?.type === 'emp-window/app') {
      appFrames.become({what: 'running', name: String(data.name).slice(0, 200)})
      app.frame.postMessage({type: 'emp-window/keyboard', keys: keyboardKeys}, app.origin)
    }
    if (data?.type === 'emp-window/typed' && keyboardKeys.includes(String(data.key).toLowerCase())) type(data.key)
  }

  /** @param {SecurityPolicyViolationEvent} event */
  #refused = ({effectiveDirective, blockedURI}) => {
    if (effectiveDirective === 'frame-src' && store.get('app')) appFrames.become({what: 'refused', reason: blockedURI})
  }
}
customElements.define('emp-app-frame', AppFrame)

/** Handles a key typed in the frame as if it had been typed on the page. @param {string} key */
function type(key) {
  document.body.dispatchEvent(new KeyboardEvent('keydown', {key, bubbles: true, cancelable: true}))
}
