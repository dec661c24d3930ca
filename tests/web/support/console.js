// SPDX-License-Identifier: MIT
// The page in a browser, on a TV of its own, and a client beside it that sees what the page has done. With
// EMP_WINDOW_SITE the page is that of the site in this folder, whose TV is in the tab.
import assert from 'node:assert/strict'
import {after, before} from 'node:test'
import {connect} from '../../../virtualtv/console/client/client.js'
import {startBrowser} from '../../client/support/browser.js'
import {endServers, serve} from '../../client/support/server.js'
import {Bridge, onSite, serveSite} from '../../site/support/bridge.js'

let browser

export async function openBrowser() {
  browser = await startBrowser()
}

export async function closeBrowser() {
  await browser?.close()
}

/** Starts one browser for all tests of a file, and ends the servers that they leave. */
export function useBrowser() {
  before(openBrowser)
  after(async () => {
    await closeBrowser()
    endServers()
  })
}

/** The complaint of a browser about each attempt to connect while the page has no server. */
export const brokenConnection = /WebSocket connection to .* failed/

/** A page that shows a TV. */
export class Console {
  /** The complaints about the page: errors on its console, uncaught errors, and violations of its policy. */
  errors = []
  /** Complaints that a test accepts, even late ones. @type {RegExp | undefined} */
  tolerated
  #bridge

  /**
   * @param {{options?: string[], size?: {width: number, height: number}, scheme?: 'light' | 'dark', server?: any,
   *   token?: string, isLetIn?: boolean, before?: () => void, prepare?: (page: any) => Promise<void>}} how  `server`
   *   is the server to use; without it a new one is started with `options`. `before` runs in the page before its first
   *   line, `prepare` runs here before the page is opened
   */
  static async open({options = [], size = {width: 1280, height: 720}, scheme = 'light', server, token, isLetIn = true, before, prepare} = {}) {
    const made = new Console()
    made.server = server ?? await (onSite ? serveSite() : serve({options}))
    if (isLetIn && !onSite) made.tv = await made.connect({token})
    made.page = await browser.page(undefined, onSite ? {serviceWorkers: 'block'} : {})
    if (before) await made.page.addInitScript(before)
    await prepare?.(made.page)
    await made.page.setViewportSize(size)
    await made.page.emulateMedia({colorScheme: scheme, reducedMotion: 'reduce'})
    made.page.on('console', message => message.type() === 'error' && made.errors.push(message.text()))
    made.page.on('pageerror', error => made.errors.push(error.stack))
    await made.page.goto(`${made.server.address}/${token ? `#token=${token}` : ''}`)
    if (isLetIn) {
      await made.page.getByText(/\d+ engines?, \d+ clients?/).waitFor()
      await made.page.getByRole('img', {name: 'App space'}).waitFor()  // the page knows the TV's state now
      made.tv ??= await made.connect()
    }
    return made
  }

  /** Connects another client to the TV that the page shows. */
  async connect(options = {}) {
    if (!onSite) return connect(this.server.address, options)
    this.#bridge ??= await Bridge.to(this.page)
    return this.#bridge.connect(options)
  }

  /** Sends a text to the set as one request, as a client that only posts. */
  async post(text) {
    if (onSite) await this.page.evaluate(request => globalThis[Symbol.for('emp-window/site')].post(request), text)
    else await fetch(`${this.server.address}/rpc`, {method: 'POST', headers: {'Content-Type': 'application/json'}, body: text})
  }

  /** Waits until the timeline shows everything so far. Its events come on another connection than a test's calls. */
  async caughtUp() {
    const {number} = await this.tv.call('events.subscribe', {topics: ['session']})
    await this.page.evaluate(async last => {
      const {timeline} = await import(new URL('page/timeline-log.js', location.href).href)
      const bar = document.querySelector('emp-timeline-bar')
      while (timeline.last < last || !bar.count.endsWith(` of ${timeline.entries.length}`)) await new Promise(requestAnimationFrame)
    }, number)
  }

  /** A pane by its name. */
  pane(name) {
    return this.page.locator(`section[id="${name.toLowerCase().replace(' ', '-')}"]`)
  }

  /** Shows a pane. */
  async show(name) {
    const tab = this.page.getByRole('tab', {name, exact: true})
    if (await tab.count() > 0) await tab.click()
    return this.pane(name)
  }

  /** Closes page and TV. Fails if there were complaints about the page. */
  async close() {
    if (onSite) await this.tv?.close()  // its set is in the page
    await this.page.context().close()
    await this.tv?.close()
    await this.server.kill()
    assert.deepEqual(this.errors.filter(text => !this.tolerated?.test(text)), [])
  }
}
