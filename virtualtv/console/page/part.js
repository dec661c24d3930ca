// SPDX-License-Identifier: MIT
import {draw} from './dom.js'
import {onFrame, store} from './store.js'

/** @typedef {import('./dom.js').Child} Child */

/**
 * An element that draws itself from the store: a subclass names the parts of the store in `uses` and answers its
 * children from `view`. What is its own it keeps in fields, and calls `changed` when these change.
 */
export class Part extends HTMLElement {
  /** @type {(keyof import('./store.js').Known)[]} */
  static uses = []

  #unsubscribe = () => {}
  #isScheduled = false

  connectedCallback() {
    const {uses} = /** @type {typeof Part} */ (this.constructor)
    this.#unsubscribe = store.subscribe(uses, () => this.redraw())
    this.redraw()
  }

  disconnectedCallback() {
    this.#unsubscribe()
  }

  /** Draws with the next frame. */
  changed() {
    if (this.#isScheduled) return
    this.#isScheduled = true
    onFrame(() => this.redraw())
  }

  /** Draws now, unless nobody can see it: what is hidden is drawn when it shows. */
  redraw() {
    this.#isScheduled = false
    if (!this.isConnected || this.closest('[hidden]')) return
    draw(this, this.view())
    this.drawn()
  }

  /** @return {Child} */
  view() {
    return null
  }

  /** Called behind each drawing. */
  drawn() {}
}
