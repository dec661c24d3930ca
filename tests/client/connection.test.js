// SPDX-License-Identifier: MIT
// Calls, events and reconnects with a server whose answers are scripted.
import assert from 'node:assert/strict'
import {afterEach, beforeEach, test} from 'node:test'
import {EmpConnectionError, EmpRpcError, connect} from '../../virtualtv/console/client/client.js'
import {Peer} from './support/peer.js'
import {silenced, until} from './support/wait.js'

let peer
let tv
beforeEach(async () => {
  peer = await new Peer().listen()
})
afterEach(async () => {
  await tv?.close()
  tv = undefined
  await peer.stop()
})

const connected = async options => tv = await connect(peer.address, options)

test('connecting opens a session with the ids of the app, and the token is in the query', async () => {
  let url
  peer.server.on('connection', (_, request) => url = request.url)
  await connected({appId: 'com.example.guide', widgetId: 'w', token: 'a b&c'})
  assert.equal(url, '/rpc?token=a+b%26c')
  assert.deepEqual(peer.calls[0].params, {appId: 'com.example.guide', widgetId: 'w'})
  assert.deepEqual([tv.session, tv.server, tv.connected, tv.isVirtual], ['session 1', 'first run', true, true])
})

test('connecting to nobody fails with a named error, connecting to no address with another', async () => {
  await assert.rejects(connect('http://127.0.0.1:1'), error =>
    error instanceof EmpConnectionError && /127.0.0.1:1 can't be reached: .*ECONNREFUSED/.test(error.message) && !error.sent)
  await assert.rejects(connect('127.0.0.1'), /an address like/)
  await assert.rejects(connect('ftp://127.0.0.1'), /an http address/)
})

test('a command sends texts, numbers and gaps, and answers its value', async () => {
  peer.answers['window.SetChannel'] = {accepted: true, kind: 'int', value: -1}
  peer.answers['window.GetCurrentChannel_Name'] = {accepted: true, kind: 'unicode', value: 'A\uFFFD', units: [65, 0xD800]}
  peer.answers['window.SetScreenCropRect'] = {accepted: true, kind: 'empty'}
  await connected()
  assert.equal(await tv.window.SetChannel(3, undefined, 1152959734176350309n, undefined), -1)
  assert.deepEqual(peer.calls.at(-1).params, [3, '', '1152959734176350309'])
  assert.equal(await tv.window.GetCurrentChannel_Name(), 'A\uD800')
  assert.deepEqual(peer.calls.at(-1).params, [])
  assert.equal(await tv.window.SetScreenCropRect(), undefined)
})

test('the object of commands is no promise, and tells a misspelled name', async () => {
  peer.answers['window.SetChanel'] = {error: {code: -32601, message: 'Method not found', data: {reason: 'no such method'}}}
  peer.answers['rpc.discover'] = {methods: [{name: 'window.SetChannel'}, {name: 'window.execute'}, {name: 'tv.state'}]}
  await connected()
  assert.equal((await tv.window).SetChannel, tv.window.SetChannel)
  await assert.rejects(tv.window.SetChanel(3), error => error instanceof EmpRpcError && error.code === -32601 &&
    error.message === "the plug-in has no command 'SetChanel'; did you mean 'SetChannel'?")
  assert.throws(() => tv.window.setChannel(3), /tv.window.setChannel is not a function/)
})

test('Execute answers what an app on the set sees', async () => {
  const answer = reply => peer.answers['window.execute'] = reply
  await connected()
  for (const [reply, value] of [
    [{accepted: true, kind: 'int', value: 1}, 1], [{accepted: true, kind: 'ascii', value: 'x'}, 'x'],
    [{accepted: true, kind: 'empty'}, ''], [{accepted: false}, undefined], [{accepted: false, kind: 'int', value: -1}, -1],
  ]) {
    answer(reply)
    assert.equal(await tv.Execute('Any', 1, undefined, 2), value)
  }
  assert.deepEqual(peer.calls.at(-1).params, {name: 'Any', parameters: [1, '', 2]})
})

test('an error of the server rejects with its code, its data and its reason', async () => {
  peer.answers['tv.set'] = {error: {code: 1002, message: 'Refused', data: {reason: 'a number is wanted'}}}
  await connected()
  await assert.rejects(tv.set('region', 'x'), error => {
    assert.ok(error instanceof EmpRpcError)
    assert.deepEqual({...error}, {name: 'EmpRpcError', code: 1002, data: {reason: 'a number is wanted'}, method: 'tv.set'})
    return error.message === 'Refused: a number is wanted'
  })
})

test('a call that the server could not read fails', async () => {
  await connected()
  const call = tv.call('tv.restore', {snapshot: 'deep'})
  await until(() => peer.called('tv.restore').length === 1)
  peer.send({id: null, error: {code: -32700, message: 'Parse error'}})
  await assert.rejects(call, {name: 'EmpRpcError', code: -32700})
})

test('what no JSON can hold rejects and leaves the connection alone', async () => {
  peer.answers['tv.state'] = {}
  await connected()
  const endless = {}
  endless.self = endless
  await assert.rejects(tv.call('tv.restore', endless), TypeError)
  assert.deepEqual(await tv.state(), {})
})

test('methods unwrap what holds one thing alone', async () => {
  Object.assign(peer.answers, {
    'tv.run': {lines: ['a', 'b']}, 'tv.get': {value: '7'}, 'tv.fault': {id: 3}, 'tv.snapshot': {snapshot: {version: 1}},
    'tv.services': {revision: 1, total: 0, services: []},
  })
  await connected()
  assert.deepEqual(await tv.run('.get'), ['a', 'b'])
  assert.equal(await tv.get('region'), '7')
  assert.equal(await tv.fault('vconf_get_int', {result: -1}), 3)
  assert.deepEqual(peer.calls.at(-1).params, {operation: 'vconf_get_int', result: -1})
  assert.deepEqual(await tv.snapshot(), {version: 1})
  assert.deepEqual(await tv.services({limit: 1}), {revision: 1, total: 0, services: []})
})

test('a call in flight fails when the connection breaks, says so, and is never sent again', async () => {
  await connected()
  const call = tv.call('tv.reset')
  await until(() => peer.called('tv.reset').length === 1)
  peer.cut()
  await assert.rejects(call, error => error instanceof EmpConnectionError && error.sent && /tv.reset: .* broke/.test(error.message))
  peer.answers['tv.state'] = {}
  await tv.state()
  assert.equal(peer.connections.length, 2)
  assert.equal(peer.called('tv.reset').length, 1)
})

test('where no session can be opened no call was sent', async () => {
  peer.answers['session.open'] = () => peer.cut()
  await assert.rejects(connect(peer.address), {name: 'EmpConnectionError', sent: false})
})

test('a server that is another one is told', async () => {
  for (const answer of [{}, {session: 1}, 5, null, [1]]) {
    peer.answers['session.open'] = answer
    await assert.rejects(connect(peer.address), {name: 'EmpConnectionError', sent: false, message: /is that emp-window/})
  }
})

test('a message that is none ends the connection, and another one is made', async () => {
  await connected({firstPause: 1})
  for (const text of ['hello', '5', 'null', '"x"', '']) {
    const connections = peer.connections.length
    peer.connections.at(-1).send(text)
    await until(() => peer.connections.length > connections && tv.connected)
  }
  assert.equal(tv.session, 'session 6')
})

test('calls made meanwhile wait for the connection, in their order, or fail unsent', async () => {
  peer.answers['tv.get'] = ({name}) => ({value: name})
  await connected()
  const port = peer.port
  await peer.stop()
  await until(() => !tv.connected)
  const waiting = [tv.get('one'), tv.get('two'), tv.get('three')]
  peer = await Object.assign(new Peer(), {answers: peer.answers}).listen(port)
  assert.deepEqual(await Promise.all(waiting), ['one', 'two', 'three'])
  assert.deepEqual(peer.called('tv.get').map(call => call.params.name), ['one', 'two', 'three'])
  await tv.close()

  await connected({patience: 300})
  await peer.stop()
  await until(() => !tv.connected)
  const late = tv.get('late')
  await assert.rejects(late, error => error instanceof EmpConnectionError && !error.sent && /for 300 ms/.test(error.message))
  await tv.close()
  peer = await new Peer().listen()
})

test('the pauses between reconnects grow', async context => {
  await connected()
  await peer.stop()
  const pauses = []
  const pause = globalThis.setTimeout
  context.mock.method(globalThis, 'setTimeout', (run, time, ...more) => {
    if (time < 10_000 && time >= 50) pauses.push(time)
    return pause(run, time < 10_000 ? 1 : time, ...more)
  })
  await until(() => pauses.length >= 10)
  pauses.slice(0, 7).forEach((time, at) => {
    const most = Math.min(5000, 100 * 2 ** at)
    assert.ok(time >= most / 2 && time <= most, `pause ${at}: ${time}`)
  })
  assert.ok(pauses.every(time => time <= 5000))
  await tv.close()
  peer = await new Peer().listen()
})

test('closing fails what is in flight or waits, ends reconnecting and fails later calls', async () => {
  await connected()
  const failed = assert.rejects(tv.call('tv.reset'), {name: 'EmpConnectionError', message: /closed/})
  await tv.close()
  await failed
  await assert.rejects(tv.state(), {name: 'EmpConnectionError', sent: false})
  assert.equal(tv.connected, false)
  tv = await connect(peer.address)
  peer.cut()
  await until(() => !tv.connected)
  const waiting = assert.rejects(tv.state(), {name: 'EmpConnectionError', sent: false})
  await tv.close()
  await waiting
})

test('a lost session is warned of when it had run commands', async context => {
  const warnings = silenced('warn', context)
  peer.answers['window.GetTVMode'] = {accepted: true, kind: 'int', value: 1}
  await connected()
  const seen = []
  tv.on('connection', event => seen.push(event.connected))
  peer.cut()
  await until(() => seen.length === 3)
  assert.deepEqual(warnings(), [])
  await tv.window.GetTVMode()
  peer.cut()
  await until(() => seen.length === 5)
  assert.equal(warnings().length, 1)
  assert.match(warnings()[0], /a new session: the window that was selected .* gone/)
  assert.deepEqual(seen, [true, false, true, false, true])
  assert.equal(tv.session, 'session 3')
})

test('a listener gets the state, then the events of its topic that come behind it', async () => {
  await connected()
  const [modes, all] = [[], []]
  peer.number = 7
  await tv.on('mode', event => modes.push(event)).ready
  peer.event('mode', {mode: 1})
  await tv.on('*', event => all.push(event)).ready
  peer.event('source')
  peer.event('mode', {mode: 2})
  await until(() => all.length === 3)
  assert.deepEqual(modes, [{topic: 'mode', number: 7, server: 'first run', state: {asOf: 7}},
    {number: 8, topic: 'mode', mode: 1}, {number: 10, topic: 'mode', mode: 2}])
  assert.deepEqual(all.map(event => [event.topic, event.number]), [['*', 8], ['source', 9], ['mode', 10]])
})

test('a listener is told what happened before it where it asks for that', async () => {
  peer.answers['events.subscribe'] = {server: 'first run', number: 9, state: {asOf: 9}}
  await connected()
  const seen = []
  const {ready} = tv.on('mode', event => seen.push([event.number, event.state]), {after: 6})
  await ready
  assert.deepEqual(peer.calls.at(-1).params, {topics: ['mode'], after: 6})
  for (const number of [6, 7, 9, 10, 10]) peer.send({method: 'event', params: {topic: 'mode', number}})
  await until(() => seen.length >= 4)
  assert.deepEqual(seen, [[9, {asOf: 9}], [7, undefined], [9, undefined], [10, undefined]])
})

test('a listener that asks for events that are not held any more is told those from now on', async () => {
  peer.answers['events.subscribe'] = {server: 'first run', number: 9, state: {asOf: 9}, resync: true}
  await connected()
  const seen = []
  await tv.on('mode', event => seen.push([event.number, event.resync]), {after: 6}).ready
  for (const number of [8, 10]) peer.send({method: 'event', params: {topic: 'mode', number}})
  await until(() => seen.length >= 2)
  assert.deepEqual(seen, [[9, undefined], [10, undefined]])
})

test('events that come in one piece with the answer are not lost', async () => {
  peer.answers['events.subscribe'] = undefined
  await connected()
  const numbers = []
  tv.on('mode', event => numbers.push(event.number))
  await until(() => peer.called('events.subscribe').length === 1)
  const {_socket: socket} = peer.connections[0]
  socket.cork()
  peer.send({id: peer.calls.at(-1).id, result: {server: 'first run', number: 0, state: {}}})
  for (let i = 0; i < 5; ++i) peer.event('mode')
  socket.uncork()
  await until(() => numbers.length === 6)
  assert.deepEqual(numbers, [0, 1, 2, 3, 4, 5])
})

test('a listener that throws stops no other one', async () => {
  const errors = []
  globalThis.reportError = error => errors.push(error.message)
  await connected()
  const seen = []
  tv.on('mode', () => { throw new Error('of the app') })
  tv.on('mode', event => seen.push(event.number))
  await until(() => seen.length === 1)
  peer.event('mode')
  await until(() => seen.length === 2)
  delete globalThis.reportError
  assert.deepEqual(errors, ['of the app', 'of the app'])
})

test('the last listener of a topic ends its subscription, and hears nothing more', async () => {
  await connected()
  const seen = []
  const stop = tv.on('mode', event => seen.push(event.number))
  const other = tv.on('mode', () => {})
  await Promise.all([stop.ready, other.ready])
  stop()
  stop()
  peer.event('mode')
  other()
  await until(() => peer.called('events.unsubscribe').length === 1)
  assert.deepEqual(peer.calls.at(-1).params, {topics: ['mode']})
  assert.deepEqual(seen, [0])
})

test('a topic that the server does not know is told', async context => {
  const errors = silenced('error', context)
  peer.answers['events.subscribe'] = {error: {code: -32602, message: 'Invalid params', data: {reason: "no topic 'mood'"}}}
  await connected()
  await assert.rejects(tv.on('mood', () => {}).ready, {code: -32602})
  assert.match(errors()[0], /can't listen to 'mood': .*no topic 'mood'/)
  assert.throws(() => tv.on('mode'), /a function is wanted/)
})

test('after a break the events since the last one are asked for, and none is told twice', async () => {
  await connected()
  const seen = []
  await tv.on('mode', event => seen.push(event.number)).ready
  peer.event('mode')
  peer.event('mode')
  await until(() => seen.length === 3)
  peer.answers['events.subscribe'] = ({after}) => {
    setImmediate(() => {
      for (let number = after; number <= 4; ++number) peer.send({method: 'event', params: {number, topic: 'mode'}})
      peer.number = 4
    })
    return {server: 'first run', number: 4, state: {}}
  }
  peer.cut()
  await until(() => seen.length === 5)
  assert.deepEqual(seen, [0, 1, 2, 3, 4])
  assert.deepEqual(peer.called('events.subscribe').at(-1).params, {topics: ['mode'], after: 2, server: 'first run'})
})

test('where the events are not held any more, or the server is another one, listeners get the state again', async () => {
  await connected()
  const seen = []
  await tv.on('mode', event => seen.push([event.number, event.resync])).ready
  peer.answers['events.subscribe'] = {server: 'second run', number: 3, state: {asOf: 3}, resync: true}
  peer.id = 'second run'
  peer.number = 3
  peer.cut()
  await until(() => seen.length === 2)
  peer.event('mode')
  await until(() => seen.length === 3)
  assert.deepEqual(seen, [[0, undefined], [3, true], [4, undefined]])
  peer.answers['events.subscribe'] = {server: 'second run', number: 4, state: {}}
  peer.cut()
  await until(() => peer.called('events.subscribe').length === 3)
  assert.deepEqual(peer.calls.at(-1).params, {topics: ['mode'], after: 4, server: 'second run'})
})

test('a listener that came while the connection was broken gets the state; the others go on', async () => {
  await connected()
  const [old, late] = [[], []]
  await tv.on('mode', event => old.push(event.number)).ready
  const port = peer.port
  await peer.stop()
  await until(() => !tv.connected)
  tv.on('mode', event => late.push(event.number))
  peer = await Object.assign(new Peer(), {number: 5, id: peer.id}).listen(port)
  peer.answers['events.subscribe'] = ({after}) => {
    if (after !== undefined) setImmediate(() => peer.send({method: 'event', params: {number: 5, topic: 'mode'}}))
    return {server: 'first run', number: 5, state: {}}
  }
  await until(() => late.length === 1 && old.length === 2)
  peer.event('mode')
  await until(() => late.length === 2 && old.length === 3)
  assert.deepEqual([old, late], [[0, 5, 6], [5, 6]])
})
