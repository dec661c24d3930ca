// SPDX-License-Identifier: MIT
/*
 * The client in Node: client.js, with the module that its synchronous calls need. From 20.16 on, client.js can load
 * that module itself. In older versions only an import can, which browsers would refuse, so it is here.
 */
import * as threads from 'node:worker_threads'

globalThis[Symbol.for('emp-window/threads')] ??= threads
export * from './client.js'
