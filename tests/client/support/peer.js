// SPDX-License-Identifier: MIT
// A server with scripted answers, which can break the connection at any point.
import {once} from 'node:events'
import {ws} from './packages.js'

export class Peer {
  /** Calls of the client in order: {method, params, connection}. */
  calls = []
  connections = []
  number = 0
  id = 'first run'
  /** The result of a method, or a function of the call; undefined leaves it unanswered. */
  answers = {
    'session.open': () => ({session: `session ${this.connections.length}`, server: this.id, revision: 1, virtual: true}),
    'events.subscribe': () => ({server: this.id, number: this.number, state: {asOf: this.number}}),
    'events.unsubscribe': {},
  }

  async listen(port = 0) {
    this.server = new ws.WebSocketServer({host: '127.0.0.1', port})
    this.server.on('connection', connection => this.#serve(connection))
    await once(this.server, 'listening')
    this.port = this.server.address().port
    this.address = `http://127.0.0.1:${this.port}`
    return this
  }

  /** Breaks all connections, but continues to listen. */
  cut() {
    for (const connection of this.server.clients) connection.terminate()
  }

  async stop() {
    this.cut()
    this.server.close()
    await once(this.server, 'close')
  }

  send(message) {
    this.connections.at(-1).send(JSON.stringify({jsonrpc: '2.0', ...message}))
  }

  /** Sends the next event. */
  event(topic, more = {}) {
    this.send({method: 'event', params: {number: ++this.number, topic, ...more}})
  }

  called(method) {
    return this.calls.filter(call => call.method === method)
  }

  #serve(connection) {
    this.connections.push(connection)
    connection.on('message', data => {
      const {id, method, params} = JSON.parse(data)
      this.calls.push({id, method, params, connection: this.connections.length})
      const given = this.answers[method]
      const answer = typeof given === 'function' ? given(params) : given
      if (answer?.error) this.send({id, error: answer.error})
      else if (answer !== undefined) this.send({id, result: answer})
    })
  }
}
