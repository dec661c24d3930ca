// SPDX-License-Identifier: MIT
// A zapper for remote controls: a channel list, numbers, channel up and down, picture-in-picture. Meant as an example
// to copy.
/** @type {any} */
const tv = /** @type {any} */ (globalThis).tvWindow
const rows = 9  // visible rows of the list

/** @param {string} id */
const element = id => /** @type {HTMLElement} */ (document.getElementById(id))

/** @type {any[]} */
let channels = []
let at = 0
let digits = ''
let timer = 0

/** The channels of the TV mode in use. @return {any[]} */
function readChannels() {
  const list = tv.GetFullChannelList()
  return typeof list === 'string' ? JSON.parse(list).TCServiceData : []  // -1: there are none
}

/** @param {string} [trouble] */
function showBanner(trouble) {
  const name = tv.GetCurrentChannel_Name()
  element('banner').textContent = trouble ?? (typeof name === 'string' ? `${tv.GetCurrentChannel_Major()}  ${name || '(no name)'}` : 'No channel')
}

function openList() {
  channels = readChannels()
  at = Math.max(0, channels.findIndex(channel => channel.MAJOR === tv.GetCurrentChannel_Major()))
  if (channels.length === 0) showBanner('The TV has no channels')
  else drawList()
}

function drawList() {
  const first = Math.max(0, Math.min(at - Math.floor(rows / 2), channels.length - rows))
  element('list').replaceChildren(...channels.slice(first, first + rows).map((channel, index) => {
    const item = document.createElement('li')
    item.textContent = `${channel.MAJOR}  ${channel.SERVICE_NAME || '(no name)'}`
    item.setAttribute('aria-current', String(first + index === at))
    return item
  }))
  element('list').hidden = false
}

function closeList() {
  element('list').hidden = true
}

/** Shows a channel in the window that is selected. @param {any} channel */
const tune = channel => tv.SetChannelByServiceid(channel.SERVICE_ID)

function zapToChosen() {
  closeList()
  showBanner(tune(channels[at]) === 1 ? undefined : `${channels[at].SERVICE_NAME} cannot be shown`)
}

/** @param {number} way  3 onward, 4 back */
function zap(way) {
  showBanner(tv.SetChannel_Seek(way, 0) === 1 ? undefined : 'There is no channel to step to')
}

/** Shows the channel selected in the list, or else the one on screen, in picture-in-picture. The second call removes it. */
function togglePicture() {
  const isOpen = !element('list').hidden
  const id = isOpen ? channels[at].SERVICE_ID : JSON.parse(tv.GetCurrentChannelInfo()).serviceId
  tv.SetWindow(1)
  if (tv.GetState_Show() !== 0 && !isOpen) tv.DisconnectSource()
  else tv.SetChannelByServiceid(id)
  tv.SetWindow(0)
  closeList()
}

/** @param {string} digit */
function typeDigit(digit) {
  digits = (digits + digit).slice(-4)
  element('number').textContent = digits
  clearTimeout(timer)
  timer = setTimeout(() => {
    showBanner(tv.SetChannel(Number(digits), 0) === 1 ? undefined : `There is no channel ${digits}`)
    element('number').textContent = digits = ''
  }, 1200)
}

/** @param {number} step */
function move(step) {
  if (element('list').hidden) return zap(step < 0 ? 3 : 4)
  at = (at + step + channels.length) % channels.length
  drawList()
}

/** @type {{[key: string]: () => void}} */
const keys = {
  ArrowUp: () => move(-1), ArrowDown: () => move(1), ChannelUp: () => zap(3), ChannelDown: () => zap(4),
  Enter: () => element('list').hidden ? openList() : zapToChosen(), Info: () => showBanner(),
  ColorF3Blue: togglePicture, PinPToggle: togglePicture, b: togglePicture,
  GoBack: closeList, Escape: closeList, Exit: closeList,
}

addEventListener('keydown', event => {
  const action = /^[0-9]$/.test(event.key) ? () => typeDigit(event.key) : keys[event.key]
  if (!action) return
  event.preventDefault()
  action()
})
showBanner()

export {}  // makes this a module with its own names
