// SPDX-License-Identifier: MIT
// Faults: a person makes calls of the plug-in to the set fail, one by one or by scenarios, and clears the faults again.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {until} from '../client/support/wait.js'
import {Console, useBrowser} from './support/console.js'

let shown
let pane
useBrowser()
afterEach(() => shown?.close())

async function open(how) {
  shown = await Console.open(how)
  pane = await shown.show('Faults')
}

/** Finds a call and chooses it. */
async function choose(operation, search = operation) {
  await pane.getByRole('searchbox', {name: 'Search calls'}).fill(search)
  await pane.getByRole('option', {name: operation}).click()
}

const setFault = () => pane.getByRole('button', {name: 'Set fault'}).click()
const line = () => pane.getByLabel('As a line of a transcript').textContent()
const hasLine = text => until(async () => await line() === text, `the line ${text}`)
const command = (name, ...parameters) => shown.tv.window[name](...parameters)
const run = name => pane.getByRole('button', {name: `Run: ${name}`})
const undo = name => pane.getByRole('button', {name: `Undo: ${name}`})
const scenario = name => pane.getByRole('list', {name: 'Scenarios'}).getByRole('listitem').filter({hasText: name})

test('a call is found by words of its name or outputs, and fails with a result as often as said', async () => {
  await open()
  await choose('IServiceNavigation::GetTvMode', 'navigation mode')
  await pane.getByLabel('From call').fill('2')
  await pane.getByLabel('How often').fill('2')
  await pane.getByLabel('Result').fill('-5')
  await hasLine('> .fault IServiceNavigation::GetTvMode nth=2 times=2 result=-5')
  await setFault()
  await pane.getByText('.fault IServiceNavigation::GetTvMode nth=2 times=2 result=-5').first().waitFor()
  const answers = []
  for (let call = 0; call < 4; ++call) answers.push(await command('GetTVMode'))
  assert.deepEqual(answers, [1, -1, -1, 1])
  await pane.getByText('2 hits').waitFor()
})

test('outputs are chosen one by one, in one window and always', async () => {
  await open()
  await choose('ISourceControl::GetSourceState')
  await pane.getByLabel('How', {exact: true}).selectOption('writes these outputs')
  await pane.getByLabel('state').fill('7')
  await pane.getByLabel('Window').selectOption('pip')
  await pane.getByLabel('always').check()
  await hasLine('> .fault ISourceControl::GetSourceState times=always window=pip out.state=7')
  await setFault()
  await pane.getByText('fault 1').waitFor()
  assert.equal(await command('GetSourceState'), 2)
  await command('SetWindow', 1)
  assert.deepEqual([await command('GetSourceState'), await command('GetSourceState')], [7, 7])
})

test('null, nothing written and an exception fail as they do on a set', async () => {
  await open()
  const ways = [
    ['vconf_get_str', 'answers a null pointer', '> .fault vconf_get_str result=null'],
    ['IServiceNavigation::GetTvMode', 'succeeds, writes nothing', '> .fault IServiceNavigation::GetTvMode result=unwritten'],
    ['IServiceNavigation::GetServiceList', 'throws an exception', '> .fault IServiceNavigation::GetServiceList result=throw'],
  ]
  for (const [operation, way, text] of ways) {
    await choose(operation)
    await pane.getByLabel('How', {exact: true}).selectOption(way)
    await hasLine(text)
    await setFault()
  }
  await until(async () => (await shown.tv.faults()).length === 3, 'all are set')
  assert.equal(await command('GetTVMode'), 0, 'an antenna that there is none of')
  assert.equal(await command('FindChannel', 0, 1), 0)
})

test('a fault of one session leaves the others alone', async () => {
  await open()
  await command('GetTVMode')
  await choose('IServiceNavigation::GetTvMode')
  await pane.getByLabel('Session').selectOption(shown.tv.session)
  await setFault()
  await until(async () => (await shown.tv.faults()).length === 1, 'it is set')
  const other = await shown.connect()
  assert.equal(await other.window.GetTVMode(), 1)
  await other.close()
  assert.equal(await command('GetTVMode'), -1)
})

test('what the set refuses is told beside the button, and nothing is set', async () => {
  await open()
  await choose('IServiceNavigation::GetTvMode')
  await pane.getByLabel('Result').fill('<b>"no number')
  await setFault()
  await pane.getByRole('alert').filter({hasText: 'a number from -2147483648 to 2147483647 is wanted'}).waitFor()
  await hasLine(`> .fault IServiceNavigation::GetTvMode result='<b>"no number'`)
  await pane.getByLabel('How', {exact: true}).selectOption('writes these outputs')
  await pane.getByLabel('mode').fill('1')
  await setFault()
  await pane.getByText('2 numbers with commas between are wanted').waitFor()
  assert.deepEqual(await shown.tv.faults(), [])
})

test('faults are removed one by one and all at once, those of others too', async () => {
  await open()
  const first = await shown.tv.fault('IServiceNavigation::GetTvMode', {result: 0, times: 'always'})
  await shown.tv.fault('vconf_get_str', {result: '<script>alert(1)</script>\u202e'.padEnd(500, 'x')})
  await shown.tv.fault('vconf_get_int', {result: -1})
  await pane.getByText('Faults set: 3').waitFor()
  await pane.getByText('<script>alert(1)</script>').waitFor()
  assert.equal(await pane.evaluate(section => section.scrollWidth - section.clientWidth), 0)
  assert.equal(await command('GetTVMode'), -1)
  await pane.getByRole('button', {name: `Remove fault ${first}`}).click()
  await pane.getByText('Faults set: 2').waitFor()
  assert.equal(await command('GetTVMode'), 1)
  await pane.getByRole('button', {name: 'Remove all'}).click()
  await pane.getByText('None. Run a scenario').waitFor()
  assert.deepEqual(await shown.tv.faults(), [])
})

test('who removes faults by keyboard goes on with the next one, then with the search', async () => {
  await open()
  for (const name of ['GetTvMode', 'TuneService']) await shown.tv.fault(`IServiceNavigation::${name}`, {result: 0})
  const focused = () => shown.page.evaluate(() => document.activeElement.ariaLabel ?? document.activeElement.id)
  await pane.getByRole('button', {name: 'Remove fault 1'}).press('Enter')
  await pane.getByText('Faults set: 1').waitFor()
  assert.equal(await focused(), 'Remove fault 2')
  await shown.page.keyboard.press('Enter')
  await pane.getByText('None. Run a scenario').waitFor()
  assert.equal(await focused(), 'fault-search')
})

test('nothing of the scenario without navigation stays when its fault is removed', async () => {
  await open()
  await run('No navigation').click()
  await undo('No navigation').waitFor()
  await pane.getByRole('button', {name: 'Remove all'}).click()
  await shown.page.locator('emp-foot').getByText('> .reopen').waitFor()
  await shown.page.getByRole('button', {name: 'Channel up'}).click()
  await shown.pane('Remote control').getByText('2 Lighthouse Two').waitFor()
})

const scenarios = [
  ['Signal fades', ['.set tuner.fade 255'], async () => [await command('GetSignalStrength')], [0]],
  ['Secondary manager gone', ['.set isp.present off'],
    async () => [await command('GetCurrentAudioInfo'), await command('ChangeAudioByIndex', 1)], [-1, 0], async () => {
      await shown.tv.run('.app com.example.guide guide')
      await command('SetSource', 48)
    }],
  ['Slow tunes', ['.set latency.IServiceNavigation::TuneService 3000'], async () => {
    const before = Number(await shown.tv.get('clock'))
    await command('SetChannel', 3, 0)
    return [Number(await shown.tv.get('clock')) - before]
  }, [3000], () => command('SetSource', 0)],
  ['Empty channel list', [`.fault IServiceNavigation::GetServiceList times=always out.services='[]'`],
    async () => [await command('FindChannel', 0, 1), await command('GetFullChannelList')], [0, -1]],
  ['No navigation', ['.fault TVServiceAPI::CreateServiceNavigation times=always result=null', '.reopen'], async () => {
    await shown.tv.run('.reopen')
    return [await command('SetChannel', 3, 0), await command('GetTVMode'), await command('FindChannel', 0, 1)]
  }, [0, -1, -1]],
]
test('each scenario shows its lines, makes commands fail, and is undone', async () => {
  await open({options: ['--no-wait']})
  for (const [name, lines, answers, failing, prepare] of scenarios) {
    await prepare?.()
    assert.deepEqual(await scenario(name).locator('code').allTextContents(), lines)
    await run(name).click()
    await undo(name).waitFor()
    assert.deepEqual(await answers(), failing, name)
    await undo(name).click()
    await run(name).waitFor()
    assert.notDeepEqual(await answers(), failing, `${name}, undone`)
  }
  assert.deepEqual(await shown.tv.faults(), [])
})

test('a scenario that another client set shows as on, and a restart ends it', async () => {
  await open()
  await shown.tv.set('latency.IServiceNavigation::TuneService', 10)
  await shown.tv.fault('IServiceNavigation::GetServiceList', {outputs: {services: '[]'}, times: 'always'})
  await undo('Slow tunes').waitFor()
  await undo('Empty channel list').waitFor()
  await shown.tv.restart()
  await run('Slow tunes').waitFor()
  await run('Empty channel list').waitFor()
})

test('all is done by keyboard alone, and what was set stays while the list of faults grows', async () => {
  await open()
  const {keyboard} = shown.page
  await pane.getByRole('searchbox').focus()
  await keyboard.type('GetSignalStrength')
  await keyboard.press('Tab')
  await keyboard.press('ArrowDown')
  await pane.getByLabel('How', {exact: true}).focus()
  for (let step = 0; step < 6; ++step) await keyboard.press('Tab')
  assert.equal(await shown.page.evaluate(() => document.activeElement.id), 'fault-session')
  await keyboard.press('Tab')
  await keyboard.press('Enter')
  await pane.getByText('Faults set: 1').waitFor()
  assert.equal(await shown.page.evaluate(() => document.activeElement.textContent), 'Set fault')
  await hasLine('> .fault ITunerControl::GetSignalStrength result=0')
})

test('on a phone nothing scrolls sideways', async () => {
  await open({size: {width: 390, height: 844}})
  await choose('CD2tvMgrProxy::GetTotalNumOfSubtitle')
  await pane.getByLabel('How', {exact: true}).selectOption('writes these outputs')
  await pane.getByLabel('teletextSubtitles').waitFor()
  assert.ok(await shown.page.evaluate(() => document.documentElement.scrollWidth - innerWidth) <= 0)
  assert.equal(await pane.evaluate(section => section.scrollWidth - section.clientWidth), 0)
})
