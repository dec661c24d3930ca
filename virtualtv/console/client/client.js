// SPDX-License-Identifier: MIT
/*
 * The client of the virtual TV. Tests and tools use `connect`, for a TV on a server, or `createTv`, for a TV in memory.
 * Apps, which call the plug-in synchronously as on the set, use `installWindow`. This file runs in browsers and in
 * Node; code for Node alone is in separate files, which only Node loads.
 */
import {Tv} from './connected.js'
import './window.js'

const {EmpConnectionError, EmpRpcError, EmpTvError, baseOf, socketUrl, install} = globalThis[Symbol.for('emp-window/2')]
export {EmpConnectionError, EmpRpcError, EmpTvError}

const workerPatience = 10_000  // ms until a worker must have started

/**
 * Connects to a server. `place` is its http address, as in `await connect('http://127.0.0.1:8090')`, or a function that
 * creates a socket, like `dial` of Wire.
 */
export async function connect(place, options = {}) {
  if (typeof place === 'function') return Tv.connect('', place, options)
  const address = baseOf(place)
  const dial = async () => {
    const WebSocket = globalThis.WebSocket ?? (await import('./node-websocket.js')).NodeWebSocket
    return new WebSocket(socketUrl(address, options))
  }
  return Tv.connect(address, dial, options)
}

/** The module that creates sets in memory. It is missing when a server serves this client. */
async function creation() {
  try {
    return await import('./create.js')
  } catch (cause) {
    throw new EmpTvError('module', `a TV in memory wants the package that tools/wasm makes: ${cause.message}`, {cause})
  }
}

/** Creates a TV in memory and connects to it; client.d.ts lists the options. */
export async function createTv(options) {
  return (await creation()).createTv(options)
}

/** Removes the data that `createTv` stored under a key. */
export async function forgetTv(key) {
  return (await creation()).forgetTv(key)
}

/** The transport for Node, which has no synchronous requests: a worker makes them while this thread waits. */
function workerTransport(base, token) {
  const threads = globalThis[Symbol.for('emp-window/threads')] ?? globalThis.process?.getBuiltinModule?.('node:worker_threads')
  if (!threads) throw new EmpConnectionError('installWindow wants a browser, or in Node before 20.16 the module node.js of this package')
  const signal = new Int32Array(new SharedArrayBuffer(4))
  const {port1: port, port2} = new threads.MessageChannel()
  const wait = patience => {
    Atomics.wait(signal, 0, 0, patience)
    Atomics.store(signal, 0, 0)
    return threads.receiveMessageOnPort(port)?.message
  }
  const here = import.meta.url  // in a variable, so that bundlers do not treat the worker as part of the page
  const worker = new threads.Worker(new URL('./node-window.js', here),
    {workerData: {base, token, signal, port: port2}, transferList: [port2], execArgv: [], stdin: false})
  worker.unref()
  port.unref()
  if (!wait(workerPatience)) throw new EmpConnectionError('the worker that calls the virtual TV did not start')
  return {
    post(body, session) {
      port.postMessage({post: {body, session}})
      const {status, text, error, sent} = wait()
      if (error) throw new EmpConnectionError(`${base} can't be reached: ${error}`, {sent})
      return {status, text}
    },
    adopt: session => port.postMessage({adopt: session}),
    release: () => port.postMessage({release: true}),
  }
}

/** Puts the synchronous object of the set under `options.name` into `target`; see `install` in window.js. */
export function installWindow(target, options = {}) {
  const isPage = typeof globalThis.XMLHttpRequest === 'function'
  return install(target, {...options, transport: isPage || options.tv ? undefined : workerTransport})
}

/** Runs a transcript on anything that has `Execute`; see transcript.js. */
export async function runTranscript(...args) {
  return (await import('./transcript.js')).runTranscript(...args)
}
