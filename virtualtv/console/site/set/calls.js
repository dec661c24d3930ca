// SPDX-License-Identifier: MIT
/*
 * Synchronous calls to the set, during which the caller's event loop does not run: the request is a message to the
 * set's worker, the answer comes through shared memory. The thread of a page may not sleep, so it polls that memory.
 */

// Values of the first number in the shared memory. The second number is the size of the following text in bytes.
const sent = 0
const taken = 1
const answered = 2
const failed = 3
const tooLong = 4  // the answer does not fit; the size is the room that it needs
const givenUp = 5

const head = 8  // bytes
const lastPatience = 1000  // ms to wait when the page is left
const initialRoom = 65536

/** @param {SharedArrayBuffer} buffer */
const headOf = buffer => new Int32Array(buffer, 0, 2)

/** A call timed out and is lost, or the set refused it. `sent` is true if it may have run. */
export class CallError extends Error {
  /** @param {string} message @param {{sent: boolean, isLost: boolean}} how */
  constructor(message, {sent, isLost}) {
    super(message)
    this.sent = sent
    this.isLost = isLost
  }
}

/** The caller's end, in the page. */
export class Caller {
  /** Milliseconds after which an unanswered call fails. */
  patience = 60_000
  #worker
  #buffer = new SharedArrayBuffer(head + initialRoom)

  /** @param {Worker} worker */
  constructor(worker) {
    this.#worker = worker
  }

  /** @param {string} text  the request @param {string} [session] @return {string} the answer @throws {CallError} */
  post(text, session) {
    const end = performance.now() + this.patience
    let status = this.#ask({call: {text, session}}, end)
    if (status === tooLong) {
      this.#buffer = new SharedArrayBuffer(head + 2 * headOf(this.#buffer)[1])
      status = this.#ask({rest: true}, end)
    }
    const answer = new TextDecoder().decode(new Uint8Array(this.#buffer, head, headOf(this.#buffer)[1]).slice())
    if (status === failed) throw new CallError(answer, {sent: true, isLost: false})
    return answer
  }

  /** Lets the set save its data when the page is left. Returns when that is done, or when a page may not wait longer. */
  leave() {
    try {
      this.#ask({leave: true}, performance.now() + lastPatience)
    } catch {
      // The same as when the page is closed abruptly.
    }
  }

  /** @param {object} message @param {number} end  time of the timeout @return {number} the final status */
  #ask(message, end) {
    const buffer = this.#buffer
    Atomics.store(headOf(buffer), 0, sent)
    this.#worker.postMessage({...message, buffer})
    for (;;) {
      const status = Atomics.load(headOf(buffer), 0)
      if (status > taken) return status
      if (performance.now() > end) this.#giveUp(buffer)
    }
  }

  /** @param {SharedArrayBuffer} buffer */
  #giveUp(buffer) {
    const status = Atomics.exchange(headOf(buffer), 0, givenUp)
    this.#buffer = new SharedArrayBuffer(head + initialRoom)  // the set may still write into the old one
    const what = status === sent ? 'has not taken the call' : 'has not answered'
    throw new CallError(`the set's worker ${what} for ${this.patience} ms; reload the page`, {sent: status !== sent, isLost: true})
  }
}

/** The set's end, in the worker. */
export class Answerer {
  #post
  /** The answer that did not fit into the caller's memory. @type {{bytes: Uint8Array, status: number}} */
  #rest = {bytes: new Uint8Array(), status: answered}

  /** @param {(text: string, session?: string) => string} post */
  constructor(post) {
    this.#post = post
  }

  /**
   * Answers a message of the caller; one without a call requests the last answer again, with more memory.
   * @param {{call?: {text: string, session?: string}, buffer: SharedArrayBuffer}} message
   */
  take({call, buffer}) {
    const numbers = headOf(buffer)
    if (Atomics.compareExchange(numbers, 0, sent, taken) !== sent) return
    if (call) this.#rest = this.#answer(call)
    const {bytes, status} = this.#rest
    numbers[1] = bytes.length
    const fits = bytes.length <= buffer.byteLength - head
    if (fits) new Uint8Array(buffer, head).set(bytes)
    Atomics.compareExchange(numbers, 0, taken, fits ? status : tooLong)
  }

  /** Wakes a caller that needs no answer. @param {SharedArrayBuffer} buffer */
  static done(buffer) {
    Atomics.store(headOf(buffer), 0, answered)
  }

  /** @param {{text: string, session?: string}} call */
  #answer({text, session}) {
    try {
      return {bytes: new TextEncoder().encode(this.#post(text, session)), status: answered}
    } catch (error) {
      return {bytes: new TextEncoder().encode(/** @type {Error} */ (error).message), status: failed}
    }
  }
}
