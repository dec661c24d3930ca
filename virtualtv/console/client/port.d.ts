// SPDX-License-Identifier: MIT
/** A TV in memory on the other side of a MessagePort, as in a worker. */
import type {SocketLike, Tv} from './client.js'

/** The part of a message port that is used, in browsers and in Node. */
export interface Port {
  postMessage(message: any): void
  close(): void
  onmessage: ((event: any) => any) | null
}

/** Serves a client at the other end of a port, until either side ends. `tv` is a result of `createTv` on this side. */
export function servePort(tv: Tv, port: Port): void

/** The client's end: `connect(() => new PortSocket(port))`. A port serves one connection. */
export class PortSocket {
  constructor(port: Port)
}
export interface PortSocket extends SocketLike {}
