// SPDX-License-Identifier: MIT
import {draw} from './dom.js'
import {onFrame, store} from './store.js'

/** @typedef {import('./dom.js').Child} Child */

/**
 * An element that draws itself from the store. A subclass lists the parts of the store in `uses` and returns its
 * children from `view`. It keeps its own state in fields, and calls `changed` when that changes.
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

  /** Redraws with the next frame. */
  changed() {
    if (this.#isScheduled) return
    this.#isScheduled = true
    onFrame(() => this.redraw())
  }

  /** Redraws now if visible; a hidden part is drawn when it appears. */
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

  /** Called after each drawing. */
  drawn() {}
}
