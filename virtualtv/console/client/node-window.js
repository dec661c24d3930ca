// SPDX-License-Identifier: MIT
/*
 * The worker behind `installWindow` in Node. It makes the requests that the main thread waits for. It also holds the
 * WebSocket that keeps the session alive, and answers its pings while the main thread is busy.
 */
import http from 'node:http'
import https from 'node:https'
import {workerData} from 'node:worker_threads'
import {NodeWebSocket} from './node-websocket.js'
import './window.js'

const {socketUrl} = globalThis[Symbol.for('emp-window/2')]
const {base, token, signal, port} = workerData
const library = base.startsWith('https:') ? https : http
const agent = new library.Agent({keepAlive: true})
let socket

function answer(message) {
  port.postMessage(message)
  Atomics.store(signal, 0, 1)
  Atomics.notify(signal, 0)
}

function post({body, session}) {
  const headers = {'Content-Type': 'application/json', 'Content-Length': Buffer.byteLength(body)}
  if (session !== undefined) headers['Emp-Session'] = session
  if (token !== undefined) headers.Authorization = `Bearer ${token}`
  const fail = error =>
    answer({error: error.message || error.code || String(error), sent: !/^(connect|getaddrinfo)$/.test(error.syscall)})
  const request = library.request(`${base}/rpc`, {method: 'POST', headers, agent}, response => {
    let text = ''
    response.setEncoding('utf8')
    response.on('data', piece => text += piece)
    response.on('end', () => answer({status: response.statusCode, text}))
    response.on('error', fail)
  })
  request.on('error', fail)
  request.end(body)
}

port.on('message', message => {
  if (message.post) {
    post(message.post)
    return
  }
  socket?.close()
  socket = message.adopt === undefined ? undefined : new NodeWebSocket(socketUrl(base, {session: message.adopt, token}))
})
answer({})
