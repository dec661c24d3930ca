// SPDX-License-Identifier: MIT
import {accentOf, cardHeight, drawStill, movingParts} from './card.js'
import {Live} from './live.js'
import {noisePattern} from './noise.js'
import {store} from './store.js'

/** @typedef {import('./plane.js').Shown} Shown */
/** @typedef {import('./geometry.js').Rect} Rect */
/** @typedef {CanvasRenderingContext2D} Context */

const longestPause = 1000  // ms between pictures with reduced motion, and the longest wait for the next one
const shortestPause = 15   // ms: browsers show some 60 pictures a second at most
const calm = matchMedia('(prefers-reduced-motion: reduce)')

/** @param {HTMLCanvasElement} canvas @return {Context} */
const contextOf = canvas => /** @type {Context} */ (canvas.getContext('2d', {alpha: false}))

/** True if the static parts of two pictures are the same. @param {Shown | undefined} one @param {Shown} other */
function isSamePicture(one, other) {
  const stillOf = (/** @type {Shown} */ {card, seen, whole, content, active, plane, picture}) => [card, seen, whole, content, active, plane.muted, picture]
  return one !== undefined && JSON.stringify(stillOf(one)) === JSON.stringify(stillOf(other))
}

/**
 * The visible part of a window's picture, on a canvas at the place of its plane. The static part is stored on a second
 * canvas; only the moving part is redrawn with each picture. A hidden tab draws nothing.
 */
export class Picture extends HTMLElement {
  /** Number of pictures since the card appeared; null before the first one, and in a past state. @type {number | null} */
  counter = null
  /** True for a past state, which does not move. */
  #isFrozen = false
  #canvas = document.createElement('canvas')
  #still = document.createElement('canvas')
  /** @type {Shown | undefined} */
  #shown
  #accent = ''
  #since = 0
  /** @type {ReturnType<typeof setTimeout> | undefined} */
  #timer
  /** The moving parts as last drawn. @type {{state: string, area: Rect}[]} */
  #moved = []
  #observer = new ResizeObserver(() => this.#drawAll())
  /** The recording that plays in place of the card. @type {Live | undefined} */
  #live

  connectedCallback() {
    this.#canvas.setAttribute('aria-hidden', 'true')
    this.append(this.#canvas)
    this.#observer.observe(this)
    document.addEventListener('visibilitychange', this.#turned)
    calm.addEventListener('change', this.#start)
  }

  disconnectedCallback() {
    this.#observer.disconnect()
    document.removeEventListener('visibilitychange', this.#turned)
    this.#live?.play('')
    calm.removeEventListener('change', this.#start)
    clearTimeout(this.#timer)
  }

  /** The canvas, for tests. */
  get canvas() {
    return this.#canvas
  }

  /** The video element, for its sound. */
  get video() {
    return this.#live?.video
  }

  get shown() {
    return /** @type {Shown} */ (this.#shown)
  }

  /** Sets what to show. @param {{shown: Shown, isFrozen: boolean}} what */
  set what({shown, isFrozen}) {
    const before = this.#shown
    const isTurned = isFrozen !== this.#isFrozen
    this.#shown = shown
    this.#isFrozen = isFrozen
    const isAnother = JSON.stringify(before?.card) !== JSON.stringify(shown.card)
    if (isAnother && shown.card) {
      if (before?.card?.seed !== shown.card.seed || before.card.rate !== shown.card.rate) this.#since = performance.now()
      this.#accent = accentOf(shown.card)
    }
    if (isTurned || !isSamePicture(before, shown) || before?.noise !== shown.noise) this.#drawAll()
    this.#playOrEnd()
  }

  /** Width of the card, in its own units. */
  get #cardWidth() {
    return cardHeight * this.shown.ratio.width / this.shown.ratio.height
  }

  /** Draws everything, in the size that the element has. */
  #drawAll() {
    const {width, height} = this.getBoundingClientRect()
    const fine = Math.min(devicePixelRatio || 1, 2)
    const isSeen = this.#shown?.seen && this.#shown.card && !this.#shown.plane.muted && width >= 1 && height >= 1
    for (const canvas of [this.#canvas, this.#still]) {
      canvas.width = isSeen ? Math.round(width * fine) : 1
      canvas.height = isSeen ? Math.round(height * fine) : 1
    }
    this.#canvas.hidden = !isSeen
    clearTimeout(this.#timer)
    this.#playOrEnd()
    if (!isSeen) return
    this.#drawStill()
    this.#start()
  }

  #drawStill() {
    const context = contextOf(this.#still)
    context.setTransform(1, 0, 0, 1, 0, 0)
    context.fillStyle = '#000'
    context.fillRect(0, 0, this.#still.width, this.#still.height)
    this.#clipped(context, () => drawStill(context, this.#cardWidth, /** @type {import('./plane.js').Card} */ (this.shown.card)))
  }

  /** Draws in the card's units, clipped to the active area. @param {Context} context @param {() => void} body */
  #clipped(context, body) {
    const {active, content} = this.shown
    const place = this.#onCanvas(active)
    const inner = this.#onCanvas(content)
    context.save()
    context.beginPath()
    context.rect(place.x, place.y, place.width, place.height)
    context.clip()
    context.setTransform(inner.width / this.#cardWidth, 0, 0, inner.height / cardHeight, inner.x, inner.y)
    // A pattern may extend beyond its card, but a crop shows black around the card.
    context.beginPath()
    context.rect(0, 0, this.#cardWidth, cardHeight)
    context.clip()
    body()
    context.restore()
  }

  /** @param {Rect} rect  of the base screen @return {Rect} on the canvas */
  #onCanvas({x, y, width, height}) {
    const seen = /** @type {Rect} */ (this.shown.seen)
    const across = this.#canvas.width / seen.width
    const down = this.#canvas.height / seen.height
    return {x: (x - seen.x) * across, y: (y - seen.y) * down, width: width * across, height: height * down}
  }

  /** Plays the recording if it is visible or audible, otherwise stops it. */
  #playOrEnd() {
    const {id, recording} = this.shown
    const isHeard = id === 'main' && store.get('sound')
    const isPlayed = recording && !this.#isFrozen && (isHeard || (!this.#canvas.hidden && !document.hidden))
    if (!isPlayed && !this.#live) return
    this.#live ??= new Live(id, this.#start)
    this.#live.video.muted = !isHeard
    this.#live.play(isPlayed ? recording : '')
  }

  /** Reacts when the tab is shown or hidden. */
  #turned = () => {
    if (this.#shown) this.#playOrEnd()
    this.#start()
  }

  /** Starts drawing pictures if they are visible. */
  #start = () => {
    clearTimeout(this.#timer)
    if (document.hidden || !this.isConnected || this.#canvas.hidden || !this.#shown) return
    if (this.#live?.hasPicture) return this.#drawVideo(this.#live.video)
    contextOf(this.#canvas).drawImage(this.#still, 0, 0)
    this.#moved = []
    this.#step()
  }

  /** Draws the video's picture into the active area; the next one triggers its own drawing. @param {HTMLVideoElement} video */
  #drawVideo(video) {
    const context = contextOf(this.#canvas)
    const area = this.#onCanvas(this.shown.active)
    const {x, y, width, height} = this.#onCanvas(this.shown.whole)
    this.counter = null
    context.setTransform(1, 0, 0, 1, 0, 0)
    context.fillStyle = '#000'
    context.fillRect(0, 0, this.#canvas.width, this.#canvas.height)
    context.save()
    context.beginPath()
    context.rect(area.x, area.y, area.width, area.height)
    context.clip()
    context.drawImage(video, x, y, width, height)
    context.restore()
    if (this.shown.noise > 0) this.#drawNoise(context, this.shown.noise)
  }

  /** Draws a picture, and the next one when it is due. */
  #step = () => {
    const {card} = this.shown
    const rate = card?.rate ?? 0
    const elapsed = performance.now() - this.#since
    const isMoving = rate > 0 && !this.#isFrozen
    const counter = Math.floor(elapsed * rate / 1000)
    this.counter = isMoving ? counter : null
    this.#drawMoving()
    if (!isMoving) return
    const pause = calm.matches ? longestPause - elapsed % longestPause : (counter + 1) * 1000 / rate - elapsed
    this.#timer = setTimeout(this.#step, Math.min(longestPause, Math.max(shortestPause, pause)))
  }

  #drawMoving() {
    const {card, noise} = this.shown
    if (!card) return
    const context = contextOf(this.#canvas)
    const parts = movingParts(this.#cardWidth, card, this.#accent, {counter: this.counter, time: this.#isFrozen ? null : new Date(), isCalm: calm.matches})
    const changed = parts.filter(({state}, at) => noise > 0 || state !== this.#moved[at]?.state)
    if (noise > 0) context.drawImage(this.#still, 0, 0)
    else for (const part of changed) this.#restore(context, this.#moved[parts.indexOf(part)]?.area)
    if (changed.length > 0) this.#clipped(context, () => changed.forEach(part => part.draw(context)))
    if (noise > 0) this.#drawNoise(context, noise)
    this.#moved = parts
  }

  /**
   * Restores the static part under the moving parts.
   * @param {Context} context
   * @param {Rect | undefined} area  in the card's units
   */
  #restore(context, area) {
    if (!area) return
    const {content} = this.shown
    const inner = this.#onCanvas(content)
    const across = inner.width / this.#cardWidth
    const down = inner.height / cardHeight
    const left = Math.max(0, Math.floor(inner.x + area.x * across) - 1)
    const top = Math.max(0, Math.floor(inner.y + area.y * down) - 1)
    const width = Math.min(this.#canvas.width, Math.ceil(inner.x + (area.x + area.width) * across) + 1) - left
    const height = Math.min(this.#canvas.height, Math.ceil(inner.y + (area.y + area.height) * down) + 1) - top
    if (width > 0 && height > 0) context.drawImage(this.#still, left, top, width, height, left, top, width, height)
  }

  /** @param {Context} context @param {number} noise  0 to 255 */
  #drawNoise(context, noise) {
    const place = this.#onCanvas(this.shown.active)
    context.save()
    context.beginPath()
    context.rect(place.x, place.y, place.width, place.height)
    context.clip()
    context.globalAlpha = 0.05 + 0.91 * noise / 255
    context.translate(-Math.floor(Math.random() * 128), -Math.floor(Math.random() * 128))
    context.fillStyle = noisePattern(context)
    context.fillRect(0, 0, this.#canvas.width + 128, this.#canvas.height + 128)
    context.restore()
  }
}
customElements.define('emp-picture', Picture)
