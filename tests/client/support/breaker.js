// SPDX-License-Identifier: MIT
// A server on a thread of its own, for calls that block the test's thread. It opens sessions, answers a line of the
// shell with the HTTP status that the line names, and breaks the connection on anything else.
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
