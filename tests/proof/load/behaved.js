// SPDX-License-Identifier: MIT
// A client that behaves, on a thread of its own: calls one after another until it is told to end, and tells how many
// milliseconds each took.
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
