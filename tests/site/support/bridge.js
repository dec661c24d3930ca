// SPDX-License-Identifier: MIT
// A client in the test for the set in a page of the site. Its messages pass through the page.
import {join} from 'node:path'
import {FileServer} from './files.js'

/** The site's folder, whose own client is used. */
export const folder = process.env.EMP_WINDOW_SITE
/** True when tests of the page run on the site. */
export const onSite = folder !== undefined

/** The headers of a server that isolate a page. */
export const isolating = {'Cross-Origin-Opener-Policy': 'same-origin', 'Cross-Origin-Embedder-Policy': 'require-corp'}

/** An option for tests that make no sense on a site, with the reason: `test(name, {skip: elsewhere(reason)}, ...)`. */
export const elsewhere = reason => onSite && reason

/** Serves the site with headers that isolate its page from the start. @return as `serve`, and `pages`, to which
 *  pages can be added by path */
export async function serveSite() {
  const server = await new FileServer({'/': folder}, isolating).listen()
  return {address: server.origin, port: server.port, pages: server.pages, kill: async () => server.close()}
}

const load = name => import(join(folder, name))

/** Opens a port of the set. Runs in the page. */
function openPort(id) {
  const port = globalThis[Symbol.for('emp-window/site')].port()
  port.onmessage = ({data}) => globalThis.tellTest(id, data)
  globalThis.testPorts ??= new Map()
  globalThis.testPorts.set(id, port)
}

/** Clients of the set in a page. After a reload of the page they reconnect to its new set. */
export class Bridge {
  #page
  #ports = new Map()
  #count = 0

  static async to(page) {
    const bridge = new Bridge()
    bridge.#page = page
    await page.exposeFunction('tellTest', (id, data) => bridge.#ports.get(id)?.onmessage({data}))
    page.on('framenavigated', frame => frame === page.mainFrame() && bridge.#cut())
    page.on('close', () => bridge.#cut())
    return bridge
  }

  /** Connects to the set, as `connect` does to a server. */
  async connect(options = {}) {
    const [{connect}, {PortSocket}] = await Promise.all([load('client.js'), load('port.js')])
    return connect(async () => new PortSocket(await this.#port()), {firstPause: 50, ...options})
  }

  /** A port for PortSocket, whose other end is in the page. */
  async #port() {
    await this.#page.waitForFunction(() => globalThis[Symbol.for('emp-window/site')])
    const id = ++this.#count
    const port = {
      postMessage: data => this.#run(([id, data]) => globalThis.testPorts.get(id)?.postMessage(data), [id, data]),
      close: () => this.#ports.delete(id),
    }
    this.#ports.set(id, port)
    setImmediate(() => this.#run(openPort, id))  // after PortSocket has started to listen
    return port
  }

  /** Errors are ignored: when the page is gone, the connection ends anyway. */
  #run(work, argument) {
    this.#page.evaluate(work, argument).catch(() => {})
  }

  #cut() {
    for (const port of this.#ports.values()) port.onmessage({data: {closed: {code: 1006, reason: 'the page is gone'}}})
    this.#ports.clear()
  }
}
