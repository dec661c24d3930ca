// SPDX-License-Identifier: MIT
// A real browser without a screen, and a web server for the pages of other origins that it opens.
import {once} from 'node:events'
import http from 'node:http'
import {after, afterEach, before, beforeEach} from 'node:test'
import {playwright} from './packages.js'
import {endServers} from './server.js'

const program = process.env.CHROMIUM ?? '/usr/bin/chromium'
const patience = 60_000  // ms, on a machine that is busy with other tests

/** What the tests of a file have once it has called `useBrowser`: a site, and each test a page of its own. */
export let site
export let page
let browser

/** Has the tests of a file run with a browser. A test's page goes before what the file itself does behind each test. */
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

/** A browser that reaches no other machine. Names that end in .test are this one. */
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

/** A development server: answers pages by their paths, on a port of its own. */
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
