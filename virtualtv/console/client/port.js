// SPDX-License-Identifier: MIT
/*
 * Carries a client's messages over a MessagePort: the set is in a worker, the client in the page. A text is a message of
 * the wire; an object says that the connection is open or closed.
 */
import './window.js'

const {setOf} = globalThis[Symbol.for('emp-window/2')]

/**
 * Serves a client at the other end of a port, until either side closes the connection.
 * @param tv  a result of `createTv` on this side
 */
export function servePort(tv, port) {
  let connection
  const end = closed => {
    connection?.close()
    connection = undefined
    port.postMessage({closed})
    port.close()
  }
  port.onmessage = ({data}) => {
    if (data.close) return end({code: 1000, reason: ''})
    try {
      connection?.send(data)
    } catch (error) {
      end({code: 1011, reason: error.message})
    }
  }
  try {
    connection = setOf(tv).open(text => port.postMessage(text))
    port.postMessage({open: true})
  } catch (error) {
    end({code: 1011, reason: error.message})
  }
}

const patience = 2000  // ms to wait for the other end's confirmation, which a terminated worker never sends

/** The client's end: `connect(() => new PortSocket(port))`. A port serves one connection. */
export class PortSocket {
  readyState = 0
  #port
  #patience

  constructor(port) {
    this.#port = port
    port.onmessage = ({data}) => this.#take(data)
  }

  send(text) {
    this.#port.postMessage(text)
  }

  close() {
    if (this.readyState >= 2) return
    this.readyState = 2
    this.#port.postMessage({close: true})
    this.#patience = setTimeout(() => this.#take({closed: {code: 1006, reason: ''}}), patience)
  }

  #take(data) {
    if (typeof data === 'string') {
      if (this.readyState === 1) this.onmessage?.({data})
    } else if (data.open) {
      if (this.readyState !== 0) return
      this.readyState = 1
      this.onopen?.()
    } else {
      this.readyState = 3
      clearTimeout(this.#patience)
      this.#port.close()
      this.onclose?.(data.closed)
    }
  }
}
