// SPDX-License-Identifier: MIT
// The page in a browser, a TV of its own behind it, and a client beside it that tells what the page has done. With
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

/** Has one browser for all tests of a file, and ends the servers that they leave. */
export function useBrowser() {
  before(openBrowser)
  after(async () => {
    await closeBrowser()
    endServers()
  })
}

/** What a browser complains of while a page has no server: each try to connect. */
export const brokenConnection = /WebSocket connection to .* failed/

/** A page that shows a TV. */
export class Console {
  /** What the page has complained of: errors on its console, uncaught ones, what its policy forbids. */
  errors = []
  /** What it may complain of; such a complaint may come late. @type {RegExp | undefined} */
  tolerated
  #bridge

  /**
   * @param {{options?: string[], size?: {width: number, height: number}, scheme?: 'light' | 'dark', server?: any,
   *   token?: string, isLetIn?: boolean, before?: () => void, prepare?: (page: any) => Promise<void>}} how  with a server it is
   *   that one, else a new one with these options; `before` runs in the page before its first line, `prepare` here before it is
   *   opened
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
      await made.page.getByRole('img', {name: 'App space'}).waitFor()  // the state of the TV is known
      made.tv ??= await made.connect()
    }
    return made
  }

  /** Another client of the TV that the page shows. */
  async connect(options = {}) {
    if (!onSite) return connect(this.server.address, options)
    this.#bridge ??= await Bridge.to(this.page)
    return this.#bridge.connect(options)
  }

  /** Has the set take a text as one request, of a client that only posts. */
  async post(text) {
    if (onSite) await this.page.evaluate(request => globalThis[Symbol.for('emp-window/site')].post(request), text)
    else await fetch(`${this.server.address}/rpc`, {method: 'POST', headers: {'Content-Type': 'application/json'}, body: text})
  }

  /** Waits until the timeline shows all that has happened so far: its events come on another connection than a test's calls. */
  async caughtUp() {
    const {number} = await this.tv.call('events.subscribe', {topics: ['session']})
    await this.page.evaluate(async last => {
      const {timeline} = await import(new URL('page/timeline-log.js', location.href).href)
      const bar = document.querySelector('emp-timeline-bar')
      while (timeline.last < last || !bar.count.endsWith(` of ${timeline.entries.length}`)) await new Promise(requestAnimationFrame)
    }, number)
  }

  /** A pane, by its name. */
  pane(name) {
    return this.page.locator(`section[id="${name.toLowerCase().replace(' ', '-')}"]`)
  }

  /** Brings a pane into sight. */
  async show(name) {
    const tab = this.page.getByRole('tab', {name, exact: true})
    if (await tab.count() > 0) await tab.click()
    return this.pane(name)
  }

  /** Closes page and TV. Fails where the page has complained. */
  async close() {
    if (onSite) await this.tv?.close()  // it is in the page
    await this.page.context().close()
    await this.tv?.close()
    await this.server.kill()
    assert.deepEqual(this.errors.filter(text => !this.tolerated?.test(text)), [])
  }
}
