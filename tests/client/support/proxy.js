// SPDX-License-Identifier: MIT
// A TCP proxy that breaks its first connection after a given number of bytes in one direction.
import {once} from 'node:events'
import net from 'node:net'

export class Proxy {
  /** Number of bytes passed, by direction. */
  passed = {up: 0, down: 0}
  connections = 0
  #severs = new Set()

  /** @param cut  {up} or {down}: after how many bytes of that direction the first connection breaks; none leaves it whole */
  constructor(port, cut = {}) {
    this.server = net.createServer(client => {
      const left = this.connections++ === 0 ? {...cut} : {}
      const server = net.connect(port, '127.0.0.1')
      const sever = () => {
        client.resetAndDestroy()
        server.resetAndDestroy()
      }
      this.#severs.add(sever)
      client.on('close', () => this.#severs.delete(sever))
      this.#pipe('up', client, server, left, sever)
      this.#pipe('down', server, client, left, sever)
    })
  }

  async listen() {
    this.server.listen(0, '127.0.0.1')
    await once(this.server, 'listening')
    this.address = `http://127.0.0.1:${this.server.address().port}`
    return this
  }

  /** Breaks the connections that there are. */
  cut() {
    for (const sever of this.#severs) sever()
  }

  close() {
    this.server.close()
    this.cut()
  }

  #pipe(direction, from, to, left, sever) {
    from.on('error', () => {})
    from.on('close', () => to.destroy())
    from.on('data', chunk => {
      const taken = chunk.subarray(0, left[direction])
      this.passed[direction] += taken.length
      to.write(taken)
      if (left[direction] === undefined) return
      left[direction] -= taken.length
      // The passed bytes must arrive before the end, so break the connection one turn later.
      if (left[direction] === 0) setImmediate(sever)
    })
  }
}
