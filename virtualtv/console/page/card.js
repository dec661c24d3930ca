// SPDX-License-Identifier: MIT
/*
 * The test card, 540 units high, with a width according to its aspect ratio. The static part is drawn once, the moving
 * part with each picture. Small texts are 40 units high, so that they are readable when the card is 240 x 135.
 */
import {drawPattern, lookOf} from './card-look.js'

/** @typedef {import('./plane.js').Card} Card */
/** @typedef {import('./geometry.js').Rect} Rect */
/** @typedef {CanvasRenderingContext2D} Context */

/**
 * @typedef {object} Moment
 * @property {number | null} counter  pictures since the card came on screen; null in a picture of the past
 * @property {Date | null} time
 * @property {boolean} isCalm  true if the mark must not move
 */

export const cardHeight = 540
const sans = 'system-ui, sans-serif'
const mono = 'ui-monospace, "DejaVu Sans Mono", Consolas, monospace'
const dark = 'rgb(10 13 18 / 0.86)'
const light = '#f4f7fa'
const soft = '#c3ccd6'
const bandTop = 336
const markTop = 300
const dial = {y: 116, radius: 88, margin: 120}
const counterArea = {x: 24, y: 24, width: 236, height: 72}

/** @param {Context} context @param {number} x @param {number} y @param {number} width @param {number} height @param {string} colour */
function box(context, x, y, width, height, colour) {
  context.fillStyle = colour
  context.fillRect(x, y, width, height)
}

/**
 * Writes a text in one line at most `most` wide. The text is scaled down if needed, and truncated if that is not
 * enough.
 * @param {Context} context @param {string} text
 * @param {{x: number, y: number, most: number, size: number, least?: number, colour: string, weight?: number, align?: CanvasTextAlign}} how
 * @return {number} its width
 */
function write(context, text, {x, y, most, size, least = size, colour, weight = 400, align = 'left'}) {
  const font = (/** @type {number} */ height) => `${weight} ${height}px ${sans}`
  const letters = Array.from(text.slice(0, 400).replace(/[\u0000-\u001f\u2028\u2029]+/g, ' '))
  let shown = letters.join('')
  context.font = font(size)
  const wanted = context.measureText(shown).width
  if (wanted > most) context.font = font(Math.max(least, size * most / wanted))
  for (let count = letters.length; count > 1 && context.measureText(shown).width > most;) {
    count = Math.min(count - 1, Math.ceil(count * most / context.measureText(shown).width))
    shown = `${letters.slice(0, count).join('')}\u2026`
  }
  context.fillStyle = colour
  context.textAlign = align
  context.direction = 'ltr'
  context.textBaseline = 'alphabetic'
  context.fillText(shown, x, y)
  return context.measureText(shown).width
}

/**
 * The band with the texts: number, name, and two lines of details.
 * @param {Context} context
 * @param {number} width
 * @param {Card} card
 * @param {string} accent
 */
function drawBand(context, width, {number, title, lines}, accent) {
  box(context, 0, bandTop, width, cardHeight - bandTop, dark)
  box(context, 0, bandTop, width, 4, accent)
  const numberWidth = number ? write(context, number, {x: 28, y: bandTop + 74, most: 300, size: 72, least: 30, weight: 700, colour: accent}) + 24 : 0
  write(context, title, {x: 28 + numberWidth, y: bandTop + 74, most: width - numberWidth - 52, size: 66, least: 44, weight: 600, colour: light})
  lines.slice(0, 2).forEach((line, at) => write(context, line, {x: 28, y: bandTop + 132 + at * 52, most: width - 52, size: 42, least: 36, colour: at ? soft : light}))
}

/** @param {Context} context @param {number} width @param {string} ground */
function drawMovingGround(context, width, ground) {
  box(context, counterArea.x, counterArea.y, counterArea.width, counterArea.height, ground)
  box(context, 0, markTop, width, bandTop - markTop, ground)
}

/**
 * An input's card: a grid of squares and a circle, like a measuring instrument.
 * @param {Context} context
 * @param {number} width
 * @param {Card} card
 */
function drawInput(context, width, card) {
  const {accent, tones} = lookOf(card.seed)
  box(context, 0, 0, width, cardHeight, '#2a3038')
  context.strokeStyle = '#56616d'
  context.lineWidth = 2
  context.beginPath()
  for (let x = width / 2 % 60; x < width; x += 60) context.rect(x, -1, 0, cardHeight + 2)
  for (let y = 30; y < cardHeight; y += 60) context.rect(-1, y, width + 2, 0)
  context.stroke()
  tones.forEach((tone, at) => box(context, width / 2 - 150 + at * 60, 30, 60, 240, tone))
  context.strokeStyle = light
  context.lineWidth = 5
  context.beginPath()
  context.arc(width / 2, 150, 136, 0, 2 * Math.PI)
  context.stroke()
  drawBand(context, width, card, accent)
}

/** The card for sound without a picture: rings around a point. @param {Context} context @param {number} width @param {Card} card */
function drawSound(context, width, card) {
  const {accent, tones} = lookOf(card.seed)
  box(context, 0, 0, width, cardHeight, '#14181d')
  context.lineWidth = 10
  for (let at = 6; at > 0; --at) {
    context.strokeStyle = tones[at % tones.length]
    context.globalAlpha = 1 - at * 0.13
    context.beginPath()
    context.arc(width / 2, 168, at * 34, -0.25 * Math.PI, 0.25 * Math.PI)
    context.moveTo(width / 2 + at * 34 * Math.cos(0.75 * Math.PI), 168 + at * 34 * Math.sin(0.75 * Math.PI))
    context.arc(width / 2, 168, at * 34, 0.75 * Math.PI, 1.25 * Math.PI)
    context.stroke()
  }
  context.globalAlpha = 1
  box(context, width / 2 - 12, 156, 24, 24, accent)
  const [what, ...lines] = card.lines
  write(context, what, {x: 28, y: 76, most: width - 56, size: 52, weight: 600, colour: accent})
  drawBand(context, width, {...card, lines}, accent)
}

/** A card with a message in the middle of a dark screen. @param {Context} context @param {number} width @param {Card} card */
function drawMessage(context, width, card) {
  box(context, 0, 0, width, cardHeight, '#171b20')
  write(context, card.title, {x: width / 2, y: 270, most: width - 80, size: 84, least: 40, weight: 600, colour: light, align: 'center'})
  card.lines.forEach((line, at) => write(context, line, {x: width / 2, y: 340 + at * 56, most: width - 80, size: 44, least: 30, colour: soft, align: 'center'}))
}

/** Draws the static part of a card. @param {Context} context  whose unit is the card's @param {number} width @param {Card} card */
export function drawStill(context, width, card) {
  if (card.kind === 'sound') return drawSound(context, width, card)
  if (card.kind === 'message') return drawMessage(context, width, card)
  const look = lookOf(card.seed)
  if (card.kind === 'input') drawInput(context, width, card)
  else {
    drawPattern(context, width, cardHeight, look)
    drawBand(context, width, card, look.accent)
  }
  drawMovingGround(context, width, dark)
  context.fillStyle = dark
  context.beginPath()
  context.arc(width - dial.margin, dial.y, dial.radius + 10, 0, 2 * Math.PI)
  context.fill()
  box(context, width - dial.margin - 96, dial.y + 104, 192, 56, dark)
  drawDial(context, width - dial.margin)
}

/** @param {Context} context @param {number} x */
function drawDial(context, x) {
  context.strokeStyle = soft
  context.lineWidth = 4
  for (let at = 0; at < 12; ++at) {
    const angle = at * Math.PI / 6
    const inner = dial.radius - (at % 3 ? 8 : 18)
    context.beginPath()
    context.moveTo(x + inner * Math.sin(angle), dial.y - inner * Math.cos(angle))
    context.lineTo(x + dial.radius * Math.sin(angle), dial.y - dial.radius * Math.cos(angle))
    context.stroke()
  }
}

/**
 * The moving mark, which crosses the card in two seconds.
 * @param {number} counter @param {number} width @param {number} rate @return {Rect}
 */
function markAt(counter, width, rate) {
  const steps = Math.max(2, Math.min(2 * rate, width))
  return {x: Math.round(counter % steps / steps * (width - 40)), y: markTop + 4, width: 40, height: bandTop - markTop - 8}
}

/**
 * @typedef {object} Moving  a part of a card that changes
 * @property {string} state  identifies its content; the part is redrawn when that has changed
 * @property {Rect} area
 * @property {(context: Context) => void} draw
 */

/** @param {Card} card @return {string} the colour of its moving parts */
export const accentOf = card => lookOf(card.seed).accent

/**
 * The moving parts of a card at a moment.
 * @param {number} width
 * @param {Card} card
 * @param {string} accent
 * @param {Moment} moment
 * @return {Moving[]}
 */
export function movingParts(width, card, accent, {counter, time, isCalm}) {
  if (card.rate <= 0) return []
  const digits = counter === null ? '------' : String(counter % 1_000_000).padStart(6, '0')
  const mark = markAt(isCalm || counter === null ? 0 : counter, width, card.rate)
  const clock = {x: width - dial.margin - dial.radius - 10, y: dial.y - dial.radius - 10, width: 2 * dial.radius + 20, height: 2 * dial.radius + 80}
  return [
    {state: digits, area: counterArea, draw: context => drawDigits(context, digits)},
    {state: String(mark.x), area: mark, draw: context => box(context, mark.x, mark.y, mark.width, mark.height, accent)},
    {state: time ? time.toTimeString().slice(0, 8) : '', area: clock, draw: context => time && drawHands(context, width - dial.margin, time, accent)},
  ]
}

/** @param {Context} context @param {string} digits */
function drawDigits(context, digits) {
  context.font = `600 56px ${mono}`
  context.textAlign = 'center'
  context.textBaseline = 'alphabetic'
  context.fillStyle = light
  context.fillText(digits, counterArea.x + counterArea.width / 2, counterArea.y + 56)
}

/** @param {Context} context @param {number} x @param {Date} time @param {string} accent */
function drawHands(context, x, time, accent) {
  const seconds = time.getSeconds()
  const minutes = time.getMinutes() + seconds / 60
  const hands = [
    {turn: (time.getHours() % 12 + minutes / 60) / 12, length: 46, width: 9, colour: light},
    {turn: minutes / 60, length: 68, width: 6, colour: light},
    {turn: seconds / 60, length: 80, width: 4, colour: accent},
  ]
  context.lineCap = 'round'
  for (const {turn, length, width, colour} of hands) {
    context.strokeStyle = colour
    context.lineWidth = width
    context.beginPath()
    context.moveTo(x, dial.y)
    context.lineTo(x + length * Math.sin(2 * Math.PI * turn), dial.y - length * Math.cos(2 * Math.PI * turn))
    context.stroke()
  }
  context.lineCap = 'butt'
  context.font = `600 42px ${mono}`
  context.textAlign = 'center'
  context.fillStyle = light
  context.fillText(time.toTimeString().slice(0, 8), x, dial.y + 146, 180)
}
