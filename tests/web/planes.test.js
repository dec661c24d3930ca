// SPDX-License-Identifier: MIT
// The inspector of planes: what it shows of them in both spaces, and placing them with it.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {until} from '../client/support/wait.js'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown?.close())

/** Opens the pane. @return its part about a window */
async function openPlanes(name = 'Main picture', how = {}) {
  shown = await Console.open(how)
  const pane = await shown.show('Planes')
  return pane.getByRole('region', {name, exact: true})
}

const row = (part, name) => part.locator('tr').filter({has: shown.page.getByRole('rowheader', {name, exact: true})})
const plane = async id => (await shown.tv.state()).windows[id].plane
/** Waits until a row contains a text. */
const tells = (part, name, text) => row(part, name).filter({hasText: text}).waitFor()

test('rectangles stand in both spaces, side by side, with what is lost between them', async () => {
  const part = await openPlanes()
  await tells(part, 'Place', '0,0,960,5400,0,1920,1080')
  await tells(part, 'Order', '0 behind the app')
  await tells(part, 'Hidden', 'off')
  await tells(part, 'Outside', 'nothing')
  await tells(part, 'Crop', 'none: all of 1920x1080@25')
  await shown.tv.executeWithParamList('SetScreenCropRect', [10, 20, 960, 540, 481, 270, 961, 541])
  await tells(part, 'Crop', '10,20,960,540 of 1920x1080@25')
  await tells(part, 'Shown at', '241,135,481,271481,270,961,541')
  await part.getByText('and back: 482,270,962,542').waitFor()
  const {app, base} = await plane('main')
  const lost = ['x', 'y', 'width', 'height'].filter(side => app.display[side] * 2 !== base.display[side])
  assert.deepEqual(lost, ['x', 'width', 'height'])
  await part.getByTitle('Rounded: x, width, height', {exact: true}).waitFor()
  assert.equal(await row(part, 'Place').locator('xpath=following-sibling::tr[1]').textContent(), 'and back: the same')
})

test('a window is placed by its form, the other one stays', async () => {
  const part = await openPlanes('Picture-in-picture')
  const form = part.getByRole('form', {name: 'Place of Picture-in-picture'})
  for (const [side, value] of Object.entries({x: 500, y: 30, width: 400, height: 225})) await form.getByLabel(side, {exact: true}).fill(String(value))
  await form.getByText('base 1000,60,800,450').waitFor()
  await form.getByRole('button', {name: 'Place'}).click()
  await tells(part, 'Place', '500,30,400,2251000,60,800,450')
  assert.deepEqual((await plane('pip')).base.rect, {x: 1000, y: 60, width: 800, height: 450})
  assert.deepEqual((await plane('main')).base.rect, {x: 0, y: 0, width: 1920, height: 1080})
  await shown.page.getByRole('contentinfo').getByText('> SetScreenRect 500 30 400 225').waitFor()
  await form.getByLabel('x', {exact: true}).fill('940')
  await shown.page.keyboard.press('Enter')
  await tells(part, 'Outside', '380 px beyond the right edge')
  await form.getByRole('button', {name: 'Default'}).click()
  await tells(part, 'Place', '648,351,288,162')
  assert.equal(await form.getByLabel('x', {exact: true}).inputValue(), '648')
})

test('order and hiding are switched, of the window that is meant', async () => {
  const part = await openPlanes('Picture-in-picture')
  await part.getByRole('button', {name: 'In front'}).click()
  await tells(part, 'Order', '2 in front of the app')
  await part.getByRole('button', {name: 'Hidden', exact: true}).click()
  await tells(part, 'Hidden', 'on the picture is not seen')
  assert.equal(await part.getByRole('button', {name: 'Hidden', exact: true}).getAttribute('aria-pressed'), 'true')
  const {order, muted} = await plane('pip')
  assert.deepEqual([order, muted], [2, true])
  const main = await plane('main')
  assert.deepEqual([main.order, main.muted], [0, false])
  await part.getByRole('button', {name: 'Shown', exact: true}).click()
  await part.getByRole('button', {name: 'Behind the app'}).click()
  await tells(part, 'Order', '0 behind the app')
})

test('a crop is set and ended', async () => {
  const part = await openPlanes()
  await part.locator('summary').click()
  const form = part.getByRole('form', {name: 'Crop of Main picture'})
  for (const [name, value] of Object.entries({'crop x': 100, 'crop y': 50, 'crop width': 960, 'crop height': 540, 'display x': 960, 'display y': 0, 'display width': 960, 'display height': 540})) {
    await form.getByLabel(name, {exact: true}).fill(String(value))
  }
  await form.getByRole('button', {name: 'Crop', exact: true}).click()
  await tells(part, 'Crop', '100,50,960,540')
  const {crop, base} = await plane('main')
  assert.deepEqual(crop, {x: 100, y: 50, width: 960, height: 540})
  assert.deepEqual(base.display, {x: 960, y: 0, width: 960, height: 540})
  await form.getByRole('button', {name: 'End crop'}).click()
  await tells(part, 'Crop', 'none')
  assert.equal((await plane('main')).crop, null)
})

test('what the set refuses is told, with the command and its answer', async () => {
  const part = await openPlanes()
  const form = part.getByRole('form', {name: 'Place of Main picture'})
  await form.getByLabel('width', {exact: true}).fill('0')
  await form.getByRole('button', {name: 'Place'}).click()
  await part.getByText('SetScreenRect: 0 The set refuses the rectangle').waitFor()
  await form.getByLabel('width', {exact: true}).fill('480')
  await form.getByRole('button', {name: 'Place'}).click()
  await part.getByText('SetScreenRect: 0').waitFor({state: 'detached'})
  assert.equal((await plane('main')).app.rect.width, 480)
})

test('a value is copied by a click', async () => {
  const part = await openPlanes()
  await shown.page.context().grantPermissions(['clipboard-read', 'clipboard-write'])
  await part.getByRole('button', {name: '0,0,1920,1080, copy main Place, base'}).click()
  await until(async () => await shown.page.evaluate(() => navigator.clipboard.readText()) === '0,0,1920,1080')
})

test('planes of the past are shown, and cannot be changed', async () => {
  const part = await openPlanes()
  const past = await shown.tv.state()
  past.windows.main.plane.app.rect.x = 77
  await shown.page.evaluate(async state => {
    const {store} = await import(new URL('page/store.js', location.href).href)
    store.set('past', {command: 1, entry: {event: {name: 'SetScreenRect', parameters: []}}, state})
  }, past)
  await tells(part, 'Place', '77,0,960,540')
  assert.ok(await part.getByRole('button', {name: 'Place', exact: true}).isDisabled())
  await shown.page.getByRole('button', {name: 'Back to now'}).click()
  await tells(part, 'Place', '0,0,960,540')
  assert.ok(await part.getByRole('button', {name: 'Place', exact: true}).isEnabled())
})
