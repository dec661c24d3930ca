// SPDX-License-Identifier: MIT
/*
 * Sends the calls of a connected client and receives events. The caller provides the socket: a WebSocket to a server,
 * or an object with the same interface for a set in the same process.
 */
import './window.js'

const {EmpConnectionError, EmpRpcError, encode} = globalThis[Symbol.for('emp-window/2')]

const handshakePatience = 10_000  // ms until an attempt to connect is given up

/** Parses a message; undefined if it is not a JSON object. */
function objectIn(text) {
  try {
    const message = JSON.parse(text)
    return message instanceof Object ? message : undefined
  } catch {
    return undefined
  }
}

/**
 * Calls and events over a socket, which is replaced by a new one when it breaks. Calls in flight then fail, since a
 * call is never sent twice; calls made without a connection wait for the next one.
 */
export class Wire {
  isClosed = false
  #dial
  #socket  // set while it can be used
  #isReady = false  // the session is open, so calls may be sent
  #inFlight = new Map()  // {method, resolve, reject} by id
  #waiting = new Set()  // calls waiting for a connection
  #id = 0
  #pause
  #patience
  #pauses
  #welcome
  #lost
  #event

  /**
   * @param dial  returns a new socket, or a promise of one. It has the part of a WebSocket that Wire uses: onopen,
   *   onmessage with a text as `data`, onerror, onclose, send(text), close(code, reason), readyState. It must open in
   *   a later turn. With `isNear`, the connection attempt has no time limit.
   * @param base  name of the other end in messages
   * @param patience  ms for which calls wait for a connection
   * @param pauses  {first, longest}: ms before reconnecting; doubles with each failed attempt
   * @param welcome  called as welcome(ready, fail) when a socket has opened; other calls are sent after ready()
   * @param lost  called with the reason when a connection breaks
   * @param event  called with the parameters of each event
   */
  constructor({dial, base, patience, pauses, welcome, lost, event}) {
    this.base = base
    this.#dial = dial
    this.#patience = patience
    this.#pauses = pauses
    this.#welcome = welcome
    this.#lost = lost
    this.#event = event
  }

  get isReady() {
    return this.#isReady
  }

  /** Connects, and sends the waiting calls. Rejects if that is not possible. */
  async open() {
    const socket = await this.#dial()
    await new Promise((resolve, reject) => this.#shakeHands(socket, resolve, reject))
    for (const call of this.#waiting) {
      clearTimeout(call.timer)
      this.send(call)
    }
    this.#waiting.clear()
  }

  /** Makes a call once there is a connection. */
  call(method, params) {
    return new Promise((resolve, reject) => {
      const call = {method, params, resolve, reject}
      if (this.isClosed) {
        reject(new EmpConnectionError(`${method}: the connection to ${this.base} was closed`))
      } else if (this.#isReady) {
        this.send(call)
      } else {
        this.#wait(call)
      }
    })
  }

  /**
   * Sends a call {method, params, resolve, reject} on the current connection. Answers are delivered immediately, in
   * order.
   */
  send(call) {
    let text
    try {
      text = encode({jsonrpc: '2.0', id: ++this.#id, method: call.method, params: call.params})
    } catch (error) {
      call.reject(error)
      return
    }
    this.#inFlight.set(this.#id, call)
    try {
      this.#socket.send(text)
    } catch (error) {
      this.#inFlight.delete(this.#id)
      call.reject(error)
    }
  }

  close() {
    if (this.isClosed) return Promise.resolve()
    this.isClosed = true
    clearTimeout(this.#pause)
    const reason = `the connection to ${this.base} was closed`
    for (const call of this.#waiting) this.#fail(call, reason)
    this.#waiting.clear()
    const socket = this.#socket
    this.#break(reason)
    if (!socket || socket.readyState === 3) return Promise.resolve()
    return new Promise(resolve => {
      socket.onclose = () => resolve()
      socket.close(1000)
    })
  }

  #wait(call) {
    call.timer = setTimeout(() => {
      this.#waiting.delete(call)
      this.#fail(call, `there is no connection to ${this.base}${this.#patience > 0 ? `, for ${this.#patience} ms` : ''}`)
    }, this.#patience)
    this.#waiting.add(call)
  }

  #fail(call, reason, sent = false) {
    clearTimeout(call.timer)
    call.reject(new EmpConnectionError(`${call.method}: ${reason}`, {sent}))
  }

  #shakeHands(socket, resolve, reject) {
    let why = ''
    let status
    // A set in this process answers as soon as this thread is free, even after a long call or a stop in a debugger.
    const giveUp = socket.isNear ? undefined : setTimeout(() => {
      why = `no answer within ${handshakePatience} ms`
      ended({code: 1006, reason: ''})
      socket.close()
    }, handshakePatience)
    const ended = ({code, reason}) => {
      clearTimeout(giveUp)
      const wasReady = this.#isReady && this.#socket === socket
      const what = why || reason || `close code ${code}`
      if (this.#socket === socket) this.#break(`the connection to ${this.base} broke (${what})`)
      reject(new EmpConnectionError(`${this.base} can't be reached: ${what}`, {status}))
      if (wasReady) this.#reconnect()
    }
    const ready = () => {
      clearTimeout(giveUp)
      this.#isReady = true
      resolve()
    }
    socket.onerror = event => {
      why = event.message ?? ''
      status = event.error?.status
    }
    socket.onclose = ended
    socket.onmessage = ({data}) => this.#take(data)
    socket.onopen = () => {
      if (this.isClosed) {
        socket.close()
        return
      }
      this.#socket = socket
      this.#welcome(ready, error => {
        reject(error)
        socket.close()
      })
    }
  }

  /** Handles the loss of the connection: calls in flight may or may not have run, and fail. */
  #break(reason) {
    const wasReady = this.#isReady
    this.#socket = undefined
    this.#isReady = false
    const calls = [...this.#inFlight.values()]
    this.#inFlight.clear()
    for (const call of calls) this.#fail(call, reason, true)
    if (wasReady) this.#lost(reason)
  }

  /** Tries to connect again until it succeeds, with growing pauses that differ between clients. */
  #reconnect(attempt = 0) {
    if (this.isClosed) return
    const pause = Math.min(this.#pauses.longest, this.#pauses.first * 2 ** attempt) * (0.5 + Math.random() / 2)
    this.#pause = setTimeout(() => {
      this.open().catch(() => this.#reconnect(attempt + 1))
    }, pause)
  }

  #take(data) {
    const message = objectIn(data)
    if (!message) this.#socket?.close(4000, 'a message is no JSON-RPC')
    else if (message.method === 'event') this.#event(message.params)
    else if ('id' in message) this.#answer(message)
  }

  #answer({id, result, error}) {
    // The server could not read the call, so it does not know its id.
    if (id === null && this.#inFlight.size === 1) [id] = this.#inFlight.keys()
    const call = this.#inFlight.get(id)
    if (!call) {
      if (id === null) this.#socket?.close(4000, 'a call could not be read')
      return
    }
    this.#inFlight.delete(id)
    if (error) call.reject(new EmpRpcError(error, call.method))
    else call.resolve(result)
  }
}
