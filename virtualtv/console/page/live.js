// SPDX-License-Identifier: MIT
/*
 * The picture of a recording. A video element outside the document plays the server's stream for a window's service;
 * its pictures are drawn in place of the test card.
 */
import {live} from './connection.js'
import {store} from './store.js'

/** @typedef {import('./plane.js').WindowId} WindowId */

const mostAhead = 3     // seconds to fetch ahead
const mostBehind = 10   // seconds to keep after they were shown
const pieceSize = 65536  // bytes to append at once
const longPause = 5000  // ms before retrying after a refusal
const pause = 1000      // ms before retrying after a stream that ended at once or broke off
const patience = 200    // ms between checks whether to fetch more

/** The server refuses to play, or this browser can't. */
class Refusal extends Error {}

/**
 * Waits for an event, unless a signal ends that. @param {EventTarget} target @param {string} name @param {AbortSignal} signal
 * @return {Promise<void>}
 */
function happens(target, name, signal) {
  return new Promise((resolve, reject) => {
    const heard = new AbortController()
    const on = (/** @type {EventTarget} */ from, /** @type {string} */ what, /** @type {() => void} */ then) => from.addEventListener(what, () => {
      heard.abort()
      then()
    }, {signal: heard.signal})
    on(target, name, resolve)
    on(target, 'error', () => reject(new Refusal('The received stream is damaged.')))
    on(signal, 'abort', () => reject(signal.reason))
    signal.throwIfAborted()
  })
}

/** @param {number} milliseconds @param {AbortSignal} signal */
function wait(milliseconds, signal) {
  const timer = new EventTarget()
  setTimeout(() => timer.dispatchEvent(new Event('over')), milliseconds)
  return happens(timer, 'over', signal)
}

/** Plays the recording on one window. */
export class Live {
  video = document.createElement('video')
  /** True once there is a picture to draw. */
  hasPicture = false
  #id
  #onpicture
  /** Identifies what is played; another value starts another stream. */
  #what = ''
  #ending = new AbortController()

  /** @param {WindowId} id @param {() => void} onpicture  called for each picture, and when there is none any more */
  constructor(id, onpicture) {
    this.#id = id
    this.#onpicture = onpicture
    this.video.muted = true
    this.video.playsInline = true
  }

  /** @param {string} what  the service and its tracks; empty for nothing */
  play(what) {
    if (what === this.#what) return
    this.#what = what
    this.#ending.abort()
    this.#ending = new AbortController()
    this.#clear()
    this.#tell('')
    if (what && live) this.#playOn(this.#ending.signal)
  }

  /** Plays streams until stopped: the server ends a stream when something changes. @param {AbortSignal} signal */
  async #playOn(signal) {
    this.#awaitPicture(signal)  // once, since it also works for later sources
    for (;;) {
      const start = performance.now()
      let isRefused = false
      try {
        await this.#playOnce(signal)
      } catch (error) {
        if (signal.aborted) return
        isRefused = error instanceof Refusal
        this.#tell(isRefused ? /** @type {Error} */ (error).message : 'The connection broke.')
      }
      this.#clear()
      try {
        if (isRefused || performance.now() - start < pause) await wait(isRefused ? longPause : pause, signal)
      } catch {
        return
      }
    }
  }

  /** @param {AbortSignal} signal */
  async #playOnce(signal) {
    const response = await /** @type {NonNullable<typeof live>} */ (live)(this.#id, signal)
    const type = response.headers.get('content-type') ?? ''
    if (!response.ok || !response.body) throw new Refusal((await response.text()).trim())
    const reader = response.body.getReader()
    try {
      if (!MediaSource.isTypeSupported(type)) throw new Refusal(`This browser can't play ${type}.`)
      await this.#playFrom(reader, type, signal)
    } finally {
      reader.cancel().catch(() => {})  // The server can stop sending.
    }
  }

  /** @param {ReadableStreamDefaultReader<Uint8Array<ArrayBuffer>>} reader @param {string} type @param {AbortSignal} signal */
  async #playFrom(reader, type, signal) {
    const source = new MediaSource()
    const address = URL.createObjectURL(source)
    this.video.src = address
    try {
      await happens(source, 'sourceopen', signal)
    } finally {
      URL.revokeObjectURL(address)
    }
    await this.#feed(source.addSourceBuffer(type), reader, signal)
    if (this.video.paused) return  // Nothing arrived.
    source.endOfStream()
    await happens(this.video, 'ended', signal)  // Also shows what was fetched ahead.
  }

  /** @param {SourceBuffer} buffer @param {ReadableStreamDefaultReader<Uint8Array<ArrayBuffer>>} reader @param {AbortSignal} signal */
  async #feed(buffer, reader, signal) {
    for (;;) {
      const {done, value} = await reader.read()
      if (done) return
      // A single chunk may last for minutes.
      for (let at = 0; at < value.length; at += pieceSize) await this.#append(buffer, value.subarray(at, at + pieceSize), signal)
    }
  }

  /** @param {SourceBuffer} buffer @param {Uint8Array<ArrayBuffer>} piece @param {AbortSignal} signal */
  async #append(buffer, piece, signal) {
    while (!this.video.error && this.#ahead(buffer) > mostAhead) await wait(patience, signal)
    if (this.video.error) throw new Refusal('The received stream is damaged.')
    buffer.appendBuffer(piece)
    await happens(buffer, 'updateend', signal)
    this.#start(buffer)
    await this.#removePlayed(buffer, signal)
  }

  /** @param {SourceBuffer} buffer @return {number} seconds */
  #ahead({buffered}) {
    return buffered.length > 0 ? buffered.end(buffered.length - 1) - this.video.currentTime : 0
  }

  /** Starts once something is buffered, at its start. @param {SourceBuffer} buffer */
  #start({buffered}) {
    if (buffered.length === 0 || !this.video.paused) return
    if (this.video.currentTime < buffered.start(0)) this.video.currentTime = buffered.start(0)
    this.video.play().catch(() => {})  // It was stopped meanwhile.
  }

  /** @param {SourceBuffer} buffer @param {AbortSignal} signal */
  async #removePlayed(buffer, signal) {
    const end = this.video.currentTime - mostBehind
    if (buffer.buffered.length === 0 || buffer.buffered.start(0) > end - mostBehind) return
    buffer.remove(0, end)
    await happens(buffer, 'updateend', signal)
  }

  /** @param {AbortSignal} signal */
  #awaitPicture(signal) {
    this.video.requestVideoFrameCallback(() => {
      if (signal.aborted) return
      if (!this.hasPicture) this.#tell('')
      this.hasPicture = true
      this.#onpicture()
      this.#awaitPicture(signal)
    })
  }

  #clear() {
    this.video.removeAttribute('src')
    this.video.load()
    if (!this.hasPicture) return
    this.hasPicture = false
    this.#onpicture()
  }

  /** @param {string} problem  why nothing is played; empty without a problem */
  #tell(problem) {
    const all = store.get('live')
    if (all[this.#id] !== problem) store.set('live', {...all, [this.#id]: problem})
  }
}
