// SPDX-License-Identifier: MIT
// A server on a separate thread, for calls that the test's thread waits for. It opens sessions, refuses lines of the
// shell with the status in them, and breaks the connection on everything else.
import {once} from 'node:events'
import {Worker} from 'node:worker_threads'

const source = `
const {parentPort} = require('node:worker_threads')
const results = {'session.open': {session: 'one'}, 'rpc.discover': {methods: [{name: 'window.GetTVMode'}]}}
const server = require('node:http').createServer((request, response) => {
  let text = ''
  request.on('data', piece => text += piece)
  request.on('end', () => {
    const {id, method, params} = JSON.parse(text)
    if (method === 'tv.run') response.writeHead(Number(params.line)).end('refused')
    else if (method in results) response.end(JSON.stringify({jsonrpc: '2.0', id, result: results[method]}))
    else request.socket.destroy()
  })
})
server.on('upgrade', (request, socket) => socket.destroy())
server.listen(0, '127.0.0.1', () => parentPort.postMessage(server.address().port))`

/** Starts it. @return {address, stop} */
export async function startBreaker() {
  const worker = new Worker(source, {eval: true})
  const [port] = await once(worker, 'message')
  return {address: `http://127.0.0.1:${port}`, stop: () => worker.terminate()}
}
