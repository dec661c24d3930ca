// SPDX-License-Identifier: MIT
// Code that runs in a page: the cases, over each way to reach a set in memory.
import {cases, runCase} from '/client/cases.js'
import {connect, createTv, installWindow} from '/package/client.js'
import {PortSocket} from '/package/port.js'

/** Creates a TV in a worker of its own. */
async function createTvInWorker({appId, ...options} = {}) {
  const worker = new Worker('/tab/worker.js', {type: 'module'})
  const {port1, port2} = new MessageChannel()
  worker.postMessage(options, [port2])
  const tv = await connect(() => new PortSocket(port1), {appId})
  const disconnect = tv.close.bind(tv)
  tv.close = async () => {
    await disconnect()
    worker.terminate()
  }
  return tv
}

const makers = {createTv, worker: createTvInWorker, script: options => globalThis.empWindow.createTv(options)}

/** Runs a case by its name. @param maker  a name in `makers` */
globalThis.runNamed = (name, maker) => runCase(cases.all.find(one => one.name === name), makers[maker],
  (target, tv, options) => (maker === 'script' ? globalThis.empWindow.installWindow : installWindow)(target, {tv, ...options}))
