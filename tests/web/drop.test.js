// SPDX-License-Identifier: MIT
// Files dropped on the page or opened: lists are imported, transcripts checked, snapshots restored, other files
// reported.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {findings} from './support/axe.js'
import {recording} from './support/broadcast.js'
import {Console, useBrowser} from './support/console.js'
import {elsewhere} from '../site/support/bridge.js'

let shown
useBrowser()
afterEach(() => shown?.close())

const list = `Morning:538000:B8C23D0G4M64T8Y0:T:27500:256=2:257=eng@4:0:0:700:1:2:0
:Radio
<script>alert(1)</script>:538000:B8C23D0G4M64T8Y0:T:27500:0:259=deu@4:0:0:701:1:2:0
Wrong:538000:h
`

/** Drops a file on the page, as from a file manager: the content, followed by this number of tab characters. */
async function drop({name, content = '', tabs = 0}) {
  const data = await shown.page.evaluateHandle(([called, bytes, count]) => {
    const transfer = new DataTransfer()
    transfer.items.add(new File([new Uint8Array(bytes), new Uint8Array(count).fill(9)], called))
    return transfer
  }, [name, [...Buffer.from(content)], tabs])
  await shown.page.dispatchEvent('main', 'dragover', {dataTransfer: data})
  await shown.page.dispatchEvent('main', 'drop', {dataTransfer: data})
}

const panel = () => shown.page.getByRole('region', {name: 'File', exact: true})

test('a channel list is imported, and its bad lines are told by number', async () => {
  shown = await Console.open()
  await drop({name: 'channels.conf', content: list})
  await panel().getByText('imported, with problems').waitFor()
  await panel().getByText('2 services: 2 added, 0 changed, 81 gone; 1 line could not be read').waitFor()
  assert.deepEqual(await panel().getByRole('cell').allTextContents(), ['4', '"Wrong:538000:h" has 3 of the 13 fields of a service'])
  const {total, services} = await shown.tv.services()
  assert.deepEqual([total, services[1].name], [2, '<script>alert(1)</script>'])
})

test('what happens to a long list is told at once, and the page goes on meanwhile', async () => {
  shown = await Console.open()
  const count = 20_000
  const seen = await shown.page.evaluate(async lines => {
    const text = Array.from({length: lines}, (_, at) =>
      `Station ${at + 1}:${10714 + at % 1000}:HC56M2S0:S19.2E:22000:${at % 8000 + 32}:${at % 8000 + 33}=eng@3:0:0:${at + 1}:1:${at % 1000}:0\n`)
    dispatchEvent(new CustomEvent('emp-open', {detail: [new File(text, 'long.conf')]}))
    const frames = {}
    while (!document.querySelector('.file-result')?.textContent.includes('services:')) {
      await new Promise(requestAnimationFrame)
      const said = document.querySelector('.file-result [role="status"]')?.textContent
      frames[said] = (frames[said] ?? 0) + 1
    }
    return frames
  }, count)
  assert.ok(seen['long.confis imported: 20,000 lines'] > 1, `frames by status: ${JSON.stringify(seen)}`)
  await panel().getByText(`${count} services: ${count} added, 0 changed, 81 gone; 0 lines could not be read`).waitFor()
})

test('names that are not UTF-8 are read as ISO 8859-15, which is told', async () => {
  shown = await Console.open()
  await drop({name: 'channels.conf', content: Buffer.from(list.replace('Morning', 'Stra\xdfe \xa4'), 'latin1')})
  await panel().getByText('Names were read as ISO 8859-15').waitFor()
  assert.equal((await shown.tv.services()).services[0].name, 'Straße €')
})

test('a list without a service is not imported, and what is wrong with it is told by line', async () => {
  shown = await Console.open()
  await drop({name: 'bad.conf', content: 'short:12:3\nName:99999999:B8:T:0:0:0:0:0:70000:1:1:0\n'})
  await panel().getByText('was not imported').waitFor()
  assert.deepEqual(await panel().getByRole('row').evaluateAll(rows => rows.slice(1).map(row => row.cells[0].textContent)), ['1', '2'])
})

test('only lists may be in another encoding than UTF-8', async () => {
  shown = await Console.open()
  await drop({name: 'mine.txt', content: Buffer.from('> SetChannel \xe4 0\nint 0\n', 'latin1')})
  await panel().getByRole('alert').filter({hasText: 'A transcript must be UTF-8; this file is not.'}).waitFor()
  await drop({name: 'mine.json', content: Buffer.from('{"version": 1, "state": "\xe4", "settings": [], "services": []}', 'latin1')})
  await panel().getByRole('alert').filter({hasText: 'A snapshot must be UTF-8; this file is not.'}).waitFor()
  await drop({name: 'letter.txt', content: Buffer.from('Stra\xdfe\n', 'latin1')})
  await panel().getByRole('alert').filter({hasText: 'not a channel list of a known format'}).waitFor()
  assert.equal(await panel().getByText('Names were read').count(), 0)
})

test('a transcript with something in front of its first input is checked, too', async () => {
  shown = await Console.open()
  await drop({name: 'mine.txt', content: 'int 1\n> GetTVMode\nint 1\n'})
  await panel().getByText('output before the first').waitFor()
})

test('a transcript is checked on a set of its own, and its differences are coloured', async () => {
  shown = await Console.open()
  await drop({name: 'mine.txt', content: '# What a fresh set tells.\n\n> SetChannel 3 0\nint 1\n> GetTVMode\nint 2\n'})
  await panel().getByText('failed').waitFor()
  assert.equal(await panel().locator('.gone').textContent(), '-int 2')
  assert.equal(await panel().locator('.added').textContent(), '+int 1')
  assert.equal((await shown.tv.state()).windows.main.service.name, 'Lighthouse One')
  await drop({name: 'mine.txt', content: '> GetTVMode\nint 1\n'})
  await panel().getByText('All output is as expected.').waitFor()
})

test('a list that was exported as JSON is imported, with what is wrong in it', async () => {
  shown = await Console.open()
  const {content} = await shown.tv.export('json')
  const list = JSON.parse(content)
  list.services = list.services.slice(0, 3)
  list.services[2].numbers.major = 'two'
  await drop({name: 'mine.json', content: JSON.stringify(list)})
  await panel().getByText('2 services: 0 added, 0 changed, 79 gone').waitFor()
  await panel().getByText('services[2].numbers.major').waitFor()
  assert.equal((await shown.tv.services()).total, 2)
})

test('a snapshot is recognised by its document and restored; one that is wrong is refused with the place', async () => {
  shown = await Console.open()
  const snapshot = await shown.tv.snapshot()
  await shown.tv.import(list)
  await drop({name: 'no matter.bin', content: JSON.stringify(snapshot)})
  await panel().getByText('restored', {exact: true}).waitFor()
  assert.equal((await shown.tv.services()).total, 81)
  snapshot.services[3].numbers.ptc = 70000
  await drop({name: 'wrong.json', content: JSON.stringify(snapshot)})
  await panel().getByText('services[3].numbers.ptc').waitFor()
  assert.equal((await shown.tv.services()).total, 81)
})

test('all else is told what it is not, and changes nothing', async () => {
  shown = await Console.open()
  const {revision} = await shown.tv.state()
  const refused = [
    [{name: 'a.png', content: '\x89PNG\0\0'}, 'It is neither a text nor a recording'],
    [{name: 'a.json', content: '{"version": 1, "state": {}}'}, 'it lacks settings, services'],
    [{name: 'a.json', content: '[1,\n2]'}, 'it is an array'],
    [{name: 'a.json', content: '{"version": '}, 'It looks like JSON but is invalid'],
    [{name: 'letter.txt', content: 'Dear all,\n'}, 'not a channel list of a known format'],
    [{name: 'empty.conf'}, 'It is empty'],
    [{name: 'huge.conf', tabs: 32 * 1024 * 1024 + 1}, 'the server takes at most 32 MiB'],
    [{name: '<b>"\u202egnp'.padEnd(240, 'x'), content: 'x'}, 'not a channel list'],
  ]
  for (const [file, reason] of refused) {
    await drop(file)
    await panel().getByRole('alert').filter({hasText: reason}).waitFor()
    await panel().getByText('was not taken').waitFor()
    const box = await panel().boundingBox()
    assert.ok(box.x >= 0 && box.x + box.width <= 1280, file.name)
  }
  assert.equal((await shown.tv.state()).revision, revision)
})

test('a file whose message is too long is refused before it is sent', async () => {
  shown = await Console.open()
  await drop({name: 'long.txt', content: '> ', tabs: 17 * 1024 * 1024})
  await panel().getByText('The message would have 34.0 MiB').waitFor()
  assert.ok(shown.tv.connected)
})

test('a file is opened by a button, and the panel leaves the TV in sight and is closed by a key', async () => {
  shown = await Console.open()
  const pane = await shown.show('App')
  const button = pane.getByRole('button', {name: 'Open a file'})
  const [chooser] = await Promise.all([shown.page.waitForEvent('filechooser'), button.press('Enter')])
  await chooser.setFiles({name: 'mine.txt', mimeType: 'text/plain', buffer: Buffer.from('> GetTVMode\nint 1\n')})
  await panel().getByText('passed').waitFor()
  const screen = await shown.pane('Screen').boundingBox()
  assert.ok((await panel().boundingBox()).y >= screen.y + screen.height)
  await panel().getByRole('button', {name: 'Close the result of the file'}).press('Escape')
  await panel().waitFor({state: 'detached'})
  assert.equal(await shown.page.evaluate(() => document.activeElement.textContent), 'Open a file')
})

test('what is no file is left to the page', async () => {
  shown = await Console.open()
  const isTaken = await shown.page.evaluate(() => {
    const dataTransfer = new DataTransfer()
    dataTransfer.setData('text/plain', 'x')
    return !document.body.dispatchEvent(new DragEvent('dragover', {dataTransfer, bubbles: true, cancelable: true}))
  })
  assert.equal(isTaken, false)
  assert.equal(await panel().count(), 0)
})

const services = [
  {program: 1, name: 'Coast News', audio: ['ita', 'eng'], subtitles: ['eng']},
  {program: 2, name: '<script>alert(1)</script>', audio: ['deu', 'deu'], isScrambled: true},
  {program: 3, name: '', kind: 2, audio: ['fra']},
]

const cells = () => panel().getByRole('row').evaluateAll(rows => rows.map(row => [...row.cells].map(cell => cell.textContent)))

test('the services of a recording are shown, and imported or added when a person says so', async () => {
  shown = await Console.open()
  const {revision} = await shown.tv.state()
  await drop({name: 'evening.ts', content: recording(services)})
  await panel().getByText('3 services found').waitFor()
  assert.deepEqual(await cells(), [
    ['No.', 'Name', 'Kind', 'Audio', 'Subtitles', 'Flags'],
    ['', 'Coast News', 'television', 'ita, eng', 'eng', ''],
    ['', '<script>alert(1)</script>', 'television', 'deu', '', 'scrambled'],
    ['', '(no name)', 'radio', 'fra', '', ''],
  ])
  assert.equal((await shown.tv.state()).revision, revision)
  await panel().getByRole('button', {name: 'Add', exact: true}).click()
  await panel().getByText('3 services: 3 added, 0 changed, 0 gone').waitFor()
  assert.equal((await shown.tv.services()).total, 84)
  await panel().getByRole('button', {name: 'Import', exact: true}).press('Enter')
  await panel().getByText('3 services: 0 added, 0 changed, 81 gone').waitFor()
  assert.equal((await shown.tv.services()).total, 3)
  assert.deepEqual(await findings(shown.page), [])
  await shown.page.getByRole('tab', {name: 'Channels'}).click()
  await shown.pane('Channels').getByRole('row').filter({hasText: 'Coast News'}).click()
  await shown.page.locator('[role=img][aria-label="Main picture"][aria-description*="Coast News"]').waitFor()
})

test('a recording is known by its packets, whatever they stand in and the file is called', async () => {
  shown = await Console.open()
  for (const how of [{}, {front: 4}, {behind: 16}, {start: 1000}]) {
    await drop({name: 'no matter.txt', content: recording(services, how)})
    await panel().getByText('3 services found').waitFor()
    await panel().getByRole('button', {name: 'Close the result of the file'}).click()
    await panel().waitFor({state: 'detached'})
  }
  await drop({name: 'damaged.M2TS', content: Buffer.concat([Buffer.alloc(70_000), recording(services)])})
  await panel().getByText('3 services found').waitFor()
})

test('what is wrong with a recording is told by place, and one without services is not imported', async () => {
  shown = await Console.open()
  const bytes = recording(services, {fillers: 20})
  bytes[188 + 100] ^= 1  // makes a section's checksum wrong
  await drop({name: 'damaged.ts', content: bytes})
  await panel().getByRole('columnheader', {name: 'Place'}).waitFor()
  assert.match((await cells()).at(-1).join(' '), /^packet 2 .*checksum/)
  await drop({name: 'empty.ts', content: recording([], {fillers: 20})})
  await panel().getByText('0 services found').waitFor()
  await panel().getByText(/None of its 22 packets describes a service/).waitFor()
  assert.equal(await panel().getByRole('button', {name: 'Import'}).count(), 0)
})

/** Drops a recording of a hundred megabytes, which is created in the page. */
const dropLong = () => shown.page.evaluate(() => {
  const block = new Uint8Array(188 * 5000)
  for (let at = 0; at < block.length; at += 188) block.set([0x47, 0x1f, 0xff, 0x10], at)
  dispatchEvent(new CustomEvent('emp-open', {detail: [new File(Array(110).fill(block), 'long.ts')]}))
})

test('a long recording tells how much is scanned, and can be ended', async () => {
  shown = await Console.open()
  const protocol = await shown.page.context().newCDPSession(shown.page)
  await protocol.send('Network.emulateNetworkConditions', {offline: false, latency: 0, downloadThroughput: -1, uploadThroughput: 10e6})
  await dropLong()
  await panel().getByText(/is scanned: .* of 98.6 MiB/).waitFor()
  await shown.page.waitForFunction(() => document.querySelector('.file-result progress')?.value > 0)
  await panel().getByRole('button', {name: 'Cancel'}).press('Enter')
  await panel().waitFor({state: 'detached'})
  await drop({name: 'evening.ts', content: recording(services)})
  await panel().getByText('3 services found').waitFor()
})

test('what a scan found can no longer be imported once its session has ended, and the page says so', {skip: elsewhere('a set in a tab has no other connection')}, async () => {
  shown = await Console.open()
  shown.tolerated = /WebSocket connection to .* failed/
  await drop({name: 'evening.ts', content: recording(services)})
  await panel().getByText('3 services found').waitFor()
  const own = (await shown.tv.sessions()).map(({session}) => session).find(session => session !== shown.tv.session)
  await shown.tv.call('session.close', {session: own})
  await panel().getByRole('button', {name: 'Import', exact: true}).click()
  await panel().getByRole('alert').filter({hasText: 'scan it again'}).waitFor()
  await panel().getByText('was not imported').waitFor()
})
