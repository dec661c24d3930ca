// SPDX-License-Identifier: MIT
// A real browser without a screen, and a web server for the pages of other origins that it opens.
import {once} from 'node:events'
import http from 'node:http'
import {after, afterEach, before, beforeEach} from 'node:test'
import {playwright} from './packages.js'
import {endServers} from './server.js'

const program = process.env.CHROMIUM ?? '/usr/bin/chromium'
const patience = 60_000  // ms, on a machine that is busy with other tests

/** Objects for the tests of a file that has called `useBrowser`: a site, and a separate page for each test. */
export let site
export let page
let browser

/** Starts a browser for the tests of a file. The page of a test is closed before the file's own clean-up after each test. */
export function useBrowser() {
  before(async () => {
    [browser, site] = await Promise.all([startBrowser(), new Site().listen()])
  })
  after(async () => {
    await browser?.close()
    site?.close()
    endServers()
  })
  beforeEach(async () => {
    page = await browser.page()
  })
  afterEach(() => page.context().close())
}

/** Another tab beside the test's page. */
export const newTab = () => browser.page(page.context())

/** Starts a browser without access to other machines. Names that end in .test resolve to this machine. */
export async function startBrowser() {
  const browser = await playwright().chromium.launch({
    executablePath: program,
    timeout: patience,
    args: ['--host-resolver-rules=MAP *.test 127.0.0.1', '--disable-gpu', '--disable-quic', '--disable-background-networking',
      '--disable-component-update', '--disable-sync'],
  })
  return {
    /** A new tab, with storage and connections of its own unless it shares the context of another one. @param options  of a new one */
    async page(context, options) {
      const page = await (context ?? await browser.newContext(options)).newPage()
      page.setDefaultTimeout(patience)
      return page
    },
    version: () => browser.version(),
    close: () => browser.close(),
  }
}

/** A development server: answers with pages by their paths, on a separate port. */
export class Site {
  pages = new Map()

  async listen() {
    this.server = http.createServer((request, response) => {
      const page = this.pages.get(request.url)
      response.writeHead(page === undefined ? 404 : 200, {'Content-Type': 'text/html; charset=utf-8'})
      response.end(page)
    })
    this.server.listen(0, '127.0.0.1')
    await once(this.server, 'listening')
    this.port = this.server.address().port
    this.address = `http://127.0.0.1:${this.port}`
    this.pages.set('/', '<!doctype html><title>app</title>')
    return this
  }

  close() {
    this.server.closeAllConnections()
    this.server.close()
  }
}
