// SPDX-License-Identifier: MIT
/** A TV in memory on the other side of a MessagePort, as in a worker. */
import type {SocketLike, Tv} from './client.js'

/** What a port has that messages go through, in browsers and in Node. */
export interface Port {
  postMessage(message: any): void
  close(): void
  onmessage: ((event: any) => any) | null
}

/** Serves a client at the other end of a port, until one of both ends. `tv` is what `createTv` has made on this side. */
export function servePort(tv: Tv, port: Port): void

/** The client's end: `connect(() => new PortSocket(port))`. A port serves one connection. */
export class PortSocket {
  constructor(port: Port)
}
export interface PortSocket extends SocketLike {}
