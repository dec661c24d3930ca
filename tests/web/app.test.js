// SPDX-License-Identifier: MIT
// Apps over the picture: those that come with the page and those of other origins, with the keys of the remote control.
import assert from 'node:assert/strict'
import {mkdtemp, rm, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {after, afterEach, before, beforeEach, test} from 'node:test'
import {Site} from '../client/support/browser.js'
import {serve} from '../client/support/server.js'
import {until} from '../client/support/wait.js'
import {elsewhere, onSite} from '../site/support/bridge.js'
import {Console, useBrowser} from './support/console.js'

/** A server of apps. Its origin is not that of the page. */
let other
/** The server that has the apps of a test. */
let site
let shown
let pane
useBrowser()
before(async () => { other = await new Site().listen() })
beforeEach(() => {
  other.pages.clear()
  site = other
})
after(() => other.close())
afterEach(() => shown?.close())

async function open(how) {
  shown = await Console.open(how)
  if (onSite) site = shown.server  // apps of other origins do not run there
  pane = await shown.show('App')
}

const press = name => shown.pane('Remote control').getByRole('button', {name, exact: true}).click()
const isRunning = () => pane.getByText('Has the TV as tvWindow', {exact: true}).waitFor()
const app = () => shown.page.frameLocator('emp-app-frame iframe')
const frame = () => shown.page.frames().find(one => one.parentFrame() === shown.page.mainFrame() && one.url().startsWith(site.address))
const main = async () => (await shown.tv.state()).windows.main
const pip = async () => (await shown.tv.state()).windows.pip

async function run(address) {
  await pane.getByLabel('Address of the app').fill(address)
  await pane.getByRole('button', {name: 'Run', exact: true}).click()
}

/** Writes an app of another origin that records the keys that its document receives. */
function writeApp(body = '') {
  site.pages.set('/app', `<!doctype html><title>app</title>
    <script src="${shown.server.address}/window.js?name=tvWindow"></script>
    <script>globalThis.keys = []
    for (const kind of ['keydown', 'keyup']) document.addEventListener(kind, event => keys.push([kind, event.key, event.keyCode, event.target.id || event.target.localName]))
    </script>${body}`)
}

/** Starts a TV server that admits the site's origin, and runs the site's app. */
async function openApp(body) {
  await open({options: ['--allow-origin', site.address]})
  writeApp(body)
  await run(`${site.address}/app`)
  await isRunning()
}

test('the zapper is operated with the remote control: list, numbers, channel up, picture-in-picture', async () => {
  await open()
  await pane.getByRole('button', {name: 'Zapper'}).click()
  await app().getByText('1 Lighthouse One').waitFor()
  await isRunning()
  await press('OK')
  await app().getByRole('listitem').filter({hasText: '2 Lighthouse Two'}).waitFor()
  await press('Down')
  await press('OK')
  await until(async () => (await main()).service.name === 'Lighthouse Two', 'the chosen channel is shown')
  await press('Channel up')
  await until(async () => (await main()).service.name === 'Lighthouse News', 'the next channel is shown')
  await press('7')
  await app().getByRole('status').filter({hasText: '7 Midnight Cinema'}).waitFor()
  assert.equal((await main()).service.name, 'Midnight Cinema')
  await press('OK')
  await app().getByRole('list').waitFor()
  await press('Up')
  await press('Blue')
  await until(async () => (await pip()).service?.name === 'Tidewater Docs', 'the chosen channel is in the corner')
  await press('Blue')
  await until(async () => (await pip()).source.number === -1, 'the corner is empty again')
  assert.equal((await main()).service.name, 'Midnight Cinema')
})

test('the zapper says that a set without channels has none', async () => {
  await open()
  await shown.tv.fault('IServiceNavigation::GetServiceList', {outputs: {services: '[]'}, times: 'always'})
  await pane.getByRole('button', {name: 'Zapper'}).click()
  await app().getByText('1 Lighthouse One').waitFor()
  await press('OK')
  await app().getByText('The TV has no channels').waitFor()
})

test('the geometry app moves the picture by drags and keys, and shows both spaces', async () => {
  await open({size: {width: 1900, height: 1000}})
  await pane.getByRole('button', {name: 'Picture geometry'}).click()
  await app().getByText('app 960 x 540 x 0 y 0 w 960 h 540').waitFor()
  const corner = await app().locator('#corner').boundingBox()
  const scale = (await shown.page.locator('emp-app-frame iframe').boundingBox()).width / 960
  await shown.page.mouse.move(corner.x + 5, corner.y + 5)
  await shown.page.mouse.down()
  await shown.page.mouse.move(corner.x + 5 - 480 * scale, corner.y + 5 - 270 * scale)
  await shown.page.mouse.up()
  await until(async () => Math.abs((await main()).plane.app.rect.width - 480) < 2, 'the picture is half as wide')
  const {x, y, width, height} = (await main()).plane.app.rect
  assert.deepEqual([x, y, Math.abs(height - 270) < 2], [0, 0, true])
  await press('Right')
  await press('OK')
  await press('Down')
  await app().getByText(`app 960 x 540 x 16 y 0 w ${width} h ${height + 16}`).waitFor()
  assert.deepEqual((await main()).plane.app.rect, {x: 16, y: 0, width, height: height + 16})
  await app().getByText(`base 1920 x 1080 x 32 y 0 w ${2 * width} h ${2 * height + 32}`).waitFor()
  await press('Red')
  await app().getByText('crop, picture x 480 y 270 w 960 h 540').waitFor()
  assert.deepEqual((await main()).plane.crop, {x: 480, y: 270, width: 960, height: 540})
  await press('Green')
  await press('Yellow')
  await app().getByText('order in front of the app, hidden').waitFor()
  assert.deepEqual([(await main()).plane.order, (await main()).plane.muted], [2, true])
  await press('Blue')
  await app().getByText('app 960 x 540 x 0 y 0 w 960 h 540').waitFor()
})

test('the apps that come with the page know what is on the TV when they are loaded anew', async () => {
  await open()
  const reload = async () => {
    const before = await shown.page.locator('emp-app-frame iframe').elementHandle()
    await pane.getByRole('button', {name: 'Reload', exact: true}).click()
    await shown.page.waitForFunction(old => !old.isConnected, before)
    await isRunning()
  }
  await pane.getByRole('button', {name: 'Zapper'}).click()
  await isRunning()
  await press('Blue')
  await until(async () => (await shown.tv.state()).windows.pip.source.number === 0, 'picture-in-picture is open')
  await reload()
  await press('Blue')
  await until(async () => (await shown.tv.state()).windows.pip.source.number === -1, 'picture-in-picture is closed')
  await pane.getByRole('button', {name: 'Picture geometry'}).click()
  await app().getByText('order behind the app, shown').waitFor()  // the pane may still show the state of the other app
  await press('Yellow')
  await press('Green')
  await app().getByText('order in front of the app, hidden').waitFor()
  await reload()
  await app().getByText('order behind the app, shown').waitFor()
  const {order, muted} = (await main()).plane
  assert.deepEqual([order, muted], [0, false])
})

test('an app of one\'s own gets key presses with standard names, on what has the focus or the body, and its own numbers', async () => {
  await openApp('<input id="field">')
  for (const name of ['Up', '5', 'Channel down', 'Play', 'Red', 'Back', 'OK']) await press(name)
  await frame().waitForFunction(() => keys.length === 14)
  assert.deepEqual((await frame().evaluate(() => keys)).filter(([kind]) => kind === 'keydown'), [
    ['keydown', 'ArrowUp', 38, 'body'], ['keydown', '5', 53, 'body'], ['keydown', 'ChannelDown', 428, 'body'],
    ['keydown', 'MediaPlay', 415, 'body'], ['keydown', 'ColorF0Red', 403, 'body'], ['keydown', 'GoBack', 461, 'body'],
    ['keydown', 'Enter', 13, 'body']])
  await frame().evaluate(() => {
    document.getElementById('field').focus()
    keys.length = 0
  })
  await press('Left')
  await frame().waitForFunction(() => keys.length === 2)
  assert.deepEqual(await frame().evaluate(() => keys), [['keydown', 'ArrowLeft', 37, 'field'], ['keyup', 'ArrowLeft', 37, 'field']])
  await frame().evaluate(() => {
    tvWindow.keyCodes = {Enter: 1001}
    keys.length = 0
  })
  await press('OK')
  await press('Red')
  await frame().waitForFunction(() => keys.length === 4)
  assert.deepEqual((await frame().evaluate(() => keys)).map(([, key, code]) => [key, code]),
    [['Enter', 1001], ['Enter', 1001], ['ColorF0Red', 0], ['ColorF0Red', 0]])
})

test('with the focus in the app the keyboard does what it does on the page: to the app or to the TV, by the switch', async () => {
  await openApp('<p id="text">Some text</p><input id="field"><button onclick="this.textContent = \'pressed\'">Press</button>')
  const {keyboard} = shown.page
  const got = async count => {
    await frame().waitForFunction(most => keys.length >= most, count)
    return frame().evaluate(() => keys.splice(0))
  }
  await app().getByText('Some text').click()
  for (const key of ['ArrowUp', 'r', 'Backspace', 'Enter']) await keyboard.press(key)
  assert.deepEqual((await got(8)).filter(([kind]) => kind === 'keydown').map(([, key, code]) => [key, code]),
    [['ArrowUp', 38], ['ColorF0Red', 403], ['GoBack', 461], ['Enter', 13]])
  await press('TV')
  await keyboard.press('PageUp')
  await until(async () => (await main()).service.name === 'Lighthouse Two', 'the next channel is shown')
  for (const key of ['5', 'Enter', 'r']) await keyboard.press(key)
  await until(async () => (await main()).service.name === 'Granite Sport 1', 'channel 5 is shown')
  await keyboard.press('q')
  assert.deepEqual((await got(2)).map(([kind, key]) => [kind, key]), [['keydown', 'q'], ['keyup', 'q']], 'the app gets those that no button stands for')
  await app().locator('#field').click()
  await keyboard.type('r7')
  assert.equal(await app().locator('#field').inputValue(), 'r7')
  await keyboard.press('Tab')
  await keyboard.press('Enter')
  await app().getByRole('button', {name: 'pressed'}).waitFor()
  assert.equal((await main()).service.name, 'Granite Sport 1')
})

test('an app ignores keys that are not the page\'s, and the page apps that are not the one that runs', async () => {
  await openApp()
  site.pages.set('/evil', '<!doctype html><title>evil</title>')
  // These come from the app itself, whose origin is not the page's, and from a frame of its origin that is not the
  // parent.
  await frame().evaluate(address => new Promise(resolve => {
    postMessage({type: 'emp-window/key', kind: 'keydown', key: 'Enter'}, '*')
    const inner = document.createElement('iframe')
    inner.src = address
    inner.onload = () => {
      const script = inner.contentDocument.createElement('script')
      script.textContent = `parent.postMessage({type: 'emp-window/key', kind: 'keydown', key: 'Enter'}, '*')
        top.postMessage({type: 'emp-window/app', name: 'stolen'}, '*')`
      inner.contentDocument.body.append(script)
      setTimeout(resolve)
    }
    document.body.append(inner)
  }), `${site.address}/evil`)
  // These come from the page, but are not keys.
  await shown.page.evaluate(address => {
    const {contentWindow} = document.querySelector('emp-app-frame iframe')
    for (const message of [null, 'x', {type: 'emp-window/key'}, {type: 'emp-window/key', kind: 'click', key: 'Enter'}, {type: 'emp-window/key', kind: 'keydown', key: 7}]) {
      contentWindow.postMessage(message, address)
    }
    postMessage({type: 'emp-window/app', name: 'stolen'}, location.origin)
  }, site.address)
  await press('1')
  await frame().waitForFunction(() => keys.length > 0)
  assert.deepEqual((await frame().evaluate(() => keys))[0].slice(0, 2), ['keydown', '1'])
  assert.ok(await pane.getByText('Has the TV as tvWindow', {exact: true}).isVisible())
})

test('an app runs in a sandbox: it opens no window and leads the page nowhere else', async () => {
  await openApp()
  shown.tolerated = /sandboxed|allow-popups|allow-top-navigation/
  const outcome = await frame().evaluate(() => {
    const opened = globalThis.open('about:blank')
    try {
      top.location.href = 'about:blank'
      return [opened, 'leads']
    } catch (error) {
      return [opened, error.name]
    }
  })
  assert.deepEqual(outcome, [null, 'SecurityError'])
  await press('1')
  await frame().waitForFunction(() => keys.length > 0)
})

test('an app of the page\'s own origin gets keys from the page alone, and speaks for itself alone', async () => {
  await open()
  await pane.getByRole('button', {name: 'Zapper'}).click()
  await isRunning()
  const zapper = shown.page.frames()[1]
  await zapper.evaluate(() => postMessage({type: 'emp-window/key', kind: 'keydown', key: 'Enter'}, '*'))
  await shown.page.evaluate(() => postMessage({type: 'emp-window/app', name: 'stolen'}, '*'))
  await press('Channel up')
  await app().getByText('2 Lighthouse Two').waitFor()
  assert.ok(await app().getByRole('list').isHidden())
  assert.ok(await pane.getByText('Has the TV as tvWindow', {exact: true}).isVisible())
})

test('a page that an app goes to neither gets keys nor speaks for the app', {skip: elsewhere('its policy allows no frames of another origin')}, async () => {
  await open({options: ['--allow-origin', 'http://127.0.0.1:*', '--allow-origin', 'http://localhost:*']})
  writeApp()
  await run(`${site.address}/app`)
  await isRunning()
  site.pages.set('/evil', `<!doctype html><title>evil</title><script>
    globalThis.heard = []
    addEventListener('message', ({data}) => heard.push(data))
    parent.postMessage({type: 'emp-window/app', name: 'stolen'}, '*')</script>`)
  const evil = shown.page.frames()[1]
  await evil.goto(`http://localhost:${site.port}/evil`)
  await press('1')
  await shown.page.evaluate(() => document.querySelector('iframe').contentWindow.postMessage('end', '*'))
  await evil.waitForFunction(() => heard.includes('end'))
  assert.deepEqual(await evil.evaluate(() => heard), ['end'])
  assert.ok(await pane.getByText('Has the TV as tvWindow', {exact: true}).isVisible())
  assert.ok(shown.errors.every(text => text.includes('does not match the recipient window')), shown.errors.join())
  shown.errors = []
})

test('the apps that come with the page know the token that the page was given', {skip: elsewhere('a tab wants no token')}, async () => {
  await open()
  const directory = await mkdtemp(join(tmpdir(), 'app-test-'))
  const file = join(directory, 'token')
  await writeFile(file, 's3cret\n', {mode: 0o600})
  const server = await serve({options: ['--token', file]})
  const page = await shown.page.context().newPage()
  await page.goto(`${server.address}/#token=s3cret`)
  await page.getByRole('tab', {name: 'App', exact: true}).click()
  await page.getByRole('button', {name: 'Zapper'}).click()
  await page.frameLocator('emp-app-frame iframe').getByText('1 Lighthouse One').waitFor()
  assert.match(await page.getByText('/window.js?name=').textContent(), /&token=TOKEN/, 'and do not show it')
  await server.kill()
  await rm(directory, {recursive: true})
})

test('a page that is not the TV\'s can show the app, but sends it no keys', {skip: elsewhere('pages of one origin can do all to each other')}, async () => {
  await openApp()
  site.pages.set('/outer', `<!doctype html><title>outer</title><iframe src="${site.address}/app"></iframe>`)
  const other = await shown.page.context().newPage()
  await other.goto(`${site.address}/outer`)
  const inner = other.frames()[1]
  await inner.waitForFunction(() => globalThis.keys)
  await other.evaluate(() => document.querySelector('iframe').contentWindow.postMessage({type: 'emp-window/key', kind: 'keydown', key: 'Enter'}, '*'))
  await inner.evaluate(() => new Promise(resolve => setTimeout(resolve)))
  assert.deepEqual(await inner.evaluate(() => keys), [])
})

test('the line for one\'s own app is copied; an origin that is not let in is told before it is loaded, with the option', {skip: elsewhere('there is no such option; tests/site/app.test.js has what is told')}, async () => {
  await open()
  await shown.page.context().grantPermissions(['clipboard-read', 'clipboard-write'])
  await pane.getByRole('button', {name: 'Copy the line'}).click()
  await pane.getByText('Copied').waitFor()
  assert.equal(await shown.page.evaluate(() => navigator.clipboard.readText()), `<script src="${shown.server.address}/window.js?name=tvWindow"></script>`)
  await run(`${site.address}/<b>'"`)
  await pane.getByRole('alert').filter({hasText: 'The server does not allow pages of'}).waitFor()
  assert.ok(await pane.getByText(`emp-window serve --allow-origin '${site.address}'`).isVisible())
  assert.equal(await shown.page.locator('iframe').count(), 0)
  for (const [address, problem] of [['ftp://a/', 'An address such as'], ['', 'An address such as'], [shown.server.address, 'only the apps listed above']]) {
    await run(address)
    await pane.getByText(problem).waitFor()
  }
})

test('every port of a host is let in by one option', {skip: elsewhere('there is no such option')}, async () => {
  await open({options: ['--allow-origin', 'http://127.0.0.1:*']})
  writeApp()
  await run(`127.0.0.1:${site.port}/app`)
  await isRunning()
  await pane.getByText('Allowed now: http://127.0.0.1:*').waitFor()
})

test('an app that says nothing is told of, with the ways out', async () => {
  await open({options: ['--allow-origin', site.address]})
  site.pages.set('/mute', '<!doctype html><title>mute</title>')
  await run(`${site.address}/mute`)
  await pane.getByText('The app has not reported that it runs.').waitFor()
  assert.equal(await pane.getByRole('link', {name: 'Open it in a tab'}).getAttribute('href'), `${site.address}/mute`)
})

test('reload keeps the TV or resets it, closing ends the app, the address is remembered', async () => {
  await openApp()
  await frame().evaluate(() => tvWindow.SetChannel(3, 0))
  const before = await shown.page.locator('emp-app-frame iframe').elementHandle()
  await pane.getByRole('button', {name: 'Reload', exact: true}).click()
  await shown.page.waitForFunction(old => !old.isConnected, before)
  await isRunning()
  assert.equal((await main()).service.name, 'Lighthouse News')
  await pane.getByRole('button', {name: 'Reload and reset the TV'}).click()
  await shown.page.getByRole('dialog').getByRole('button', {name: 'Cancel'}).click()
  assert.equal((await main()).service.name, 'Lighthouse News')
  await pane.getByRole('button', {name: 'Reload and reset the TV'}).click()
  await shown.page.getByRole('dialog', {name: 'Reset the TV?'}).getByRole('button', {name: 'Reset and reload'}).click()
  await until(async () => (await main()).service.name === 'Lighthouse One', 'the TV is reset')
  await isRunning()
  await pane.getByRole('button', {name: 'Close app'}).press('Enter')
  await shown.page.locator('iframe').waitFor({state: 'detached'})
  assert.equal(await shown.page.evaluate(() => document.activeElement.textContent), 'Zapper')
  await shown.page.reload()
  await pane.waitFor()
  assert.equal(await pane.getByLabel('Address of the app').inputValue(), `${site.address}/app`)
})

test('what happens on the TV and on the page does not load the app anew', async () => {
  await openApp()
  await frame().evaluate(() => { globalThis.mark = 'same' })
  await shown.tv.window.SetChannel(5, 0)
  await shown.show('Faults')
  await shown.page.setViewportSize({width: 390, height: 844})
  await shown.show('App')
  await shown.page.setViewportSize({width: 1280, height: 720})
  await pane.waitFor()
  assert.equal(await frame().evaluate(() => globalThis.mark), 'same')
})
