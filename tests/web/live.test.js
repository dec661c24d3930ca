// SPDX-License-Identifier: MIT
// Recordings that play in place of the test card: the picture obeys the plane as the card does, the sound is that of
// the track in use.
import assert from 'node:assert/strict'
import {mkdtempSync, renameSync, rmSync} from 'node:fs'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {after, afterEach, before, test} from 'node:test'
import {elsewhere} from '../site/support/bridge.js'
import {findings} from './support/axe.js'
import {useBrowser} from './support/console.js'
import {blue, green, makeRecording, red, run, serveRecording, tones} from './support/film.js'
import {openScreen} from './support/screen.js'

const onServers = {skip: elsewhere('a TV in a tab plays no recordings')}
const black = [0, 0, 0]

let folder
let recording
let shown
let screen
useBrowser()

before(() => {
  folder = mkdtempSync(join(tmpdir(), 'emp-window-live-'))
  recording = join(folder, 'two.ts')
  if (!onServers.skip) makeRecording(recording)
})
after(() => rmSync(folder, {recursive: true}))
afterEach(() => shown?.close())

/** Shows the recording on a TV that has no other services. */
async function open(how = {}) {
  ({shown, screen} = await openScreen({...how, server: await serveRecording(folder, recording)}))
}

/** The colour at a position in the app's space, taken from a screenshot of the page. */
async function colourAt(x, y) {
  const space = await screen.image('App space').boundingBox()
  const clip = {x: space.x + x / 960 * space.width - 1, y: space.y + y / 540 * space.height - 1, width: 2, height: 2}
  const picture = (await shown.page.screenshot({clip})).toString('base64')
  return shown.page.evaluate(async text => {
    const bytes = Uint8Array.from(atob(text), letter => letter.charCodeAt(0))
    const bitmap = await createImageBitmap(new Blob([bytes], {type: 'image/png'}))
    const context = new OffscreenCanvas(2, 2).getContext('2d')
    context.drawImage(bitmap, 0, 0)
    return [...context.getImageData(0, 0, 1, 1).data].slice(0, 3)
  }, picture)
}

/** Waits until `look` returns a value that `isRight` accepts; fails with the last value. */
async function becomes(what, look, isRight, within = 60_000) {
  const end = performance.now() + within
  for (;;) {
    const seen = await look()
    if (isRight(seen)) return
    if (performance.now() > end) assert.fail(`${what}: it is ${seen}`)
  }
}

/** Waits until a position has a colour, except for the changes made by coding. */
const isColoured = ([x, y], wanted) =>
  becomes(`${x}, ${y} is to be ${wanted}`, () => colourAt(x, y), seen => seen.every((part, at) => Math.abs(part - wanted[at]) < 48))

const left = [240, 270]
const right = [720, 270]

test('one service after the other plays', onServers, async () => {
  await open()
  await isColoured(left, red)
  await isColoured(right, green)
  for (const [channel, colour] of [[2, blue], [1, red], [2, blue]]) {
    assert.equal(await shown.tv.window.SetChannel(channel, 0), 1)
    await isColoured(left, colour)
  }
  assert.deepEqual(await findings(shown.page), [])
})

test('the picture obeys rectangle, crop and mute', onServers, async () => {
  await open()
  const {window} = shown.tv
  await isColoured(left, red)
  await window.SetScreenRect(480, 0, 480, 270)
  await isColoured([240, 135], black)
  await isColoured([600, 135], red)
  await isColoured([840, 135], green)
  await isColoured([720, 400], black)
  await shown.tv.executeWithParamList('SetScreenCropRect', [960, 0, 960, 540, 0, 0, 1920, 1080])
  await isColoured([10, 270], green)
  await isColoured([950, 270], green)
  await shown.tv.executeWithParamList('SetScreenCropRect', [0, 0, 960, 540, 0, 0, 1920, 1080])
  await isColoured([950, 270], red)
  await window.MuteVideo(1)
  await isColoured(left, black)
  await window.MuteVideo(0)
  await isColoured(left, red)
})

test('picture-in-picture plays its own service, over the main one', onServers, async () => {
  await open()
  await isColoured(left, red)
  await shown.page.getByRole('button', {name: 'Picture-in-picture', exact: true}).click()
  const inPicture = async () => (await shown.tv.state()).windows.pip.service?.name
  await becomes('a service is to be in the picture', inPicture, Boolean)
  await shown.tv.set('pip.service', `#${(await shown.tv.services({text: 'Blue'})).services[0].key}`)
  const space = await screen.image('App space').boundingBox()
  const box = await screen.image('Picture-in-picture').boundingBox()
  const scale = 960 / space.width
  await isColoured([(box.x - space.x + box.width / 2) * scale, (box.y - space.y + box.height / 2) * scale], blue)
  await isColoured(left, red)
})

/** The loudest frequency in the sound of the main window; 0 for silence. */
const loudest = () => shown.page.evaluate(async () => {
  const {video} = document.querySelector('emp-picture')
  globalThis.heard ??= (() => {
    const context = new AudioContext()
    const analyser = new AnalyserNode(context, {fftSize: 8192})
    context.createMediaElementSource(video).connect(analyser)
    return {context, analyser}
  })()
  const {context, analyser} = globalThis.heard
  await context.resume()
  const levels = new Float32Array(analyser.frequencyBinCount)
  analyser.getFloatFrequencyData(levels)
  const at = levels.indexOf(Math.max(...levels))
  return levels[at] < -60 ? 0 : at * context.sampleRate / analyser.fftSize
})

const sounds = tone => becomes(`${tone} Hz is to be heard`, loudest, heard => Math.abs(heard - tone) < 12)

test('the sound is that of the audio track in use, once a person wants to hear it', onServers, async () => {
  await open()
  await isColoured(left, red)
  await loudest()  // starts listening
  await shown.page.waitForTimeout(500)
  assert.equal(await loudest(), 0)
  await shown.page.getByRole('button', {name: 'Sound'}).press('Enter')
  await shown.page.getByRole('button', {name: 'Sound', pressed: true}).waitFor()
  await sounds(tones.eng)
  await shown.tv.set('main.audio', 1)
  await sounds(tones.deu)
  await shown.tv.window.SetChannel(2, 0)
  await sounds(tones.ita)
  await shown.page.getByRole('button', {name: 'Sound'}).click()
  await sounds(0)
})

test('little is fetched ahead, and nothing once nothing shows', onServers, async () => {
  await open()
  await isColoured(left, red)
  const ahead = () => shown.page.evaluate(() => {
    const {video} = document.querySelector('emp-picture')
    return {time: video.currentTime, ahead: video.buffered.length && video.buffered.end(video.buffered.length - 1) - video.currentTime}
  })
  await becomes('it is to play on past the end of the file', ahead, ({time}) => time > 7)
  assert.ok((await ahead()).ahead < 10, JSON.stringify(await ahead()))
  const ended = shown.page.waitForEvent('requestfailed', request => request.url().endsWith('/live/main'))
  await shown.tv.window.MuteVideo(1)
  await ended
})

test('what can not be played is told on the test card, and why', onServers, async () => {
  await open()
  await isColoured(left, red)
  renameSync(recording, `${recording}.there`)
  try {
    shown.tolerated = /status of 503/
    await shown.tv.window.SetChannel(2, 0)
    await screen.described('Main picture', 'Not played: cannot read')
    await shown.pane('Screen').getByText('Not played: cannot read').waitFor()
    await becomes('the card is to be drawn', () => shown.page.evaluate(() => document.querySelector('emp-picture').counter), counter => counter !== null)
  } finally {
    renameSync(`${recording}.there`, recording)
  }
})

/** Writes a recording of six seconds as the server sends it, with a proper end and ten pictures a second. */
function makeAnswer(path) {
  run('ffmpeg', ['-v', 'error', '-f', 'lavfi', '-i', 'color=c=0xff0000:s=320x180:r=10:d=6', '-f', 'lavfi', '-i', 'sine=440:d=6',
    ...['-c:v', 'libx264', '-profile:v', 'baseline', '-level', '3.0', '-pix_fmt', 'yuv420p', '-g', '10', '-c:a', 'aac'],
    ...['-movflags', 'frag_keyframe+empty_moov+default_base_moof', path]])
}

/** Runs in the page: records how far each opened recording has played, and how often a picture of it was drawn. */
function noteRounds() {
  globalThis.rounds = []
  const {fetch} = globalThis
  globalThis.fetch = (address, ...rest) => {
    if (String(address?.url ?? address).endsWith('/live/main')) globalThis.rounds.push({time: 0, draws: 0})
    return fetch(address, ...rest)
  }
  const {drawImage} = CanvasRenderingContext2D.prototype
  CanvasRenderingContext2D.prototype.drawImage = function (from, ...place) {
    if (from instanceof HTMLVideoElement) {
      const round = globalThis.rounds.at(-1)
      round.time = Math.max(round.time, from.currentTime)
      round.draws += 1
    }
    return drawImage.call(this, from, ...place)
  }
}

test('what ends properly plays to its end and is opened again, and each picture of it is drawn once', onServers, async () => {
  const answer = join(folder, 'answer.mp4')
  makeAnswer(answer)
  await open({before: noteRounds, prepare: page => page.route('**/live/main', route =>
    route.fulfill({path: answer, contentType: 'video/mp4; codecs="avc1.42C01E, mp4a.40.2"'}))})
  const rounds = () => shown.page.evaluate(() => globalThis.rounds)
  await becomes('it is to be opened a fourth time', async () => (await rounds()).length, opened => opened > 3)
  for (const {time, draws} of (await rounds()).slice(0, 3)) {
    assert.ok(time > 5, `it played for ${time} s`)
    assert.ok(draws <= 75, `${draws} draws of 60 pictures`)
  }
})
