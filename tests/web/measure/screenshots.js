// SPDX-License-Identifier: MIT
// screenshots.js DIR: writes pictures of the page in twelve states into DIR, which it creates.
import {mkdir} from 'node:fs/promises'
import {join} from 'node:path'
import {endServers} from '../../client/support/server.js'
import {closeBrowser, Console, openBrowser} from '../support/console.js'

const directory = process.argv[2]
const phone = {width: 390, height: 844}

/** Picture-in-picture over the main one. */
async function twoPictures({tv}) {
  await tv.window.SetWindow(1)
  await tv.window.SetSource(0)
  await tv.window.SetChannel(5, 0)
  await tv.window.SetWindow(0)
}

/** Some commands of an app, one of which fails. */
async function someCommands({tv}) {
  await tv.window.FindChannel(0, 1)
  await tv.window.SetChannel(3, 0)
  await tv.window.GetCurrentChannelInfo()
  await tv.fault('IServiceNavigation::GetTvMode', {result: 0})
  await tv.window.GetTVMode()
}

/** Both of these, to show at a glance what the page is for. */
async function allAtOnce(shown) {
  await twoPictures(shown)
  await someCommands(shown)
}

const states = [
  {name: 'start', show: allAtOnce, pane: 'Channels'},
  {name: 'dark', scheme: 'dark', show: allAtOnce, pane: 'Planes'},
  {
    name: 'small-picture', pane: 'Planes',
    async show(shown) {
      await twoPictures(shown)
      await shown.tv.window.SetScreenRect(480, 60, 440, 248)
    },
  },
  {
    name: 'crop-outside', pane: 'Planes',
    async show(shown) {
      await shown.tv.window.SetScreenRect(600, -80, 480, 270)
      await shown.tv.executeWithParamList('SetScreenCropRect', [480, 270, 960, 540, 600, -80, 480, 270])
    },
  },
  {name: 'input', show: ({tv}) => tv.window.SetSource(32), pane: 'Tracks'},
  {name: 'no-signal', show: ({tv}) => tv.set('main.source_state', 1), pane: 'Set'},
  {name: 'fading', scheme: 'dark', show: ({tv}) => tv.set('tuner.fade', 150), pane: 'Faults'},
  {
    name: 'looking-back', pane: 'Channels',
    async show(shown) {
      await someCommands(shown)
      await shown.tv.window.SetChannel(7, 0)
      await shown.pane('Timeline').getByRole('option', {name: /SetChannel 3/}).click()
      await shown.page.getByRole('button', {name: 'Back to now'}).waitFor()
    },
  },
  {
    name: 'faults', pane: 'Faults',
    async show({tv}) {
      await tv.fault('IServiceNavigation::GetServiceList', {result: -1, times: 'always'})
      await tv.window.GetFullChannelList()
    },
  },
  {name: 'zapper', pane: 'App', show: shown => run(shown, 'Zapper', 'OK')},
  {name: 'geometry', scheme: 'dark', pane: 'App', show: shown => run(shown, 'Picture geometry')},
  {name: 'phone', size: phone, show: someCommands, pane: 'Channels'},
]

/** Starts one of the apps that come with the page, and presses keys of the remote control. */
async function run(shown, name, ...keys) {
  await shown.show('App')
  await shown.page.getByRole('button', {name, exact: true}).click()
  await shown.page.frameLocator('iframe').locator('body > :visible').first().waitFor()
  for (const key of keys) await shown.pane('Remote control').getByRole('button', {name: key, exact: true}).click()
}

async function takePicture({name, size, scheme, show, pane}) {
  const shown = await Console.open({size, scheme})
  await shown.show(pane)
  await show(shown)
  await shown.page.waitForTimeout(700)  // the page may still flash, and an app may still draw
  await shown.page.screenshot({path: join(directory, `${name}.png`)})
  await shown.close()
}

await mkdir(directory, {recursive: true})
await openBrowser()
try {
  for (const state of states) await takePicture(state)
} finally {
  await closeBrowser()
  endServers()
}
