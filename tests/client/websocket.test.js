// SPDX-License-Identifier: MIT
// Tests the WebSocket client for Node with another implementation, and with a peer that violates the protocol.
import assert from 'node:assert/strict'
import {createHash} from 'node:crypto'
import {once} from 'node:events'
import net from 'node:net'
import {after, test} from 'node:test'
import {NodeWebSocket} from '../../virtualtv/console/client/node-websocket.js'
import {ws} from './support/packages.js'
import {until} from './support/wait.js'

const cleanups = []
after(() => cleanups.forEach(cleanup => cleanup()))

/** A server of the other implementation. @return its url */
async function serve(onConnection, options = {}) {
  const server = new ws.WebSocketServer({host: '127.0.0.1', port: 0, ...options})
  cleanups.push(() => {
    for (const client of server.clients) client.terminate()
    server.close()
  })
  server.on('connection', onConnection)
  await once(server, 'listening')
  return `ws://127.0.0.1:${server.address().port}/`
}

const handshake = key => [
  'HTTP/1.1 101 Switching Protocols', 'Upgrade: websocket', 'Connection: keep-alive, Upgrade', `Sec-WebSocket-Accept: ${key}`]

/**
 * A server that completes the handshake and then uses the socket freely.
 * @param head  lines of its answer  @param early  frames that come with it
 */
async function serveRaw(onUpgrade, head = handshake, early = '') {
  const server = net.createServer(socket => {
    socket.on('error', () => {})
    cleanups.push(() => socket.destroy())
    let request = ''
    const read = chunk => {
      request += chunk.toString('latin1')
      if (!request.includes('\r\n\r\n')) return
      socket.off('data', read)
      const key = /Sec-WebSocket-Key: (.*)\r\n/i.exec(request)[1]
      const accept = createHash('sha1').update(`${key}258EAFA5-E914-47DA-95CA-C5AB0DC85B11`).digest('base64')
      socket.write(Buffer.concat([Buffer.from(`${head(accept).join('\r\n')}\r\n\r\n`), Buffer.from(early)]))
      onUpgrade(socket)
    }
    socket.on('data', read)
  }).listen(0, '127.0.0.1')
  cleanups.push(() => server.close())
  await once(server, 'listening')
  return `ws://127.0.0.1:${server.address().port}/`
}

const opened = socket => new Promise((resolve, reject) => {
  socket.addEventListener('open', resolve)
  socket.addEventListener('error', event => reject(event.error))
})
const closed = socket => new Promise(resolve => socket.addEventListener('close', resolve))

/** A frame as a server sends it. */
function frame(first, payload, {length = payload.length} = {}) {
  const bytes = Buffer.from(payload)
  if (length < 126) return Buffer.concat([Buffer.from([first, length]), bytes])
  const head = Buffer.alloc(4)
  head[0] = first
  head[1] = 126
  head.writeUInt16BE(length, 2)
  return Buffer.concat([head, bytes])
}

test('texts and bytes of all lengths come back as they were sent', async () => {
  const url = await serve(peer => peer.on('message', (data, isBinary) => peer.send(data, {binary: isBinary})))
  const socket = new NodeWebSocket(url)
  await opened(socket)
  const received = []
  socket.onmessage = ({data}) => received.push(data)
  const texts = [0, 1, 125, 126, 127, 65535, 65536, 3_000_000].map(length => 'ä'.repeat(length >> 1) + 'x'.repeat(length & 1))
  for (const text of texts) socket.send(text)
  socket.send(new Uint8Array([0, 255, 128]))
  await until(() => received.length === texts.length + 1)
  assert.deepEqual(received.slice(0, -1), texts)
  assert.deepEqual(received.at(-1), new Uint8Array([0, 255, 128]))
  socket.close(1000)
  const {code, wasClean} = await closed(socket)
  assert.deepEqual({code, wasClean}, {code: 1000, wasClean: true})
})

test('a 64 MiB message arrives', async () => {
  const url = await serve(peer => peer.send('x'.repeat(64 << 20)))
  const socket = new NodeWebSocket(url)
  const [{data}] = await once(socket, 'message')
  assert.equal(data.length, 64 << 20)
  socket.close()
})

test('fragments are joined, also where a character is cut and a ping stands between', async () => {
  const pongs = []
  const url = await serve(peer => {
    peer.on('pong', data => pongs.push(data.toString()))
    const bytes = Buffer.from('Φάρος')
    peer.send(bytes.subarray(0, 1), {fin: false, binary: false})
    peer.ping('between')
    for (const byte of bytes.subarray(1, -1)) peer.send(Buffer.from([byte]), {fin: false, binary: false})
    peer.send(bytes.subarray(-1), {fin: true, binary: false})
  })
  const socket = new NodeWebSocket(url)
  const [{data}] = await once(socket, 'message')
  assert.equal(data, 'Φάρος')
  await until(() => pongs.length === 1)
  assert.deepEqual(pongs, ['between'])
  socket.close()
})

test('frames that come a byte at a time are read', async () => {
  const url = await serveRaw(async socket => {
    for (const byte of Buffer.concat([frame(0x81, 'a'.repeat(300)), frame(0x81, 'end')])) {
      socket.write(Buffer.from([byte]))
      await new Promise(setImmediate)
    }
  })
  const socket = new NodeWebSocket(url)
  const received = []
  socket.onmessage = ({data}) => received.push(data)
  await until(() => received.length === 2)
  assert.deepEqual(received, ['a'.repeat(300), 'end'])
  socket.close()
})

test('messages that come with the handshake are told after it', async () => {
  const url = await serveRaw(() => {}, handshake, frame(0x81, 'first'))
  const told = []
  const socket = new NodeWebSocket(url)
  socket.onopen = () => told.push('open')
  socket.onmessage = ({data}) => told.push(data)
  await until(() => told.length === 2)
  assert.deepEqual(told, ['open', 'first'])
  socket.close()
})

test('the peer closes with a code and a reason', async () => {
  const url = await serve(peer => peer.close(1013, 'too slow'))
  const {code, reason, wasClean} = await closed(new NodeWebSocket(url))
  assert.deepEqual({code, reason, wasClean}, {code: 1013, reason: 'too slow', wasClean: true})
})

test('a connection that breaks is closed with 1006', async () => {
  const url = await serve(peer => peer.terminate())
  const {code, wasClean} = await closed(new NodeWebSocket(url))
  assert.deepEqual({code, wasClean}, {code: 1006, wasClean: false})
})

test('a peer that does not finish the close handshake is cut off', async () => {
  const url = await serveRaw(() => {})
  const socket = new NodeWebSocket(url)
  await opened(socket)
  const start = performance.now()
  socket.close(3000, 'bye')
  assert.equal((await closed(socket)).code, 1006)
  assert.ok(performance.now() - start > 1500)
})

test('nobody listens, or not a WebSocket server: the error says so', async () => {
  await assert.rejects(opened(new NodeWebSocket('ws://127.0.0.1:1/')), /ECONNREFUSED/)
  const refusing = await serve(() => {}, {verifyClient: (info, done) => done(false, 401, 'a token is wanted')})
  await assert.rejects(opened(new NodeWebSocket(refusing)), {message: /status 401: a token is wanted/, status: 401})
  const wrongKey = await serveRaw(() => {}, () => handshake('AAAA'))
  await assert.rejects(opened(new NodeWebSocket(wrongKey)), /does not shake hands/)
  const extension = await serveRaw(() => {}, key => [...handshake(key), 'Sec-WebSocket-Extensions: permessage-deflate'])
  await assert.rejects(opened(new NodeWebSocket(extension)), /does not shake hands/)
})

// Violations of the protocol, each with the close code that the peer receives.
const violations = {
  'a masked frame': [[0x81, 0x81, 1, 2, 3, 4, 5], 1002],
  'a reserved bit': [[0xC1, 1, 0x61], 1002],
  'an unknown opcode': [[0x83, 0], 1002],
  'an unknown control opcode': [[0x8B, 0], 1002],
  'a ping in fragments': [[0x09, 0], 1002],
  'a ping of 126 bytes': [[0x89, 126, 0, 126, ...Array(126).fill(0)], 1002],
  'a continuation of nothing': [[0x80, 1, 0x61], 1002],
  'a text within a fragmented text': [[0x01, 1, 0x61, 0x81, 1, 0x61], 1002],
  'a length of 126 that fits in 7 bits': [[0x81, 126, 0, 1, 0x61], 1002],
  'a length of 127 that fits in 16 bits': [[0x81, 127, 0, 0, 0, 0, 0, 0, 0, 1, 0x61], 1002],
  'a length beyond 63 bits': [[0x81, 127, 255, 255, 255, 255, 255, 255, 255, 255], 1009],
  'a text that is not UTF-8': [[0x81, 1, 0xFF], 1007],
  'half a surrogate pair in UTF-8': [[0x81, 3, 0xED, 0xA0, 0x80], 1007],
  'a character cut at the end': [[0x01, 1, 0xC3, 0x80, 0], 1007],
  'a close frame of one byte': [[0x88, 1, 3], 1002],
  'a close code that must not be sent': [[0x88, 2, 0x03, 0xED], 1002],
  'a close code of nobody': [[0x88, 2, 0x27, 0x0F], 1002],
  'a close reason that is not UTF-8': [[0x88, 3, 0x03, 0xE8, 0xFF], 1007],
}
for (const [what, [bytes, code]] of Object.entries(violations)) {
  test(`${what} ends the connection with ${code}`, async () => {
    const sent = []
    const url = await serveRaw(socket => {
      socket.on('data', chunk => sent.push(chunk))
      socket.on('end', () => socket.end())
      socket.write(Buffer.from(bytes))
    })
    const socket = new NodeWebSocket(url)
    const messages = []
    socket.onmessage = ({data}) => messages.push(data)
    const event = await closed(socket)
    assert.deepEqual({code: event.code, messages}, {code: 1006, messages: []})
    const reply = Buffer.concat(sent)
    assert.equal(reply[0], 0x88)
    const mask = reply.subarray(2, 6)
    assert.equal(((reply[6] ^ mask[0]) << 8) | (reply[7] ^ mask[1]), code)
  })
}

test('a message longer than wanted ends the connection with 1009', async () => {
  let code
  const url = await serve(peer => {
    peer.on('close', given => code = given)
    for (let i = 0; i < 11; ++i) peer.send('x'.repeat(10), {fin: i === 10})
  })
  await closed(new NodeWebSocket(url, {mostPayload: 100}))
  await until(() => code !== undefined)
  assert.equal(code, 1009)
})

test('pings of a peer that does not read are not piled up', async () => {
  const url = await serveRaw(async peer => {
    peer.pause()
    const pings = Buffer.concat(Array(5000).fill(frame(0x89, 'x'.repeat(125))))
    for (let i = 0; i < 20; ++i) peer.write(pings)
    peer.write(frame(0x81, 'end'))
  })
  const socket = new NodeWebSocket(url)
  const [{data}] = await once(socket, 'message')
  assert.equal(data, 'end')
  assert.ok(socket.bufferedAmount < 128 * 1024, `${socket.bufferedAmount} bytes wait`)
})
