// SPDX-License-Identifier: MIT
// Pictures on the page's screen: test cards and what replaces them, what is black, what moves and how often.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {until} from '../client/support/wait.js'
import {useBrowser} from './support/console.js'
import {openScreen} from './support/screen.js'

let shown
let screen
useBrowser()
afterEach(() => shown?.close())

async function open(how) {
  ({shown, screen} = await openScreen(how))
}

test('no signal, no source, inputs, the ISP source and radio have cards of their own', async () => {
  await open()
  const cards = [await screen.drawing()]
  const next = async text => {
    await screen.described('Main picture', text)
    cards.push(await screen.drawing())
  }
  await shown.tv.window.SetSource(33)
  await next('No signal, HDMI 3')
  await shown.tv.window.SetSource(35)
  await next('SCART, 720 x 576, 25 pictures a second')
  await shown.tv.window.DisconnectSource()
  await next('No source')
  await shown.tv.window.SetSource(48)
  await next('ISP, 1920 x 1080, Audio eng')
  await shown.tv.window.SetSource(0)
  await shown.tv.set('main.service', '#29')
  await next('Lighthouse Radio 1, Radio, Antenna')
  await shown.tv.set('main.service', '#33')
  await next('Set Updates, Data service, Antenna')
  await shown.tv.set('main.service', '0')
  await next('No service')
  await shown.tv.set('main.source', '99')
  await next('No picture, Source 99')
  assert.equal(new Set(cards).size, cards.length)
})

test('cards differ between services, and stay the same for one', async () => {
  await open()
  const looks = await shown.page.evaluate(async () => {
    const {accentOf, drawStill, movingParts} = await import(new URL('page/card.js', location.href).href)
    const draw = (seed, counter) => {
      const canvas = document.createElement('canvas')
      canvas.width = 960
      canvas.height = 540
      const context = canvas.getContext('2d')
      const card = {kind: 'service', seed, title: 'The same', number: '1', lines: ['a', 'b'], rate: 25}
      drawStill(context, 960, card)
      for (const part of movingParts(960, card, accentOf(card), {counter, time: new Date(2026, 0, 1, 12, 0, 0), isCalm: false})) part.draw(context)
      return canvas.toDataURL()
    }
    const many = Array.from({length: 100}, (_, at) => draw(`${1152959734176350309n + BigInt(at)}`, 7))
    return {distinct: new Set(many).size, isSame: draw('5', 7) === draw('5', 7), isAnotherPicture: draw('5', 7) !== draw('5', 8)}
  })
  assert.deepEqual(looks, {distinct: 100, isSame: true, isAnotherPicture: true})
})

test('what does not fill the plane has black around it: narrow pictures, and formats told by the broadcaster', async () => {
  await open()
  await shown.tv.set('service.#1.active_format', 9)
  await until(async () => await screen.colourAt(60, 400) === 'black' && await screen.colourAt(900, 400) === 'black' && await screen.colourAt(480, 400) !== 'black', 'black bars')
  const {active} = (await shown.tv.state()).windows.main.plane.app
  assert.equal(active.x, 120)
  assert.equal(await screen.colourAt(active.x - 2, 400), 'black')
  assert.notEqual(await screen.colourAt(active.x + 2, 400), 'black')
  await shown.tv.window.SetSource(35)
  await screen.described('Main picture', 'SCART')
  await until(async () => await screen.colourAt(118, 400) === 'black' && await screen.colourAt(122, 400) !== 'black', 'black bars')
  await shown.tv.set('service.#1.active_format', 8)
  await shown.tv.window.SetSource(0)
  await until(async () => await screen.colourAt(60, 400) !== 'black', 'no bars')
})

test('a crop shows that part of the picture where it was put', async () => {
  await open()
  await until(async () => await screen.colourAt(480, 270) !== 'black', 'a picture')
  await shown.tv.window.MuteVideo(0)
  // Shows the corner with the counter at twice its size.
  await shown.tv.executeWithParamList('SetScreenCropRect', [0, 0, 480, 270, 480, 270, 960, 540])
  await screen.described('Main picture', 'cropped to 0,0 480x270, placed at 0,0 960x540')
  await screen.assertPlace('Main picture', [240, 135, 480, 270])
  assert.equal(await screen.colourAt(100, 100), 'black')
  const ground = await screen.colourAt(240 + 2 * 14, 135 + 2 * 20)
  await shown.tv.window.SetScreenRect(-1, 0, 0, 0)
  await screen.described('Main picture', 'at 0,0 960x540')
  assert.equal(await until(async () => { const colour = await screen.colourAt(14, 20); return colour === ground && colour }, 'a picture'), ground)
  // Parts beyond the picture are black.
  await shown.tv.executeWithParamList('SetScreenCropRect', [-1920, 0, 3840, 1080, 0, 0, 1920, 1080])
  await until(async () => await screen.colourAt(200, 270) === 'black' && await screen.colourAt(700, 270) !== 'black', 'black on the left')
})

test('the counter steps with each picture, at the rate of the source', async () => {
  await open()
  await shown.page.emulateMedia({reducedMotion: 'no-preference'})
  const rate = async () => await shown.page.evaluate(() => new Promise(resolve => {
    const picture = document.querySelector('emp-picture')
    const first = picture.counter
    const start = performance.now()
    const check = () => {
      const elapsed = performance.now() - start
      if (elapsed < 800) setTimeout(check, 10)
      else resolve((picture.counter - first) * 1000 / elapsed)
    }
    check()
  }))
  await until(async () => Math.abs(await rate() - 25) < 4, '25 a second')
  const before = await screen.drawing()
  await until(async () => await screen.drawing() !== before, 'another picture')
  await shown.tv.window.SetSource(32)
  await screen.described('Main picture', '50 pictures a second')
  await until(async () => Math.abs(await rate() - 50) < 6, '50 a second')
})

test('a tab that is not seen draws nothing', async () => {
  await open()
  await shown.page.emulateMedia({reducedMotion: 'no-preference'})
  const turn = isHidden => shown.page.evaluate(value => {
    Object.defineProperty(document, 'hidden', {value, configurable: true})
    document.dispatchEvent(new Event('visibilitychange'))
    return document.querySelector('emp-picture').counter
  }, isHidden)
  await until(() => shown.page.evaluate(() => document.querySelector('emp-picture').counter > 3), 'pictures')
  const [counter, picture] = [await turn(true), await screen.drawing()]
  await shown.page.evaluate(() => new Promise(resolve => setTimeout(resolve, 300)))
  assert.equal(await screen.drawing(), picture)
  assert.ok(await turn(false) >= counter + 6, 'it has not gone on by as much as has passed')
})

test('rectangles, parts and rates as large or small as there are cost no more drawing than others', async () => {
  await open()
  await countDrawing(shown.page)
  const most = 2 ** 31 - 1
  for (const crop of [[100, 100, 1, 1, 0, 0, 1920, 1080], [0, 0, most, most, 0, 0, 1920, 1080], [-most - 1, -most - 1, most, most, 0, 0, 1920, 1080],
    [0, 0, 1920, 1080, -1000000, -1000000, most, most], [0, 0, 1, 1, -1000000, -1000000, most, most], [0, 0, 1920, 1080, 0, 0, 1, 1]]) {
    assert.equal(await shown.tv.executeWithParamList('SetScreenCropRect', crop), 1)
    await screen.described('Main picture', `base ${crop[4]},${crop[5]} ${crop[6]}x${crop[7]}`)
  }
  await shown.tv.window.SetScreenRect(-1, 0, 0, 0)
  await shown.tv.set('service.#1.picture_width', most)
  await shown.tv.set('service.#1.picture_height', 1)
  await shown.tv.set('service.#1.frame_rate', most)
  await screen.described('Main picture', `${most}x1@${most}`)
  const {calls, pixels} = await shown.page.evaluate(() => globalThis.drawing)
  assert.ok(calls > 0 && calls <= 500, `${calls} calls to draw in a frame`)
  assert.ok(pixels <= 1920 * 1080, `a canvas of ${pixels} pixels`)
})

/** Records in `drawing` of the page the most drawing calls in a frame, and the pixels of the largest canvas drawn
 *  on. */
async function countDrawing(page) {
  await page.evaluate(() => {
    const drawing = globalThis.drawing = {calls: 0, pixels: 0}
    const prototype = CanvasRenderingContext2D.prototype
    let calls = 0
    for (const [name, {value}] of Object.entries(Object.getOwnPropertyDescriptors(prototype))) {
      if (typeof value !== 'function') continue
      prototype[name] = function (...parameters) {
        drawing.calls = Math.max(drawing.calls, ++calls)
        drawing.pixels = Math.max(drawing.pixels, this.canvas.width * this.canvas.height)
        return value.apply(this, parameters)
      }
    }
    const count = () => {
      calls = 0
      requestAnimationFrame(count)
    }
    count()
  })
}

test('with reduced motion the mark rests, and counter and clock step once a second', async () => {
  await open()
  const {counters, marks} = await shown.page.evaluate(() => new Promise(resolve => {
    const picture = document.querySelector('emp-picture')
    const {canvas} = picture
    const seen = {counters: [], marks: []}
    const take = () => {
      if (seen.counters.at(-1) !== picture.counter) {
        seen.counters.push(picture.counter)
        const top = Math.floor(canvas.height * 304 / 540)
        seen.marks.push(canvas.getContext('2d').getImageData(0, top, canvas.width, 8).data.join())
      }
      if (seen.counters.length < 4) setTimeout(take, 10)
      else resolve({counters: seen.counters, marks: new Set(seen.marks).size})
    }
    take()
  }))
  for (let at = 2; at < counters.length; ++at) assert.ok(Math.abs(counters[at] - counters[at - 1] - 25) < 8, counters.join())
  assert.equal(marks, 1)
})

test('a fading tuner covers its pictures with noise, not those of inputs', async () => {
  await open()
  await until(async () => await screen.colourAt(480, 270) !== 'black', 'a picture')
  // The average difference between neighbouring pixels of an even background.
  const roughness = () => shown.page.evaluate(() => {
    const {canvas} = document.querySelector('emp-picture')
    const {data} = canvas.getContext('2d').getImageData(Math.floor(canvas.width * 0.7), Math.floor(canvas.height * 0.94), 40, 10)
    let sum = 0
    for (let at = 4; at < data.length; at += 4) sum += Math.abs(data[at] - data[at - 4])
    return sum / (data.length / 4)
  })
  const clear = await roughness()
  await shown.tv.set('tuner.fade', 60)
  await screen.described('Main picture', '1920x1080@25, signal fades by 60 of 255, at 0,0')
  const some = await until(async () => { const now = await roughness(); return now > clear + 5 && now }, 'noise')
  await shown.tv.set('tuner.fade', 255)
  await until(async () => await roughness() > 1.5 * some, 'more noise')
  await shown.tv.window.SetSource(31)
  await screen.described('Main picture', 'HDMI 1')
  await until(async () => await roughness() < 30, 'no noise')
  assert.doesNotMatch(await screen.image('Main picture').getAttribute('aria-description'), /fades/)
})
