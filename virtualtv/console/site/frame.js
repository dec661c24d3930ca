// SPDX-License-Identifier: MIT
/*
 * Precedes the code of window.js on a site: defines how an app in a frame of the TV's page calls the set of that page.
 */
(() => {
  'use strict'

  /** The set of an enclosing page, across any number of frames. */
  function tab() {
    for (let window = globalThis; window !== window.parent; window = window.parent) {
      try {
        const found = window.parent[Symbol.for('emp-window/site')]
        if (found) return found
      } catch {
        break  // a page of another origin
      }
    }
    return undefined
  }

  globalThis[Symbol.for('emp-window/transport')] = base => {
    const failed = (message, more) => new globalThis[Symbol.for('emp-window/2')].EmpConnectionError(message, more)
    const found = () => {
      const there = tab()
      if (!there) throw failed(`no TV was found: the set is in the tab of ${base}/, and only apps in a frame of that page can use it. tv.js gives an app a set of its own`)
      return there
    }
    return {
      post(body, session) {
        const there = found()
        try {
          return {status: 200, text: there.post(body, session)}
        } catch (cause) {
          throw failed(cause.message, {cause, sent: cause.sent ?? true})
        }
      },
      adopt(session) {
        this.release()
        this.let = found().hold(session, globalThis)
      },
      release() {
        this.let?.()
        this.let = undefined
      },
    }
  }
})()
