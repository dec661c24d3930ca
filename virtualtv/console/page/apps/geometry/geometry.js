// SPDX-License-Identifier: MIT
// A playground for the picture's geometry: its place, its crop, its order, and hiding it.
/** @type {any} */
const tv = /** @type {any} */ (globalThis).tvWindow
const step = 16

/** @param {string} id */
const element = id => /** @type {HTMLElement} */ (document.getElementById(id))
const picture = element('picture')
const state = {isSizing: false, isInFront: false, isMuted: false, isCropped: false}

/** The numbers of a text such as `x:0,y:0,w:960,h:540`. @param {unknown} text @return {number[]} */
const numbersOf = text => typeof text === 'string' ? (text.match(/-?\d+/g) ?? []).map(Number) : []

/** The place of the picture in the app's space, 960 x 540. */
const rect = () => numbersOf(tv.GetScreenRect())

/** @param {number[]} numbers */
const told = ([x, y, w, h]) => x === undefined ? 'no picture' : `x ${x} y ${y} w ${w} h ${h}`

function show() {
  const [x, y, w, h] = rect()
  Object.assign(picture.style, {left: `${x}px`, top: `${y}px`, width: `${w}px`, height: `${h}px`})
  element('mode').textContent = state.isSizing ? 'size it' : 'move it'
  element('values').textContent = [
    `app  960 x 540    ${told([x, y, w, h])}`,
    `base 1920 x 1080  ${told([x, y, w, h].map(number => 2 * number))}`,
    `crop, picture     ${told(numbersOf(tv.GetScreenCropRect(0)))}`,
    `order ${state.isInFront ? 'in front of the app' : 'behind the app'}, ${state.isMuted ? 'hidden' : 'shown'}`,
  ].join('\n')
}

/** @param {number} x @param {number} y @param {number} w @param {number} h */
function place(x, y, w, h) {
  const width = Math.round(Math.max(16, Math.min(w, 960)))
  const height = Math.round(Math.max(9, Math.min(h, 540)))
  tv.SetScreenRect(Math.round(Math.max(0, Math.min(x, 960 - width))), Math.round(Math.max(0, Math.min(y, 540 - height))), width, height)
  state.isCropped = false  // a new place ends the crop
  show()
}

/** @param {number} right @param {number} down */
function nudge(right, down) {
  const [x, y, w, h] = rect()
  if (state.isSizing) place(x, y, w + right * step, h + down * step)
  else place(x + right * step, y + down * step, w, h)
}

/** Shows the middle quarter of the picture at the picture's place. */
function crop() {
  const [x, y, w, h] = rect()
  state.isCropped = !state.isCropped
  if (!state.isCropped) tv.SetScreenRect(x, y, w, h)
  else {
    const {horizontal = 1920, vertical = 1080} = JSON.parse(tv.GetResolutionDetail())
    tv.SetScreenCropRect(horizontal / 4, vertical / 4, horizontal / 2, vertical / 2)
  }
  show()
}

function order() {
  state.isInFront = !state.isInFront
  tv.SetScreenZorder(state.isInFront ? 1 : 0)
  show()
}

function mute() {
  state.isMuted = !state.isMuted
  tv.MuteVideo(state.isMuted ? 1 : 0)
  show()
}

function whole() {
  tv.SetScreenRect(-1)
  state.isCropped = false
  show()
}

picture.onpointerdown = (/** @type {PointerEvent} */ start) => {
  const [x, y, w, h] = rect()
  const isCorner = start.target === element('corner')
  picture.setPointerCapture(start.pointerId)
  picture.onpointermove = now => {
    const right = now.clientX - start.clientX
    const down = now.clientY - start.clientY
    if (isCorner) place(x, y, w + right, h + down)
    else place(x + right, y + down, w, h)
  }
  picture.onpointerup = picture.onpointercancel = () => picture.onpointermove = null
}

/** @type {{[key: string]: () => void}} */
const keys = {
  ArrowLeft: () => nudge(-1, 0), ArrowRight: () => nudge(1, 0), ArrowUp: () => nudge(0, -1), ArrowDown: () => nudge(0, 1),
  Enter: () => { state.isSizing = !state.isSizing; show() },
  ColorF0Red: crop, ColorF1Green: order, ColorF2Yellow: mute, ColorF3Blue: whole,
}
addEventListener('keydown', event => {
  if (!keys[event.key] || event.key === 'Enter' && event.target instanceof HTMLButtonElement) return
  event.preventDefault()
  keys[event.key]()
})
// No command returns order and hiding, so both are set to the values that the app displays.
tv.SetScreenZorder(0)
tv.MuteVideo(0)
for (const [id, action] of Object.entries({crop, order, mute, whole})) element(id).onclick = action
show()

export {}  // makes this a module with its own names
