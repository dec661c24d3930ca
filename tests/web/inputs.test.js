// SPDX-License-Identifier: MIT
// The inputs: what is plugged in, the signal on each of them, and which one is shown.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown?.close())

const inputs = () => shown.page.getByRole('region', {name: 'Inputs'})
const inputOf = async name => (await shown.tv.state()).inputs.find(input => input.name === name)

test('each input has its number for commands, and a click shows it', async () => {
  shown = await Console.open()
  const scart = inputs().getByRole('button', {name: '35 SCART'})
  await scart.click()
  await inputs().getByRole('button', {name: '35 SCART', pressed: true}).waitFor()
  assert.equal((await shown.tv.state()).windows.main.source.number, 17)
  assert.equal(await shown.tv.window.GetSource(), 35)
  await inputs().getByRole('button', {name: '0 Antenna'}).click()
  await inputs().getByRole('button', {name: '0 Antenna', pressed: true}).waitFor()
  assert.ok(await inputs().getByRole('button', {name: '53 USB'}).isDisabled(), 'no command switches to it')
})

test('an input is plugged in and out', async () => {
  shown = await Console.open()
  const plug = inputs().getByRole('switch', {name: 'HDMI 3 plugged in'})
  await plug.click()
  await inputs().getByRole('switch', {name: 'HDMI 3 plugged in', checked: true}).waitFor()
  assert.equal((await inputOf('HDMI 3')).plugged, true)
  await plug.click()
  await inputs().getByRole('switch', {name: 'HDMI 3 plugged in', checked: false}).waitFor()
  assert.equal((await inputOf('HDMI 3')).plugged, false)
})

test('the picture of an input can be changed, and what the set refuses says why', async () => {
  shown = await Console.open()
  await inputs().getByRole('button', {name: 'Picture of PC'}).click()
  await inputs().getByLabel('Width').fill('0')
  await inputs().getByRole('button', {name: 'Set', exact: true}).click()
  await inputs().getByRole('alert').filter({hasText: 'WIDTHxHEIGHT@RATE is wanted'}).waitFor()
  await inputs().getByLabel('Width').fill('800')
  await inputs().getByLabel('Height').fill('600')
  await inputs().getByLabel('Rate').fill('75')
  await shown.page.keyboard.press('Enter')
  await inputs().getByText('800x600@75').waitFor()
  const {width, height, rate} = (await inputOf('PC')).picture
  assert.deepEqual([width, height, rate], [800, 600, 75])
  await inputs().getByRole('form').waitFor({state: 'detached'})
})

test('the ISP source can be shown and taken away', async () => {
  shown = await Console.open()
  await inputs().getByRole('button', {name: '48 ISP'}).click()
  await inputs().getByRole('button', {name: '48 ISP', pressed: true}).waitFor()
  assert.equal((await shown.tv.state()).isp.shown, true)
  await inputs().getByRole('switch', {name: 'ISP source plugged in'}).click()
  await inputs().getByRole('switch', {name: 'ISP source plugged in', checked: false}).waitFor()
  assert.equal((await shown.tv.state()).isp.present, false)
})

test('what others do shows here', async () => {
  shown = await Console.open()
  await shown.tv.set('input.1.plugged', 'on')
  await inputs().getByRole('switch', {name: 'AV plugged in', checked: true}).waitFor()
  await shown.tv.window.SetSource(31, 0)
  await inputs().getByRole('button', {name: '31 HDMI 1', pressed: true}).waitFor()
})
