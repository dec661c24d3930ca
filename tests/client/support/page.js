// SPDX-License-Identifier: MIT
// A minimal page for scripts that call the set: a document with one script, synchronous requests, WebSockets.
import {execFileSync} from 'node:child_process'
import vm from 'node:vm'
import {NodeWebSocket} from '../../../virtualtv/console/client/node-websocket.js'

// Makes a synchronous request for the page. Arguments: the method, the address, the headers and the body.
const requester = `
const [method, address, headers, body] = process.argv.slice(1)
const response = await fetch(address, {method, headers: JSON.parse(headers), body: body || undefined})
process.stdout.write(JSON.stringify({status: response.status, text: await response.text()}))`

class SynchronousRequest {
  #head
  #headers = {}
  status = 0

  open(method, address, isAsynchronous) {
    if (isAsynchronous) throw new Error('a synchronous request is wanted')
    this.#head = [method, address]
  }

  setRequestHeader(name, value) {
    this.#headers[name] = value
  }

  send(body) {
    const words = ['--input-type=module', '-e', requester, ...this.#head, JSON.stringify(this.#headers), body]
    const {status, text} = JSON.parse(execFileSync(process.execPath, words, {stdio: ['ignore', 'pipe', 'ignore']}))
    this.status = status
    this.responseText = text
  }
}

export class Page {
  elements = new Map()
  warnings = []
  sockets = []
  #listeners = {}

  constructor() {
    const page = this
    class PageSocket extends NodeWebSocket {
      constructor(url) {
        super(url)
        page.sockets.push(this)
      }
    }
    this.globals = vm.createContext({
      URL, Reflect, WebSocket: PageSocket, XMLHttpRequest: SynchronousRequest,
      console: {...console, warn: text => this.warnings.push(text)},
      location: {origin: 'http://localhost:5173'},
      addEventListener: (type, listener) => this.#listeners[type] = listener,
      document: {currentScript: null, getElementById: id => this.element(id)},
    })
  }

  element(id) {
    if (!this.elements.has(id)) this.elements.set(id, {})
    return this.elements.get(id)
  }

  /** Runs a classic script as if it came from an address. */
  run(text, address) {
    this.globals.document.currentScript = address ? {src: address} : null
    try {
      return vm.runInContext(text, this.globals)
    } finally {
      this.globals.document.currentScript = null
    }
  }

  /** Loads a classic script. */
  async load(address) {
    return this.run(await (await fetch(address)).text(), address)
  }

  tell(type) {
    this.#listeners[type]({type})
  }

  close() {
    for (const socket of this.sockets) socket.close()
  }
}
