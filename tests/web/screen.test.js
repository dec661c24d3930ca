// SPDX-License-Identifier: MIT
// The TV's picture on the page: its position, its content, the order of planes, and the texts for people.
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

test('the space is as large as fits and keeps its shape, on a narrow page over the full width', async () => {
  await open()
  const pane = await shown.pane('Screen').boundingBox()
  const box = await screen.image('App space').boundingBox()
  assert.ok(Math.abs(box.width / box.height - 16 / 9) < 0.01)
  assert.ok(box.height > pane.height - 120 || box.width > pane.width - 60, JSON.stringify(box))
  await shown.page.setViewportSize({width: 390, height: 844})
  const wanted = await until(async () => {
    const now = await screen.image('App space').boundingBox()
    return now.width === 390 && now
  }, 'full width')
  assert.ok(Math.abs(wanted.height - 390 * 9 / 16) < 1)
})

test('what is tuned to is told on the picture and beside it', async () => {
  await open()
  await screen.described('Main picture', '1 Lighthouse One')
  await shown.tv.window.SetChannel(3, 0)
  await screen.described('Main picture', '3 Lighthouse News, Antenna, terrestrial, Audio eng, subtitles off, 1920x1080@25')
  await shown.pane('Screen').getByText('3 Lighthouse News').waitFor()
  await shown.tv.window.ChangeSubtitle(0)
  await screen.described('Main picture', 'subtitles eng')
})

test('a picture stands where it was placed, be it small, large or outside', async () => {
  await open()
  await screen.assertPlace('Main picture', [0, 0, 960, 540])
  for (const given of [[640, 20, 300, 169], [5, 7, 1, 1], [900, 500, 200, 120], [1000, 600, 96, 54], [0, 0, 3000, 2000]]) {
    assert.equal(await shown.tv.window.SetScreenRect(...given), 1)
    const [x, y, width, height] = given
    await screen.described('Main picture', `at ${x},${y} ${width}x${height}`)
    await screen.assertPlace('Main picture', given)
    await screen.assertPlace('Picture-in-picture', [648, 351, 288, 162])
    const over = await shown.page.evaluate(() => [document.documentElement.scrollWidth - innerWidth, document.querySelector('#screen').scrollWidth - document.querySelector('#screen').clientWidth])
    assert.deepEqual(over, [0, 0])
  }
})

test('what lies beyond the edges is told, with an arrow where nothing of it can be seen', async () => {
  await open()
  await shown.tv.window.SetScreenRect(900, 100, 100, 60)
  await screen.described('Main picture', '40 px beyond the right edge')
  assert.equal(await shown.page.locator('.arrow').count(), 0)
  await shown.tv.window.SetScreenRect(1100, 700, 100, 60)
  await screen.described('Main picture', 'outside: 140 px from the right edge, 160 px from the lower edge')
  assert.equal(await shown.page.locator('.arrow').textContent(), 'main \u2192 140 px \u2193 160 px')
  const arrow = await shown.page.locator('.arrow').boundingBox()
  const space = await screen.image('App space').boundingBox()
  assert.ok(arrow.x + arrow.width <= space.x + space.width + 1 && arrow.y + arrow.height <= space.y + space.height + 1)
})

test('picture-in-picture lies in front, and orders change that, also towards an app', async () => {
  await open()
  await shown.tv.window.SetWindow(1)
  await shown.tv.window.SetSource(32)
  await screen.described('Picture-in-picture', 'HDMI 2, 3840 x 2160')
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
  await screen.described('Main picture', 'in front of the app')
  assert.deepEqual(await front(), ['Main picture', 'app', 'Picture-in-picture'])
  await shown.tv.window.SetWindow(1)
  await shown.tv.window.SetScreenZorder(1)
  await screen.described('Picture-in-picture', 'in front of the app')
  assert.deepEqual(await front(), ['Picture-in-picture', 'Main picture', 'app'])
})

test('the layer of an app has 960 x 540 of its own pixels and is as large as the space', async () => {
  await open()
  const layer = shown.page.locator('.app-layer')
  assert.deepEqual(await layer.evaluate(element => [element.offsetWidth, element.offsetHeight]), [960, 540])
  const {width, height} = await screen.image('App space').boundingBox()
  const box = await layer.boundingBox()
  assert.ok(Math.abs(box.width - width) < 1 && Math.abs(box.height - height) < 1)
})

test('a hidden picture is not seen, but where it is', async () => {
  await open()
  await until(async () => await screen.colourAt(480, 300) !== 'black', 'a picture')
  await shown.tv.window.MuteVideo(1)
  await shown.page.getByText('main hidden').waitFor()
  assert.equal(await screen.colourAt(480, 300), 'black')
  await screen.assertPlace('Main picture', [0, 0, 960, 540])
  await shown.tv.window.MuteVideo(0)
  await until(async () => await screen.colourAt(480, 300) !== 'black', 'a picture')
})

test('pointing reads both spaces, the plane and its pixel; arrow keys move a crosshair', async () => {
  await open()
  await shown.tv.window.SetScreenRect(100, 50, 480, 270)
  await screen.described('Main picture', 'at 100,50 480x270')
  const line = shown.page.locator('.position')
  const point = async (x, y) => {
    const {x: left, y: top, width} = await screen.image('App space').boundingBox()
    await shown.page.mouse.move(left + (x + 0.5) * width / 960, top + (y + 0.5) * width / 960)
  }
  const reads = text => until(async () => await line.textContent() === text, text)
  await point(412, 96)
  await reads('x 412 y 96 app - 824, 192 base - plane main 100,50 480x270 - pixel 1248, 184 of 1920x1080')
  await point(20, 500)
  await reads('x 20 y 500 app - 40, 1000 base - no plane')
  await point(-10, 20)
  await reads('x -10 y 20 app - -20, 40 base - outside of the space')
  await screen.image('App space').focus()
  await shown.page.keyboard.press('ArrowRight')
  await reads('x 481 y 270 app - 962, 540 base - plane main 100,50 480x270 - pixel 1524, 880 of 1920x1080')
  await shown.page.keyboard.press('Shift+ArrowDown')
  await reads('x 481 y 280 app - 962, 560 base - plane main 100,50 480x270 - pixel 1524, 920 of 1920x1080')
  for (let at = 0; at < 30; ++at) await shown.page.keyboard.press('Shift+ArrowDown')
  await reads('x 481 y 539 app - 962, 1078 base - no plane')
  assert.equal(await line.getAttribute('aria-live'), 'polite')
})

test('over an app the pointer is the app\'s, unless positions are to be read', async () => {
  await open()
  const running = () => shown.page.evaluate(async () => {
    const {store} = await import(new URL('page/store.js', location.href).href)
    return store.get('app') !== null
  })
  const pane = await shown.show('App')
  await pane.getByRole('button', {name: 'Zapper'}).click()
  await until(running, 'an app')
  await shown.page.locator('.app-layer iframe').waitFor()
  const line = shown.page.locator('.position')
  const {x, y, width} = await screen.image('App space').boundingBox()
  // Moves the pointer again and again, since the page may still be drawing when it is moved first.
  const reads = async text => {
    let by = 0
    await until(async () => {
      await shown.page.mouse.move(1, 1)
      await shown.page.mouse.move(x + width / 4 + by++ % 8, y + width / 4)
      return (await line.textContent()).includes(text)
    }, text)
  }
  await reads('Point at the screen')
  await shown.page.getByRole('button', {name: 'Point past the app'}).click()
  await reads('plane main 0,0 960x540 - pixel')
  await shown.page.getByRole('button', {name: 'Point past the app'}).click()
  await reads('Point at the screen')
  await pane.getByRole('button', {name: 'Close app'}).click()
  await shown.page.getByRole('button', {name: 'Point past the app'}).waitFor({state: 'detached'})
})

test('a state of the past stands still, says so, and leads back to now', async () => {
  await open()
  await shown.page.emulateMedia({reducedMotion: 'no-preference'})
  await shown.tv.window.SetChannel(3, 0)
  await screen.described('Main picture', '3 Lighthouse News')
  const past = await shown.tv.state()
  await shown.tv.window.SetChannel(4, 0)
  await screen.described('Main picture', '4 Harbour Kids')
  await shown.page.evaluate(async state => {
    const {store} = await import(new URL('page/store.js', location.href).href)
    store.set('past', {command: 12, entry: {event: {name: 'SetChannel', parameters: ['3', '0']}}, state})
  }, past)
  await screen.described('Main picture', '3 Lighthouse News')
  await shown.pane('Screen').getByText('12 SetChannel 3 0').waitFor()
  assert.equal(await shown.page.evaluate(() => document.querySelector('emp-picture').counter), null)
  await shown.tv.window.SetChannel(2, 0)
  await screen.described('Main picture', '3 Lighthouse News')
  await shown.page.getByRole('button', {name: 'Back to now'}).click()
  await screen.described('Main picture', '2 Lighthouse Two')
  await until(() => shown.page.evaluate(() => document.querySelector('emp-picture').counter > 0), 'pictures')
})

test('names of any kind are shown as texts and leave the layout as it is', async () => {
  await open({size: {width: 390, height: 844}})
  await screen.described('Main picture', 'Lighthouse One')
  const before = await screen.image('App space').boundingBox()
  for (const name of ['x'.repeat(500), '<script>document.title = "taken"</script>', '\u202eright to left \u05d0', 'two words '.repeat(50)]) {
    await shown.tv.set('service.#1.name', name)
    await until(async () => (await shown.page.locator('.caption .name').textContent()).includes(name.trim()), name)
    assert.deepEqual(await screen.image('App space').boundingBox(), before)
    assert.ok(await shown.page.evaluate(() => document.documentElement.scrollWidth <= innerWidth))
  }
  await shown.tv.set('service.#1.name', '""')
  await screen.described('Main picture', '1 (no name)')
  assert.equal(await shown.page.title(), 'emp-window')
})
