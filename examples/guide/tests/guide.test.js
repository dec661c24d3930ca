// SPDX-License-Identifier: MIT
// Tests the app on a separate TV, without a browser.
import assert from 'node:assert/strict'
import {afterEach, beforeEach, test} from 'node:test'
import {installWindow} from 'emp-window'
import {launch} from 'emp-window/launch'
import {channels, onScreen, show} from '../guide.js'

let tv
let tvWindow
beforeEach(async () => {
  tv = await launch()
  tvWindow = installWindow({}, {address: tv.address, name: 'tvWindow'})
})
afterEach(() => tv.close())

test('it shows a channel of its list', () => {
  const news = channels(tvWindow).find(({name}) => name === 'Lighthouse News')
  assert.deepEqual(news, {name: 'Lighthouse News', major: 3, minor: 0})
  assert.equal(show(tvWindow, news), true)
  assert.equal(onScreen(tvWindow), 'Lighthouse News')
})

test('it tells that a channel can not be shown', async () => {
  const news = channels(tvWindow).find(({name}) => name === 'Lighthouse News')
  await tv.fault('IServiceNavigation::TuneService', {result: 0})
  assert.equal(show(tvWindow, news), false)
  assert.equal(onScreen(tvWindow), 'Lighthouse One')
})

test('it sees that somebody has chosen another input', async () => {
  await tv.set('main.source', 13)
  assert.equal(onScreen(tvWindow), 'Another input')
})

test('it has an empty list while the set can not read its own', async () => {
  const fault = await tv.fault('IServiceNavigation::GetServiceList', {result: 0, times: 1})
  assert.deepEqual(channels(tvWindow), [])
  assert.equal((await tv.faults()).find(({id}) => id === fault.id), undefined)  // the fault was hit and removed
  assert.ok(channels(tvWindow).length > 0)
})

test('it says so when the channel on screen can not be told', async () => {
  await tv.fault('IServiceNavigation::GetCurrentService', {result: 0})
  assert.equal(onScreen(tvWindow), 'No channel')
})
