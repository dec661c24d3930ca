// SPDX-License-Identifier: MIT
/* The look of a test card: hues and a pattern, derived from a text, always the same for the same text. */

/** A sequence of numbers from 0 to below 1, derived from a text. @param {string} seed @return {() => number} */
function numbersOf(seed) {
  let state = 0x811c9dc5
  for (const character of seed) state = Math.imul(state ^ /** @type {number} */ (character.codePointAt(0)), 0x01000193)
  return () => {
    state = (state + 0x6d2b79f5) | 0
    let mixed = Math.imul(state ^ (state >>> 15), 1 | state)
    mixed = (mixed + Math.imul(mixed ^ (mixed >>> 7), 61 | mixed)) ^ mixed
    return ((mixed ^ (mixed >>> 14)) >>> 0) / 0x1_0000_0000
  }
}

/**
 * @typedef {object} Look
 * @property {string[]} tones  colours of the pattern, dark to light
 * @property {string} accent  colour of texts and hands on a dark ground
 * @property {number} pattern  index in `patterns`
 * @property {() => number} next  returns further numbers for the pattern
 */

const secondHues = [40, 75, 150, 180, 210, 285, 320]

/** @param {string} seed @return {Look} */
export function lookOf(seed) {
  const next = numbersOf(seed)
  const hue = Math.floor(next() * 360)
  const other = (hue + secondHues[Math.floor(next() * secondHues.length)]) % 360
  return {
    tones: [`hsl(${hue} 60% 22%)`, `hsl(${hue} 58% 36%)`, `hsl(${hue} 62% 50%)`, `hsl(${other} 62% 46%)`, `hsl(${other} 75% 64%)`],
    accent: `hsl(${other} 90% 76%)`, pattern: Math.floor(next() * patterns.length), next,
  }
}

/** @typedef {(context: CanvasRenderingContext2D, width: number, height: number, look: Look) => void} Pattern */

/** @type {Pattern[]} */
const patterns = [bars, stripes, rings, tiles, rays, chevrons, dots, waves]

/** @type {Pattern} */
export function drawPattern(context, width, height, look) {
  context.fillStyle = look.tones[0]
  context.fillRect(0, 0, width, height)
  patterns[look.pattern](context, width, height, look)
}

/** @type {Pattern} */
function bars(context, width, height, {tones, next}) {
  const count = 6 + Math.floor(next() * 4)
  const first = Math.floor(next() * tones.length)
  for (let at = 0; at < count; ++at) {
    context.fillStyle = tones[(first + at * 2) % tones.length]
    context.fillRect(at * width / count, 0, width / count + 1, height)
  }
}

/** @type {Pattern} */
function stripes(context, width, height, {tones, next}) {
  const step = 60 + next() * 70
  const lean = next() < 0.5 ? 1 : -1
  context.lineWidth = step / 2
  for (let at = -height - step, turn = 0; at < width + height + step; at += step, ++turn) {
    context.strokeStyle = tones[1 + turn % 4]
    context.beginPath()
    context.moveTo(at, lean > 0 ? height + step : -step)
    context.lineTo(at + height, lean > 0 ? -step : height + step)
    context.stroke()
  }
}

/** @type {Pattern} */
function rings(context, width, height, {tones, next}) {
  const x = width * (0.25 + next() * 0.5)
  const y = height * (0.2 + next() * 0.3)
  const step = 44 + next() * 36
  for (let at = Math.ceil(width / step); at > 0; --at) {
    context.fillStyle = tones[at % tones.length]
    context.beginPath()
    context.arc(x, y, at * step, 0, 2 * Math.PI)
    context.fill()
  }
}

/** @type {Pattern} */
function tiles(context, width, height, {tones, next}) {
  const across = 8 + Math.floor(next() * 5)
  const size = width / across
  for (let row = 0; row * size < height; ++row) {
    for (let column = 0; column < across; ++column) {
      context.fillStyle = tones[Math.floor(next() * tones.length)]
      context.fillRect(column * size, row * size, size + 1, size + 1)
    }
  }
}

/** @type {Pattern} */
function rays(context, width, height, {tones, next}) {
  const count = 2 * (7 + Math.floor(next() * 6))
  const x = width * (0.3 + next() * 0.4)
  const y = height * (0.5 + next() * 0.3)
  for (let at = 0; at < count; ++at) {
    context.fillStyle = tones[1 + at % 2 * 2 + (at % 4 === 3 ? 1 : 0)]
    context.beginPath()
    context.moveTo(x, y)
    context.arc(x, y, width, 2 * Math.PI * at / count, 2 * Math.PI * (at + 1) / count)
    context.fill()
  }
}

/** @type {Pattern} */
function chevrons(context, width, height, {tones, next}) {
  const step = 60 + next() * 50
  const depth = 60 + next() * 120
  context.lineWidth = step * 0.6
  for (let at = -depth, turn = 0; at < height + depth; at += step, ++turn) {
    context.strokeStyle = tones[1 + turn % 4]
    context.beginPath()
    context.moveTo(-step, at + depth)
    context.lineTo(width / 2, at - depth)
    context.lineTo(width + step, at + depth)
    context.stroke()
  }
}

/** @type {Pattern} */
function dots(context, width, height, {tones, next}) {
  const step = 56 + next() * 40
  for (let y = 0, row = 0; y < height + step; y += step, ++row) {
    for (let x = row % 2 * step / 2; x < width + step; x += step) {
      context.fillStyle = tones[1 + Math.floor(next() * 4)]
      context.beginPath()
      context.arc(x, y, step * (0.2 + next() * 0.26), 0, 2 * Math.PI)
      context.fill()
    }
  }
}

/** @type {Pattern} */
function waves(context, width, height, {tones, next}) {
  const count = 6 + Math.floor(next() * 4)
  const length = 120 + next() * 160
  const swing = 18 + next() * 30
  for (let at = 0; at < count; ++at) {
    context.fillStyle = tones[(at + 1) % tones.length]
    context.beginPath()
    context.moveTo(0, height)
    for (let x = 0; x <= width + 16; x += 16) context.lineTo(x, at * height / count + swing * Math.sin(x / length * Math.PI + at * 1.7))
    context.lineTo(width + 16, height)
    context.fill()
  }
}
