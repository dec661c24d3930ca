// SPDX-License-Identifier: MIT
/* The set's worker: creates the set that the page requests, then handles the page's messages. */
import {Answerer} from './calls.js'
import {TabSet} from './tab-set.js'

/** @type {TabSet} */
let set
/** @type {Answerer} */
let answerer

/** @param {any} from */
async function start(from) {
  try {
    const {set: made, keeping} = await TabSet.start(from)
    set = made
    answerer = new Answerer((text, session) => set.post(text, session))
    postMessage({keeping})
  } catch (error) {
    postMessage({problem: /** @type {Error} */ (error).message})
  }
}

addEventListener('message', ({data}) => {
  if (data.leave) set.leave().finally(() => Answerer.done(data.buffer))
  else if (data.buffer) answerer.take(data)
  else if (data.start) start(data.start)
  else if (data.port) set.serve(data.port)
  else if (data.hold) set.hold(data.number, data.hold)
  else set.release(data.number)
})
