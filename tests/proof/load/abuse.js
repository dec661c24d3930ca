// SPDX-License-Identifier: MIT
// Many clients that misbehave at the same time, and their effect on one that behaves.
import {once} from 'node:events'
import net from 'node:net'
import {Worker} from 'node:worker_threads'
import {frame} from '../../../virtualtv/console/client/node-websocket.js'
import {Client, Server, mebibyte, until, wait} from './server.js'

const largest = 32 * mebibyte
const slow = 10
const idle = 100

async function open(server) {
  const socket = net.connect(server.port, '127.0.0.1')
  socket.on('error', () => {})
  await once(socket, 'connect')
  return socket
}

const handshake = 'GET /rpc HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: Upgrade\r\nUpgrade: websocket\r\n' +
  'Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n'

/** A raw connection after the handshake of WebSocket. */
async function upgraded(server) {
  const socket = await open(server)
  socket.write(handshake)
  await once(socket, 'data')
  return socket
}

/** Subscribes to everything and reads nothing from then on. */
async function slowReader(server) {
  const socket = await upgraded(server)
  socket.write(frame(1, Buffer.from('{"jsonrpc":"2.0","id":1,"method":"events.subscribe","params":[["*"]]}')))
  await once(socket, 'data')
  socket.pause()
  return socket
}

/** Sends a request byte by byte, slowly while the other clients are at work. */
async function byteAtATime(server, isOver) {
  const socket = await open(server)
  const body = '{"jsonrpc":"2.0","id":1,"method":"window.GetTVMode"}'
  const request = `POST /rpc HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/json\r\nContent-Length: ${body.length}\r\n\r\n${body}`
  let answer = ''
  socket.on('data', bytes => answer += bytes)
  for (const byte of request) {
    socket.write(byte)
    await wait(isOver() ? 0 : 10)
  }
  await until(() => answer.includes('"accepted":true'))
  socket.destroy()
  return answer.includes('"accepted":true')
}

/** Sends a message of the greatest length that the server accepts. @return whether the server answers it. */
async function largeMessage(server) {
  const socket = await upgraded(server)
  const head = '{"jsonrpc":"2.0","id":1,"method":"tv.state","params":{"more":"'
  const message = Buffer.alloc(largest, 'a')
  message.write(head)
  message.write('"}}', largest - 3)
  let answer = ''
  socket.on('data', bytes => answer += bytes)
  socket.write(frame(1, message))
  await until(() => answer.includes('-32602'))
  socket.destroy()
  return answer.includes('-32602')
}

const isClosed = socket => new Promise(resolve => {
  if (socket.destroyed || socket.readableEnded) return resolve(true)
  socket.resume()  // reads up to the end
  socket.once('close', () => resolve(true))
  setTimeout(() => resolve(false), 20_000)
})

/** @param messages  number of messages of the greatest length, all at once. @param lists  number of channel lists
 *  requested while slow readers read nothing; after about 500 the server closes a subscriber that does not read. */
export async function abuse(program, messages, lists) {
  const server = await Server.start(program)
  const good = new Worker(new URL('behaved.js', import.meta.url), {workerData: {port: server.port}})
  let isOver = false
  const idlers = await Promise.all(Array.from({length: idle}, () => open(server)))
  for (const socket of idlers.slice(idle / 2)) socket.write(handshake.slice(0, 40))
  const trickles = [...Array(20)].map(() => byteAtATime(server, () => isOver))
  const readers = await Promise.all(Array.from({length: slow}, () => slowReader(server)))
  const busy = await Client.connect(server)
  for (let at = 0; at < lists; ++at) await busy.call('window.GetFullChannelList')
  const taken = await Promise.all([...Array(messages)].map(() => largeMessage(server)))
  const memory = server.memory('VmHWM')
  isOver = true
  good.postMessage('end')
  const [times] = await once(good, 'message')
  const answered = (await Promise.all(trickles)).filter(Boolean).length
  const closed = (await Promise.all(readers.map(isClosed))).filter(Boolean).length
  for (const socket of [...idlers, ...readers]) socket.destroy()
  await busy.close()
  times.sort((left, right) => left - right)
  return {
    'messages of 32 MiB answered': taken.filter(Boolean).length,
    'slow readers closed': closed,
    'requests a byte at a time answered': answered,
    'mebibytes at most': Math.ceil(memory / mebibyte),
    'calls of one that behaves': times.length,
    'microseconds of its median call': Math.round(times[Math.floor(times.length / 2)] * 1000),
    'milliseconds of its slowest call': Math.ceil(times.at(-1)),
    'status of the server behind the abuse': await server.stop(),
  }
}
