// SPDX-License-Identifier: MIT
// A client that behaves, on a thread of its own. It makes one call after another until it is told to end, then posts
// the duration of each call in milliseconds.
import {parentPort, workerData} from 'node:worker_threads'
import {Client, wait} from './server.js'

let isOver = false
parentPort.once('message', () => isOver = true)

const client = await Client.connect(workerData)
const times = []
for (; !isOver; await wait(1)) {
  const start = performance.now()
  await client.call('window.GetTVMode')
  times.push(performance.now() - start)
}
await client.close()
parentPort.postMessage(times)
