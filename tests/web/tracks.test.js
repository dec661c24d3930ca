// SPDX-License-Identifier: MIT
// Audio tracks and subtitles of both windows and of the ISP source.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown?.close())

const group = name => shown.pane('Tracks').getByRole('group', {name})
const inUse = (name, text) => group(name).getByRole('button', {name: text, pressed: true}).waitFor()
const windows = async () => (await shown.tv.state()).windows

test('tracks are told with what they mean, and a click chooses one', async () => {
  shown = await Console.open()
  await shown.show('Tracks')
  await inUse('Audio of Main picture', /0 eng English aac AAC, 2 stereo, 0 for all/)
  await group('Audio of Main picture').getByRole('button', {name: /visually impaired/}).click()
  await inUse('Audio of Main picture', /visually impaired/)
  assert.equal((await windows()).main.tracks.audioInUse, 4)
  await group('Subtitles of Main picture').getByRole('button', {name: /deu German dvb DVB subtitle/}).click()
  await inUse('Subtitles of Main picture', /deu German/)
  assert.equal((await windows()).main.tracks.subtitleInUse, 1)
  await group('Subtitles of Main picture').getByRole('button', {name: 'off'}).click()
  await inUse('Subtitles of Main picture', /off/)
  assert.equal((await windows()).main.tracks.subtitleInUse, -1)
})

test('the second window has tracks of its own, and choosing one leaves the main window selected', async () => {
  shown = await Console.open()
  await shown.tv.window.SetWindow(1)
  await shown.tv.window.SetSource(0, 0)
  await shown.tv.window.SetChannelByServiceid('1152959734176350309')
  await shown.show('Tracks')
  await group('Audio of Picture-in-picture').getByRole('button', {name: /deu German/}).click()
  await inUse('Audio of Picture-in-picture', /deu German/)
  await group('Subtitles of Picture-in-picture').getByRole('button', {name: /eng English dvb/}).click()
  await inUse('Subtitles of Picture-in-picture', /eng English dvb/)
  await group('Audio of Main picture').getByRole('button', {name: /fra French/}).click()
  await inUse('Audio of Main picture', /fra French/)
  const {main, pip} = await windows()
  assert.deepEqual([main.tracks.audioInUse, main.tracks.subtitleInUse], [2, -1])
  assert.deepEqual([pip.tracks.audioInUse, pip.tracks.subtitleInUse], [1, 0])
})

test('those of the ISP source are chosen whether or not it is shown', async () => {
  shown = await Console.open()
  await shown.show('Tracks')
  await group('Audio of ISP source').getByRole('button', {name: /deu German/}).click()
  await inUse('Audio of ISP source', /deu German/)
  await shown.page.getByRole('button', {name: '48 ISP'}).click()
  await shown.page.getByText('shown by the second TV stack').waitFor()
  await group('Audio of ISP source').getByRole('button', {name: /E-AC-3/}).click()
  await inUse('Audio of ISP source', /E-AC-3/)
  await group('Audio of Main picture').getByRole('button', {name: /fra French/}).click()
  await inUse('Audio of Main picture', /fra French/)
  const {isp, windows: {main}} = await shown.tv.state()
  assert.deepEqual([isp.tracks.audioInUse, main.tracks.audioInUse], [2, 2])
})

test('odd tracks are told as they are', async () => {
  shown = await Console.open()
  await shown.show('Tracks')
  await shown.tv.set('service.#1.audio', '256:7:99:98:97,!257')
  await group('Audio of Main picture').getByRole('button', {name: /no known coding, 98 no known mode, 97 no known type, PID 256/}).waitFor()
  await group('Audio of Main picture').getByRole('button', {name: /can't be read/}).click()
  await inUse('Audio of Main picture', /can't be read/)
  await shown.tv.set('main.audio', 9)
  await shown.page.getByText('9 in use: no such track').waitFor()
})
