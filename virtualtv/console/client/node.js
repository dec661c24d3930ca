// SPDX-License-Identifier: MIT
/*
 * The client in Node: client.js, and what it wants of Node at once. From 20.16 on Node hands that to modules that browsers load too;
 * before, only to modules that import it, as this one does.
 */
import * as threads from 'node:worker_threads'

globalThis[Symbol.for('emp-window/threads')] ??= threads
export * from './client.js'
