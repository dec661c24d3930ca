// SPDX-License-Identifier: MIT
/*
 * A WebSocket client (RFC 6455) over node:http, for Node before 22, which has none of its own. It has the part of the
 * standard interface that client.js uses, without extensions and subprotocols. Listeners receive only whole messages.
 */
import {createHash, randomBytes} from 'node:crypto'
import http from 'node:http'
import https from 'node:https'

const acceptSuffix = '258EAFA5-E914-47DA-95CA-C5AB0DC85B11'
const closePatience = 2000  // ms until a peer that does not finish the close handshake is disconnected
const mostPongBacklog = 64 * 1024  // unsent bytes beyond which pings of a peer that does not read are not answered

const Opcode = {continuation: 0, text: 1, binary: 2, close: 8, ping: 9, pong: 10}

/** The peer violated the protocol; `code` is the close code for that. */
class ProtocolError extends Error {
  constructor(code, message) {
    super(message)
    this.code = code
  }
}

/** A frame from a client: masked, unfragmented. */
export function frame(opcode, payload) {
  const extended = payload.length < 126 ? 0 : payload.length < 65536 ? 2 : 8
  const start = 2 + extended + 4
  const bytes = Buffer.allocUnsafe(start + payload.length)
  bytes[0] = 0x80 | opcode
  bytes[1] = 0x80 | (extended === 0 ? payload.length : extended === 2 ? 126 : 127)
  if (extended === 2) bytes.writeUInt16BE(payload.length, 2)
  if (extended === 8) bytes.writeBigUInt64BE(BigInt(payload.length), 2)
  const mask = randomBytes(4)
  mask.copy(bytes, 2 + extended)
  for (let at = 0; at < payload.length; ++at) bytes[start + at] = payload[at] ^ mask[at & 3]
  return bytes
}

/** Received bytes that are not read yet. */
class Inbox {
  #chunks = []
  size = 0

  add(chunk) {
    this.#chunks.push(chunk)
    this.size += chunk.length
  }

  /** The next bytes; undefined until all of them have arrived. */
  take(count) {
    if (count > this.size) return undefined
    this.size -= count
    const parts = []
    while (count > 0) {
      const chunk = this.#chunks[0]
      parts.push(chunk.subarray(0, count))
      if (chunk.length > count) this.#chunks[0] = chunk.subarray(count)
      else this.#chunks.shift()
      count -= parts.at(-1).length
    }
    return parts.length === 1 ? parts[0] : Buffer.concat(parts)
  }
}

/** Assembles bytes to frames and frames to messages, and checks both. */
class Reader {
  #inbox = new Inbox()
  #mostPayload
  #head  // {final, opcode, lengthBytes, length} of the incoming frame, as far as known
  #parts = []  // fragments of the incoming message
  #joined = 0  // their bytes
  #kind  // its opcode

  constructor(mostPayload) {
    this.#mostPayload = mostPayload
  }

  add(chunk) {
    this.#inbox.add(chunk)
  }

  /** The next message or control frame, {opcode, payload}; undefined until more bytes arrive. */
  next() {
    for (;;) {
      const frame = this.#nextFrame()
      if (frame === undefined) return undefined
      if (frame.opcode >= Opcode.close) return frame
      const message = this.#join(frame)
      if (message) return message
    }
  }

  #nextFrame() {
    if (!this.#readHead() || !this.#readLength()) return undefined
    const {final, opcode, length} = this.#head
    const payload = this.#inbox.take(length)
    if (payload === undefined) return undefined
    this.#head = undefined
    return {final, opcode, payload}
  }

  #readHead() {
    if (this.#head) return true
    const bytes = this.#inbox.take(2)
    if (bytes === undefined) return false
    const opcode = bytes[0] & 0x0F
    const final = (bytes[0] & 0x80) !== 0
    const length = bytes[1] & 0x7F
    if (bytes[0] & 0x70) throw new ProtocolError(1002, 'a reserved bit is set')
    if (bytes[1] & 0x80) throw new ProtocolError(1002, 'a frame of the server is masked')
    if (!Object.values(Opcode).includes(opcode)) throw new ProtocolError(1002, `there is no opcode ${opcode}`)
    if (opcode >= Opcode.close && (!final || length > 125)) {
      throw new ProtocolError(1002, 'a control frame is in fragments or has more than 125 bytes')
    }
    if (opcode < Opcode.close && (opcode === Opcode.continuation) !== (this.#kind !== undefined)) {
      throw new ProtocolError(1002, 'a fragment does not belong to the message before it')
    }
    this.#head = {final, opcode, lengthBytes: length === 126 ? 2 : length === 127 ? 8 : 0, length}
    return true
  }

  #readLength() {
    const head = this.#head
    if (head.lengthBytes > 0) {
      const bytes = this.#inbox.take(head.lengthBytes)
      if (bytes === undefined) return false
      head.length = head.lengthBytes === 2 ? bytes.readUInt16BE() : Number(bytes.readBigUInt64BE())
      if (head.length < (head.lengthBytes === 2 ? 126 : 65536)) {
        throw new ProtocolError(1002, 'a length is written longer than it needs')
      }
      head.lengthBytes = 0
    }
    if (this.#joined + head.length <= this.#mostPayload) return true
    throw new ProtocolError(1009, `a message has more than ${this.#mostPayload} bytes`)
  }

  #join({final, opcode, payload}) {
    if (opcode !== Opcode.continuation) this.#kind = opcode
    this.#parts.push(payload)
    this.#joined += payload.length
    if (!final) return undefined
    const message = {opcode: this.#kind, payload: this.#parts.length === 1 ? payload : Buffer.concat(this.#parts)}
    this.#kind = undefined
    this.#parts = []
    this.#joined = 0
    return message
  }
}

function textOf(bytes) {
  try {
    return new TextDecoder('utf-8', {fatal: true, ignoreBOM: true}).decode(bytes)
  } catch {
    throw new ProtocolError(1007, 'a text is not UTF-8')
  }
}

/** True for a close code that may be sent in a frame. */
function mayBeSent(code) {
  return (code >= 3000 && code <= 4999) || (code >= 1000 && code <= 1014 && ![1004, 1005, 1006].includes(code))
}

/** Code and reason of a close frame. */
function readClose(payload) {
  if (payload.length === 0) return {code: 1005, reason: ''}
  const code = payload.length === 1 ? 0 : payload.readUInt16BE()
  if (!mayBeSent(code)) throw new ProtocolError(1002, 'a close frame has no valid code')
  return {code, reason: textOf(payload.subarray(2))}
}

function closePayload(code, reason = '') {
  if (code === undefined || code === 1005) return Buffer.alloc(0)
  const text = Buffer.from(reason)
  if (text.length > 123) throw new RangeError('the reason of a close has more than 123 bytes')
  return Buffer.concat([Buffer.from([code >> 8, code & 0xFF]), text])
}

function eventWith(type, members) {
  return Object.assign(new Event(type), members)
}

export class NodeWebSocket extends EventTarget {
  static CONNECTING = 0
  static OPEN = 1
  static CLOSING = 2
  static CLOSED = 3

  onopen = null
  onmessage = null
  onerror = null
  onclose = null
  readyState = NodeWebSocket.CONNECTING
  #request
  #socket
  #reader
  #closeSent = false
  #received  // {code, reason} of the peer's close frame
  #failure
  #timer

  /** @param url  ws: or wss:  @param mostPayload  bytes of the longest message; a longer one ends the connection */
  constructor(url, {mostPayload = 256 * 1024 * 1024} = {}) {
    super()
    this.url = String(url)
    this.#reader = new Reader(mostPayload)
    this.#shakeHands(new URL(url))
  }

  /** The bytes not yet passed to the system. */
  get bufferedAmount() {
    return this.#socket?.writableLength ?? 0
  }

  /** Sends a text, or bytes as a binary message. */
  send(data) {
    if (this.readyState === NodeWebSocket.CONNECTING) throw new Error('the WebSocket is not open yet')
    if (this.readyState !== NodeWebSocket.OPEN) return
    const isText = typeof data === 'string'
    const bytes = isText ? Buffer.from(data) : Buffer.from(data.buffer ?? data, data.byteOffset, data.byteLength)
    this.#socket.write(frame(isText ? Opcode.text : Opcode.binary, bytes))
  }

  close(code, reason) {
    if (code !== undefined && code !== 1000 && !(code >= 3000 && code <= 4999)) {
      throw new RangeError('a close code of an application is 1000 or from 3000 to 4999')
    }
    if (this.readyState >= NodeWebSocket.CLOSING) return
    if (this.readyState === NodeWebSocket.CONNECTING) {
      this.#fail(new Error('closed before the WebSocket was open'))
      return
    }
    this.readyState = NodeWebSocket.CLOSING
    this.#sendClose(closePayload(code, reason))
  }

  #shakeHands(url) {
    const key = randomBytes(16).toString('base64')
    const secure = url.protocol === 'wss:'
    const headers = {Connection: 'Upgrade', Upgrade: 'websocket', 'Sec-WebSocket-Version': '13', 'Sec-WebSocket-Key': key}
    const target = url.href.replace(/^ws/, 'http')
    this.#request = (secure ? https : http).request(target, {headers, agent: false})
    this.#request.on('error', error => this.#fail(error))
    this.#request.on('response', response => this.#refused(response))
    this.#request.on('upgrade', (response, socket, head) => this.#upgraded(key, response, socket, head))
    this.#request.end()
  }

  #refused(response) {
    let text = ''
    response.setEncoding('utf8')
    response.on('data', piece => text.length < 1000 && (text += piece))
    const tell = () => this.#fail(Object.assign(
      new Error(`status ${response.statusCode}: ${text.trim().slice(0, 500)}`), {status: response.statusCode}))
    response.on('end', tell)
    response.on('error', tell)
  }

  #upgraded(key, response, socket, head) {
    const wanted = createHash('sha1').update(key + acceptSuffix).digest('base64')
    const {upgrade, connection} = response.headers
    const names = (connection ?? '').toLowerCase().split(',').map(name => name.trim())
    this.#socket = socket
    socket.setNoDelay(true)
    socket.setTimeout(0)
    socket.on('error', error => this.#failure ??= error)
    socket.on('close', () => this.#closed())
    if (this.readyState !== NodeWebSocket.CONNECTING) {
      socket.destroy()
      return
    }
    if (upgrade?.toLowerCase() !== 'websocket' || !names.includes('upgrade') ||
        response.headers['sec-websocket-accept'] !== wanted || response.headers['sec-websocket-extensions'] ||
        response.headers['sec-websocket-protocol']) {
      this.#fail(new Error('the server does not shake hands as a WebSocket server does'))
      return
    }
    this.readyState = NodeWebSocket.OPEN
    this.#tell('open')
    socket.on('data', chunk => this.#take(chunk))
    socket.on('end', () => socket.end())
    if (head.length > 0) this.#take(head)
  }

  #take(chunk) {
    if (this.#received || this.#failure) return
    this.#reader.add(chunk)
    try {
      for (let message; !this.#received && (message = this.#reader.next());) this.#handle(message)
    } catch (error) {
      if (!(error instanceof ProtocolError)) throw error
      this.#fail(error)
    }
  }

  #handle({opcode, payload}) {
    if (opcode === Opcode.ping) {
      if (!this.#closeSent && this.bufferedAmount < mostPongBacklog) this.#socket.write(frame(Opcode.pong, payload))
    } else if (opcode === Opcode.close) {
      this.#received = readClose(payload)
      this.readyState = NodeWebSocket.CLOSING
      this.#sendClose(payload)
      this.#socket.end()
    } else if (opcode !== Opcode.pong) {
      const data = opcode === Opcode.text ? textOf(payload) : new Uint8Array(payload)
      if (this.readyState === NodeWebSocket.OPEN) this.#tell('message', {data})
    }
  }

  #sendClose(payload) {
    if (this.#closeSent) return
    this.#closeSent = true
    this.#socket.write(frame(Opcode.close, payload))
    this.#timer = setTimeout(() => this.#socket.destroy(), closePatience)
  }

  /** Ends the connection because of an error, with an error event that describes it, then a close event. */
  #fail(error) {
    if (this.readyState === NodeWebSocket.CLOSED) return
    this.#failure ??= error
    if (!this.#socket) {
      this.#request.destroy()
      queueMicrotask(() => this.#closed())
      return
    }
    this.readyState = NodeWebSocket.CLOSING
    if (!this.#closeSent && error instanceof ProtocolError) this.#sendClose(closePayload(error.code))
    this.#socket.end()
    this.#timer ??= setTimeout(() => this.#socket.destroy(), closePatience)
  }

  #closed() {
    if (this.readyState === NodeWebSocket.CLOSED) return
    this.readyState = NodeWebSocket.CLOSED
    clearTimeout(this.#timer)
    if (this.#failure) this.#tell('error', {error: this.#failure, message: this.#failure.message})
    const wasClean = this.#received !== undefined && !this.#failure
    const {code, reason} = wasClean ? this.#received : {code: 1006, reason: ''}
    this.#tell('close', {code, reason, wasClean})
  }

  #tell(type, members) {
    const event = eventWith(type, members)
    this[`on${type}`]?.(event)
    this.dispatchEvent(event)
  }
}
