// SPDX-License-Identifier: MIT
// A server under load, the resources that it uses, and clients that consist of a connection only.
import {spawn} from 'node:child_process'
import {once} from 'node:events'
import {readdirSync, readFileSync} from 'node:fs'
import {createInterface} from 'node:readline'
import {NodeWebSocket} from '../../../virtualtv/console/client/node-websocket.js'

export const kibibyte = 1024
export const mebibyte = 1024 * kibibyte

export class Server {
  /** Starts the program and waits until clients can connect. `state` is the folder where the set persists its state;
   *  without it the set is in memory. */
  static async start(program, {state, options = []} = {}) {
    const server = new Server()
    const words = [...(state ? ['--state', state] : []), 'serve', '--listen', '127.0.0.1:0', '--until-eof']
    server.process = spawn(program, [...words, ...(state ? [] : ['--fresh']), ...options], {stdio: ['pipe', 'pipe', 'inherit']})
    const [line] = await once(createInterface(server.process.stdout), 'line')
    server.port = Number(new URL(line.replace('emp-window: ', '')).port)
    return server
  }

  /** A value of /proc/PID/status in bytes, such as VmRSS. */
  memory(name) {
    const status = readFileSync(`/proc/${this.process.pid}/status`, 'utf8')
    return Number(new RegExp(`^${name}:\\s+(\\d+) kB`, 'm').exec(status)[1]) * kibibyte
  }

  descriptors() {
    return readdirSync(`/proc/${this.process.pid}/fd`).length
  }

  async kill() {
    this.process.kill('SIGKILL')
    await once(this.process, 'exit')
  }

  /** Ends the server as its owner does. @return its exit status. */
  async stop() {
    this.process.stdin.end()
    const [status] = await once(this.process, 'exit')
    return status
  }
}

export class Client {
  #calls = new Map()
  #last = 0
  /** Called with the text of each message that is not an answer. */
  heard = () => {}

  static async connect(server) {
    const client = new Client()
    client.socket = new NodeWebSocket(`ws://127.0.0.1:${server.port}/rpc`)
    client.socket.onmessage = ({data}) => client.#take(data)
    client.closed = new Promise(resolve => client.socket.onclose = ({code}) => {
      for (const {reject} of client.#calls.values()) reject(new Error(`the connection closed with ${code}`))
      resolve(code)
    })
    await new Promise((resolve, reject) => {
      client.socket.onopen = resolve
      client.socket.onerror = () => reject(new Error('cannot connect'))
    })
    return client
  }

  /** The result of a call. The promise is rejected for an error, and when the connection breaks. */
  call(method, params = []) {
    const id = ++this.#last
    const answered = new Promise((resolve, reject) => this.#calls.set(id, {resolve, reject}))
    this.socket.send(JSON.stringify({jsonrpc: '2.0', id, method, params}))
    return answered
  }

  async close() {
    this.socket.close()
    await this.closed
  }

  #take(text) {
    if (text.includes('"method":"event"')) return this.heard(text)
    const {id, result, error} = JSON.parse(text)
    const call = this.#calls.get(id)
    this.#calls.delete(id)
    if (error) call.reject(new Error(`${error.message}: ${error.data.reason}`))
    else call.resolve(result)
  }
}

export const wait = milliseconds => new Promise(resolve => setTimeout(resolve, milliseconds))

/** Waits until `isSo()` is true, for half a minute at most. @return whether it became true. */
export async function until(isSo) {
  for (const end = Date.now() + 30_000; Date.now() < end; await wait(20)) if (await isSo()) return true
  return false
}
