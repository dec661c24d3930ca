// What the page shows of the TV's picture: where it stands, what is on it, what lies over what, and what a person reads there.
import assert from 'node:assert/strict'
import {after, afterEach, before, test} from 'node:test'
import {endServers} from '../client/support/server.js'
import {closeBrowser, Console, openBrowser} from './support/console.js'

let shown
before(openBrowser)
after(async () => {
  await closeBrowser()
  endServers()
})
afterEach(() => shown?.close())

const image = name => shown.page.getByRole('img', {name, exact: true})
const described = (name, text) => shown.page.locator(`[role=img][aria-label="${name}"][aria-description*="${text}"]`).waitFor({state: 'attached'})

/** Where an element stands, in the app's space. */
async function placeOf(name) {
  const space = await image('App space').boundingBox()
  const box = await image(name).boundingBox()
  const scale = 960 / space.width
  return {x: (box.x - space.x) * scale, y: (box.y - space.y) * scale, width: box.width * scale, height: box.height * scale}
}

async function assertPlace(name, [x, y, width, height]) {
  const place = await placeOf(name)
  for (const [side, wanted] of Object.entries({x, y, width, height})) {
    assert.ok(Math.abs(place[side] - wanted) < 0.1, `${name}: ${side} ${place[side]}, not ${wanted}`)
  }
}

/** Calls a function until it answers something. */
async function until(what, ask) {
  const end = Date.now() + 20_000
  for (;;) {
    const answer = await ask()
    if (answer) return answer
    if (Date.now() > end) assert.fail(`never: ${what}`)
    await new Promise(resolve => setTimeout(resolve, 20))
  }
}

/** The colour at a place of the app's space, as it is seen: 'black', or another one. */
async function colourAt(x, y) {
  return await shown.page.evaluate(([left, top]) => {
    const frame = document.querySelector('.frame').getBoundingClientRect()
    const at = [frame.left + left / 960 * frame.width, frame.top + top / 540 * frame.height]
    const over = [...document.querySelectorAll('emp-picture')].filter(({canvas}) => !canvas.hidden).map(picture => ({picture, box: picture.getBoundingClientRect()}))
      .filter(({box}) => at[0] >= box.left && at[0] < box.right && at[1] >= box.top && at[1] < box.bottom)
      .sort((one, other) => other.picture.style.zIndex - one.picture.style.zIndex)[0]
    if (!over) return 'black'
    const {canvas} = over.picture
    const [red, green, blue] = canvas.getContext('2d').getImageData((at[0] - over.box.left) / over.box.width * canvas.width, (at[1] - over.box.top) / over.box.height * canvas.height, 1, 1).data
    return red + green + blue === 0 ? 'black' : `${red} ${green} ${blue}`
  }, [x, y])
}

/** What stands on a window's canvas, as a text. */
const drawing = (id = 'main') => shown.page.evaluate(key => [...document.querySelectorAll('emp-picture')].find(picture => picture.shown.id === key).canvas.toDataURL(), id)

test('the space is as large as fits and keeps its shape, on a narrow page over the full width', async () => {
  shown = await Console.open()
  const pane = await shown.pane('Screen').boundingBox()
  const box = await image('App space').boundingBox()
  assert.ok(Math.abs(box.width / box.height - 16 / 9) < 0.01)
  assert.ok(box.height > pane.height - 120 || box.width > pane.width - 60, JSON.stringify(box))
  await shown.page.setViewportSize({width: 390, height: 844})
  const wanted = await until('full width', async () => {
    const now = await image('App space').boundingBox()
    return now.width === 390 && now
  })
  assert.ok(Math.abs(wanted.height - 390 * 9 / 16) < 1)
})

test('what is tuned to is told on the picture and beside it', async () => {
  shown = await Console.open()
  await described('Main picture', '1 Lighthouse One')
  await shown.tv.window.SetChannel(3, 0)
  await described('Main picture', '3 Lighthouse News, Antenna, terrestrial, Audio eng, subtitles off, 1920x1080@25')
  await shown.pane('Screen').getByText('3 Lighthouse News').waitFor()
  await shown.tv.window.ChangeSubtitle(0)
  await described('Main picture', 'subtitles eng')
})

test('a picture stands where it was placed, be it small, large or outside', async () => {
  shown = await Console.open()
  await assertPlace('Main picture', [0, 0, 960, 540])
  for (const given of [[640, 20, 300, 169], [5, 7, 1, 1], [900, 500, 200, 120], [1000, 600, 96, 54], [0, 0, 3000, 2000]]) {
    assert.equal(await shown.tv.window.SetScreenRect(...given), 1)
    const [x, y, width, height] = given
    await described('Main picture', `at ${x},${y} ${width}x${height}`)
    await assertPlace('Main picture', given)
    await assertPlace('Picture-in-picture', [648, 351, 288, 162])
    const over = await shown.page.evaluate(() => [document.documentElement.scrollWidth - innerWidth, document.querySelector('#screen').scrollWidth - document.querySelector('#screen').clientWidth])
    assert.deepEqual(over, [0, 0])
  }
})

test('what lies beyond the edges is told, with an arrow where nothing of it can be seen', async () => {
  shown = await Console.open()
  await shown.tv.window.SetScreenRect(900, 100, 100, 60)
  await described('Main picture', '40 px beyond the right edge')
  assert.equal(await shown.page.locator('.arrow').count(), 0)
  await shown.tv.window.SetScreenRect(1100, 700, 100, 60)
  await described('Main picture', 'outside: 140 px from the right edge, 160 px from the lower edge')
  assert.equal(await shown.page.locator('.arrow').textContent(), 'main \u2192 140 px \u2193 160 px')
  const arrow = await shown.page.locator('.arrow').boundingBox()
  const space = await image('App space').boundingBox()
  assert.ok(arrow.x + arrow.width <= space.x + space.width + 1 && arrow.y + arrow.height <= space.y + space.height + 1)
})

test('picture-in-picture lies in front, and orders change that, also towards an app', async () => {
  shown = await Console.open()
  await shown.tv.window.SetWindow(1)
  await shown.tv.window.SetSource(32)
  await described('Picture-in-picture', 'HDMI 2, 3840 x 2160')
  await shown.page.evaluate(() => {
    const app = document.createElement('div')
    app.style.cssText = 'width: 960px; height: 540px'
    app.setAttribute('aria-label', 'app')
    document.querySelector('.app-layer').append(app)
  })
  const front = async () => await shown.page.evaluate(() => {
    const {left, top, width} = document.querySelector('.frame').getBoundingClientRect()
    return document.elementsFromPoint(left + 700 / 960 * width, top + 400 / 960 * width).map(element => element.getAttribute('aria-label')).filter(Boolean).slice(0, 3)
  })
  assert.deepEqual(await front(), ['app', 'Picture-in-picture', 'Main picture'])
  await shown.tv.window.SetWindow(0)
  await shown.tv.window.SetScreenZorder(1)
  await described('Main picture', 'in front of the app')
  assert.deepEqual(await front(), ['Main picture', 'app', 'Picture-in-picture'])
  await shown.tv.window.SetWindow(1)
  await shown.tv.window.SetScreenZorder(1)
  await described('Picture-in-picture', 'in front of the app')
  assert.deepEqual(await front(), ['Picture-in-picture', 'Main picture', 'app'])
})

test('the layer of an app has 960 x 540 of its own pixels and is as large as the space', async () => {
  shown = await Console.open()
  const layer = shown.page.locator('.app-layer')
  assert.deepEqual(await layer.evaluate(element => [element.offsetWidth, element.offsetHeight]), [960, 540])
  const {width, height} = await image('App space').boundingBox()
  const box = await layer.boundingBox()
  assert.ok(Math.abs(box.width - width) < 1 && Math.abs(box.height - height) < 1)
})

test('a hidden picture is not seen, but where it is', async () => {
  shown = await Console.open()
  await until('a picture', async () => await colourAt(480, 300) !== 'black')
  await shown.tv.window.MuteVideo(1)
  await shown.page.getByText('main hidden').waitFor()
  assert.equal(await colourAt(480, 300), 'black')
  await assertPlace('Main picture', [0, 0, 960, 540])
  await shown.tv.window.MuteVideo(0)
  await until('a picture', async () => await colourAt(480, 300) !== 'black')
})

test('no signal, no source, inputs, the ISP source and radio have cards of their own', async () => {
  shown = await Console.open()
  const cards = [await drawing()]
  const next = async text => {
    await described('Main picture', text)
    cards.push(await drawing())
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
  shown = await Console.open()
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
  shown = await Console.open()
  await shown.tv.set('service.#1.active_format', 9)
  await until('black bars', async () => await colourAt(60, 400) === 'black' && await colourAt(900, 400) === 'black' && await colourAt(480, 400) !== 'black')
  const {active} = (await shown.tv.state()).windows.main.plane.app
  assert.equal(active.x, 120)
  assert.equal(await colourAt(active.x - 2, 400), 'black')
  assert.notEqual(await colourAt(active.x + 2, 400), 'black')
  await shown.tv.window.SetSource(35)
  await described('Main picture', 'SCART')
  await until('black bars', async () => await colourAt(118, 400) === 'black' && await colourAt(122, 400) !== 'black')
  await shown.tv.set('service.#1.active_format', 8)
  await shown.tv.window.SetSource(0)
  await until('no bars', async () => await colourAt(60, 400) !== 'black')
})

test('a crop shows that part of the picture where it was put', async () => {
  shown = await Console.open()
  await until('a picture', async () => await colourAt(480, 270) !== 'black')
  await shown.tv.window.MuteVideo(0)
  // The corner with the counter, twice as large as it was.
  await shown.tv.executeWithParamList('SetScreenCropRect', [0, 0, 480, 270, 480, 270, 960, 540])
  await described('Main picture', 'cropped to 0,0 480x270, placed at 0,0 960x540')
  await assertPlace('Main picture', [240, 135, 480, 270])
  assert.equal(await colourAt(100, 100), 'black')
  const ground = await colourAt(240 + 2 * 14, 135 + 2 * 20)
  await shown.tv.window.SetScreenRect(-1, 0, 0, 0)
  await described('Main picture', 'at 0,0 960x540')
  assert.equal(await until('a picture', async () => { const colour = await colourAt(14, 20); return colour === ground && colour }), ground)
  // A part beyond the picture is black.
  await shown.tv.executeWithParamList('SetScreenCropRect', [-1920, 0, 3840, 1080, 0, 0, 1920, 1080])
  await until('black on the left', async () => await colourAt(200, 270) === 'black' && await colourAt(700, 270) !== 'black')
})

test('pointing reads both spaces, the plane and its pixel; arrow keys move a crosshair', async () => {
  shown = await Console.open()
  await shown.tv.window.SetScreenRect(100, 50, 480, 270)
  await described('Main picture', 'at 100,50 480x270')
  const line = shown.page.locator('.position')
  const point = async (x, y) => {
    const {x: left, y: top, width} = await image('App space').boundingBox()
    await shown.page.mouse.move(left + (x + 0.5) * width / 960, top + (y + 0.5) * width / 960)
  }
  const reads = text => until(text, async () => await line.textContent() === text)
  await point(412, 96)
  await reads('x 412 y 96 app - 824, 192 base - plane main 100,50 480x270 - pixel 1248, 184 of 1920x1080')
  await point(20, 500)
  await reads('x 20 y 500 app - 40, 1000 base - no plane')
  await point(-10, 20)
  await reads('x -10 y 20 app - -20, 40 base - outside of the space')
  await image('App space').focus()
  await shown.page.keyboard.press('ArrowRight')
  await reads('x 481 y 270 app - 962, 540 base - plane main 100,50 480x270 - pixel 1524, 880 of 1920x1080')
  await shown.page.keyboard.press('Shift+ArrowDown')
  await reads('x 481 y 280 app - 962, 560 base - plane main 100,50 480x270 - pixel 1524, 920 of 1920x1080')
  for (let at = 0; at < 30; ++at) await shown.page.keyboard.press('Shift+ArrowDown')
  await reads('x 481 y 539 app - 962, 1078 base - no plane')
  assert.equal(await line.getAttribute('aria-live'), 'polite')
})

test('the counter steps with each picture, at the rate of the source', async () => {
  shown = await Console.open()
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
  await until('25 a second', async () => Math.abs(await rate() - 25) < 4)
  const before = await drawing()
  await until('another picture', async () => await drawing() !== before)
  await shown.tv.window.SetSource(32)
  await described('Main picture', '50 pictures a second')
  await until('50 a second', async () => Math.abs(await rate() - 50) < 6)
})

test('a tab that is not seen draws nothing', async () => {
  shown = await Console.open()
  await shown.page.emulateMedia({reducedMotion: 'no-preference'})
  const turn = isHidden => shown.page.evaluate(value => {
    Object.defineProperty(document, 'hidden', {value, configurable: true})
    document.dispatchEvent(new Event('visibilitychange'))
    return document.querySelector('emp-picture').counter
  }, isHidden)
  await until('pictures', () => shown.page.evaluate(() => document.querySelector('emp-picture').counter > 3))
  const [counter, picture] = [await turn(true), await drawing()]
  await shown.page.evaluate(() => new Promise(resolve => setTimeout(resolve, 300)))
  assert.equal(await drawing(), picture)
  assert.ok(await turn(false) >= counter + 6, 'it has not gone on by as much as has passed')
})

test('rectangles, parts and rates as large or small as there are leave the page quick', async () => {
  shown = await Console.open()
  await shown.page.evaluate(() => {
    globalThis.longest = 0
    new PerformanceObserver(list => list.getEntries().forEach(({duration}) => { globalThis.longest = Math.max(globalThis.longest, duration) })).observe({entryTypes: ['longtask']})
  })
  const most = 2 ** 31 - 1
  for (const crop of [[100, 100, 1, 1, 0, 0, 1920, 1080], [0, 0, most, most, 0, 0, 1920, 1080], [-most - 1, -most - 1, most, most, 0, 0, 1920, 1080],
    [0, 0, 1920, 1080, -1000000, -1000000, most, most], [0, 0, 1, 1, -1000000, -1000000, most, most], [0, 0, 1920, 1080, 0, 0, 1, 1]]) {
    assert.equal(await shown.tv.executeWithParamList('SetScreenCropRect', crop), 1)
    await described('Main picture', `base ${crop[4]},${crop[5]} ${crop[6]}x${crop[7]}`)
  }
  await shown.tv.window.SetScreenRect(-1, 0, 0, 0)
  await shown.tv.set('service.#1.picture_width', most)
  await shown.tv.set('service.#1.picture_height', 1)
  await shown.tv.set('service.#1.frame_rate', most)
  await described('Main picture', `${most}x1@${most}`)
  const longest = await shown.page.evaluate(() => globalThis.longest)
  assert.ok(longest < 500, `a task of ${longest} ms`)
})

test('with reduced motion the mark rests, and counter and clock step once a second', async () => {
  shown = await Console.open()
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
  shown = await Console.open()
  await until('a picture', async () => await colourAt(480, 270) !== 'black')
  // How much neighbouring pixels of an even ground differ.
  const roughness = () => shown.page.evaluate(() => {
    const {canvas} = document.querySelector('emp-picture')
    const {data} = canvas.getContext('2d').getImageData(Math.floor(canvas.width * 0.7), Math.floor(canvas.height * 0.94), 40, 10)
    let sum = 0
    for (let at = 4; at < data.length; at += 4) sum += Math.abs(data[at] - data[at - 4])
    return sum / (data.length / 4)
  })
  const clear = await roughness()
  await shown.tv.set('tuner.fade', 60)
  const some = await until('noise', async () => { const now = await roughness(); return now > clear + 5 && now })
  await shown.tv.set('tuner.fade', 255)
  await until('more noise', async () => await roughness() > 1.5 * some)
  await shown.tv.window.SetSource(31)
  await described('Main picture', 'HDMI 1')
  await until('no noise', async () => await roughness() < 30)
})

test('a state of the past stands still, says so, and leads back to now', async () => {
  shown = await Console.open()
  await shown.page.emulateMedia({reducedMotion: 'no-preference'})
  await shown.tv.window.SetChannel(3, 0)
  await described('Main picture', '3 Lighthouse News')
  const past = await shown.tv.state()
  await shown.tv.window.SetChannel(4, 0)
  await described('Main picture', '4 Harbour Kids')
  await shown.page.evaluate(async state => {
    const {store} = await import(new URL('page/store.js', location.href).href)
    store.set('past', {command: 12, entry: {event: {name: 'SetChannel', parameters: ['3', '0']}}, state})
  }, past)
  await described('Main picture', '3 Lighthouse News')
  await shown.pane('Screen').getByText('12 SetChannel 3 0').waitFor()
  assert.equal(await shown.page.evaluate(() => document.querySelector('emp-picture').counter), null)
  await shown.tv.window.SetChannel(2, 0)
  await described('Main picture', '3 Lighthouse News')
  await shown.page.getByRole('button', {name: 'Back to now'}).click()
  await described('Main picture', '2 Lighthouse Two')
  await until('pictures', () => shown.page.evaluate(() => document.querySelector('emp-picture').counter > 0))
})

test('names of any kind are shown as texts and leave the layout as it is', async () => {
  shown = await Console.open({size: {width: 390, height: 844}})
  await described('Main picture', 'Lighthouse One')
  const before = await image('App space').boundingBox()
  for (const name of ['x'.repeat(500), '<script>document.title = "taken"</script>', '\u202eright to left \u05d0', 'two words '.repeat(50)]) {
    await shown.tv.set('service.#1.name', name)
    await until(name, async () => (await shown.page.locator('.caption .name').textContent()).includes(name.trim()))
    assert.deepEqual(await image('App space').boundingBox(), before)
    assert.ok(await shown.page.evaluate(() => document.documentElement.scrollWidth <= innerWidth))
  }
  await shown.tv.set('service.#1.name', '""')
  await described('Main picture', '1 (no name)')
  assert.equal(await shown.page.title(), 'emp-window')
})
