// SPDX-License-Identifier: MIT
// Cases for a client of any set, on a server or in memory. The same cases run with all of them, in Node and in
// browsers, so a case uses only its arguments. It returns a document, which the caller compares.
//
// A case is {name, run, expected}. `run` gets {fresh, object}: `fresh(options)` makes a TV and connects to it;
// `object(tv, more)` makes the synchronous object on it, with more options of installWindow. All of these are closed
// after the case.

const list = 'Grüße aus Köln 🌍;Test:11836:HC34M2O0S0:S19.2E:27500:101:102=deu:104:0:28106:1:1101:0\n'

/** The rejection of a promise, as a document. */
const failure = promise => promise.then(() => 'fulfilled', ({name, code, message, sent}) =>
  JSON.parse(JSON.stringify({name, code, message, sent})))

/** The exception of a function, as a document. */
function thrown(call) {
  try {
    return {returned: call()}
  } catch ({name, code, message}) {
    return JSON.parse(JSON.stringify({name, code, message}))
  }
}

/** Collects events of a topic until one meets a condition. @return {seen, ready, ended} */
function collect(tv, topic, isLast, options) {
  const seen = []
  let ready
  const ended = new Promise((resolve, reject) => {
    const patience = setTimeout(() => reject(new Error(`no last event of '${topic}' within 20 seconds`)), 20_000)
    ready = tv.on(topic, event => {
      seen.push(event)
      if (!isLast(event)) return
      clearTimeout(patience)
      resolve()
    }, options).ready
  })
  return {seen, ready, ended}
}

const client = [
  {
    name: 'a client says what it is connected to',
    run: async ({fresh}) => {
      const tv = await fresh({appId: 'com.example.guide'})
      const sessions = await tv.sessions()
      const own = sessions.find(({session}) => session === tv.session)
      return [tv.isVirtual, tv.connected, typeof tv.server, own.connected]
    },
    expected: [true, true, 'string', true],
  },
  {
    name: 'commands answer numbers and texts, and a failure is a value',
    run: async ({fresh}) => {
      const tv = await fresh()
      const values = [await tv.window.SetChannel(3, 0), await tv.window.GetCurrentChannel_Name()]
      await tv.fault('IServiceNavigation::GetTvMode', {result: 0, times: 1})
      values.push(await tv.window.GetTVMode(), await tv.window.GetTVMode(), await tv.Execute('NoSuchCommand') ?? 'undefined')
      return [...values, await tv.Execute('SetChannelByServiceid', 1152959734176350309n)]
    },
    expected: [1, 'Lighthouse News', -1, 1, 'undefined', 1],
  },
  {
    name: 'errors have the code and the reason of the wire',
    run: async ({fresh}) => {
      const tv = await fresh()
      return Promise.all([failure(tv.window.SetChanel(3)), failure(tv.call('tv.nothing')), failure(tv.set('main.source', 'x')),
        failure(tv.call('tv.set', {name: 'country'})), failure(tv.restore({version: 99}))])
        .then(all => all.map(({name, code, message}) => [name, code, message]))
    },
    expected: [
      ['EmpRpcError', -32601, "the plug-in has no command 'SetChanel'; did you mean 'SetChannel'?"],
      ['EmpRpcError', -32601, "Method not found: there is no method 'tv.nothing'"],
      ['EmpRpcError', 1002, "The set does not take this: a number from -2147483648 to 2147483647 is wanted, not 'x'"],
      ['EmpRpcError', -32602, 'Invalid params: there is no "value"'],
      ['EmpRpcError', 1002, 'The set does not take this: version: this program reads version 1, not 99'],
    ],
  },
  {
    name: 'a client that was closed, once or twice, says so',
    run: async ({fresh}) => {
      const tv = await fresh()
      await Promise.all([tv.close(), tv.close()])
      const patience = new Promise(resolve => setTimeout(resolve, 5000, 'nothing'))
      const all = [failure(tv.state()), failure(tv.on('service', () => {}).ready), failure(tv.window.GetTVMode())]
      return (await Promise.all(all.map(one => Promise.race([one, patience])))).map(({name, sent}) => [name, sent])
    },
    expected: Array(3).fill(['EmpConnectionError', false]),
  },
  {
    name: 'knobs, settings, faults and the shell reach the set',
    run: async ({fresh}) => {
      const tv = await fresh()
      await tv.set('country', 42)
      await tv.setSetting('db/guide/volume', 7)
      const before = (await tv.settings()).find(({key}) => key === 'db/guide/volume')?.value
      await tv.removeSetting('db/guide/volume')
      const after = (await tv.settings()).some(({key}) => key === 'db/guide/volume')
      const id = await tv.fault('IServiceNavigation::GetTvMode', {result: 0})
      await tv.window.GetTVMode()
      const [{hits}] = await tv.faults()
      await tv.clearFaults(id)
      return [await tv.get('country'), before, after, hits, await tv.faults(), await tv.run('.get country')]
    },
    expected: ['42', 7, false, 1, [], ['country = 42']],
  },
  {
    name: 'lists are imported, with their texts and problems',
    run: async ({fresh}) => {
      const tv = await fresh()
      const report = await tv.import(`${list}broken\n`, {name: 'mine'})
      const {total, services: [{name}]} = await tv.services()
      return [report.imported, report.problems.map(({line}) => line), total, name]
    },
    expected: [1, [2], 1, 'Grüße aus Köln 🌍'],
  },
  {
    name: 'a snapshot makes another set the same',
    run: async ({fresh}) => {
      const [one, other] = [await fresh(), await fresh()]
      await one.set('country', 42)
      await one.import(list)
      await other.restore(await one.snapshot())
      return [await other.get('country'), (await other.services()).total, (await other.state()).country === (await one.state()).country]
    },
    expected: ['42', 1, true],
  },
  {
    name: 'a listener gets the state, then changes, each once and in order, and the command before its answer',
    run: async ({fresh}) => {
      const tv = await fresh()
      const order = []
      const all = collect(tv, '*', event => event.topic === 'knob')
      await all.ready
      tv.on('command', event => event.name && order.push(event.name))
      await tv.window.SetChannel(3, 0)
      order.push('answered')
      await tv.set('country', 42)
      await all.ended
      const numbers = all.seen.map(({number}) => number)
      return [typeof all.seen[0].state.revision, numbers.every((number, at) => number === numbers[0] + at),
        all.seen.some(({topic}) => topic === 'service'), order]
    },
    expected: ['number', true, true, ['SetChannel', 'answered']],
  },
  {
    name: 'a listener may ask for what happened before, and may stop',
    run: async ({fresh}) => {
      const tv = await fresh()
      await tv.set('country', 42)
      await tv.set('country', 43)
      const late = collect(tv, 'knob', event => event.after === '43', {after: 0})
      await late.ended
      const heard = []
      const stop = tv.on('knob', event => heard.push(event.after))
      await stop.ready
      stop()
      await tv.set('country', 44)
      await tv.state()
      return [late.seen.filter(({name}) => name === 'country').map(({after}) => after), heard.length]
    },
    expected: [['42', '43', '44'], 1],
  },
  {
    name: 'what a command did can be looked back at, and gone back to',
    run: async ({fresh}) => {
      const tv = await fresh()
      await tv.window.SetChannel(3, 0)
      const {command, name, calls} = await tv.why()
      await tv.window.SetChannel(5, 0)
      const then = (await tv.history(command)).windows.main.service.name
      await tv.goBack(command)
      return [name, calls.length > 0, then, (await tv.snapshot(command)).version]
    },
    expected: ['SetChannel', true, 'Lighthouse News', 1],
  },
  {
    name: 'a restart closes the engine, a reset forgets all',
    run: async ({fresh}) => {
      const tv = await fresh()
      await tv.window.FindChannel(0, 1)
      const sizes = [await tv.window.GetChannel_Size()]
      await tv.set('country', 42)
      await tv.restart()
      sizes.push(await tv.window.GetChannel_Size(), await tv.get('country'))
      await tv.reset()
      return [...sizes, await tv.get('country') === '42']
    },
    expected: [31, 0, '42', false],
  },
  {
    name: 'transcripts are checked on a set of their own',
    run: async ({fresh}) => {
      const tv = await fresh()
      const passed = await tv.check('> GetTVMode\nint 1\n')
      const failed = await tv.check('> GetTVMode\nint 2\n')
      return [passed, failed.passed, /^\+int 1$/m.test(failed.diff)]
    },
    expected: [{passed: true, diff: ''}, false, true],
  },
  {
    name: 'a latency holds the answer back, and what the session asks behind it',
    run: async ({fresh}) => {
      const tv = await fresh()
      await tv.set('latency.IServiceNavigation::GetTvMode', 150)
      const start = performance.now()
      const order = []
      await Promise.all([tv.window.GetTVMode().then(() => order.push('first')), tv.get('country').then(() => order.push('second'))])
      return [performance.now() - start >= 149, order]
    },
    expected: [true, ['first', 'second']],
  },
  {
    name: 'closing fails what is under way, and later calls',
    run: async ({fresh}) => {
      const tv = await fresh()
      await tv.set('latency.IServiceNavigation::GetTvMode', 60_000)
      const held = failure(tv.window.GetTVMode())
      await tv.close()
      const [first, later] = [await held, await failure(tv.state())]
      await tv.close()
      return [first.name, first.sent, later.name, later.sent, tv.connected]
    },
    expected: ['EmpConnectionError', true, 'EmpConnectionError', false, false],
  },
  {
    name: 'ten thousand services come through',
    run: async ({fresh}) => {
      const tv = await fresh()
      const lines = Array.from({length: 10_000}, (_, at) =>
        `Channel ${at};Test:${10_700 + at % 1000}:HC34M2O0S0:S19.2E:27500:101:102:104:0:${at + 1}:1:1101:0`)
      await tv.import(lines.join('\n'))
      const text = await tv.window.GetFullChannelList()
      return [(await tv.services({limit: 1})).total, text.length > 1_000_000]
    },
    expected: [10_000, true],
  },
]

const object = [
  {
    name: 'the object answers at once, as on the set',
    run: async ({fresh, object}) => {
      const tvWindow = object(await fresh())
      const values = [tvWindow.isVirtual, tvWindow.Execute('SetChannel', 3, 0), tvWindow.Execute('GetCurrentChannel_Name')]
      values.push(tvWindow.SetChannelByServiceid(1152959734176350309n), tvWindow.GetCurrentChannel_Name(undefined))
      return [...values, tvWindow.Execute('NoSuchCommand') ?? 'undefined', tvWindow.SetChannel === tvWindow.SetChannel,
        'SetChannel' in tvWindow, 'SetChanel' in tvWindow, typeof tvWindow.then]
    },
    expected: [true, 1, 'Lighthouse News', 1, 'Lighthouse One', 'undefined', true, true, false, 'undefined'],
  },
  {
    name: 'the object speaks the shell, and refuses what is no parameter',
    run: async ({fresh, object}) => {
      const tvWindow = object(await fresh())
      const lines = tvWindow.run('.fault IServiceNavigation::GetTvMode result=0 times=1')
      const {name, code} = thrown(() => tvWindow.Execute('SetChannel', 1.5))
      return [lines, tvWindow.GetTVMode(), tvWindow.GetTVMode(), name, code]
    },
    expected: [[], -1, 1, 'EmpRpcError', -32602],
  },
  {
    name: 'objects have engines of their own, and the same name has the same object',
    run: async ({fresh, object}) => {
      const tv = await fresh()
      const one = object(tv, {name: 'one'})
      one.FindChannel(0, 1)
      const sizes = [one.GetChannel_Size(), object(tv, {name: 'other'}).GetChannel_Size()]
      const same = object(tv, {name: 'one'})
      one.close()
      return [...sizes, same === one, one.GetChannel_Size()]
    },
    expected: [31, 0, true, 0],
  },
  {
    name: 'a client hears of what the object does',
    run: async ({fresh, object}) => {
      const tv = await fresh()
      const tvWindow = object(tv, {appId: 'com.example.guide'})
      const services = collect(tv, 'service', event => event.after?.service.name === 'Lighthouse News')
      await services.ready
      tvWindow.SetChannel(3, 0)
      const atOnce = services.seen.length
      await services.ended
      const others = (await tv.sessions()).filter(({session, shared}) => session !== tv.session && !shared)
      return [atOnce, others.length]
    },
    expected: [1, 1],
  },
  {
    name: 'a latency lets the call take its time',
    run: async ({fresh, object}) => {
      const tv = await fresh()
      const tvWindow = object(tv)
      await tv.set('latency.IServiceNavigation::GetTvMode', 150)
      const start = performance.now()
      const mode = tvWindow.GetTVMode()
      return [mode, performance.now() - start >= 149]
    },
    expected: [1, true],
  },
]

/** Cases of the client, of the synchronous object, and both. */
export const cases = {client, object, all: [...client, ...object]}

/**
 * Runs a case. @param make  makes a TV from options  @param install  `installWindow(target, options)` on it: (target, tv, options)
 * @return what it answers
 */
export async function runCase({run}, make, install) {
  const tvs = []
  const target = {}
  const fresh = async options => {
    const tv = await make(options)
    tvs.push(tv)
    return tv
  }
  try {
    return await run({fresh, object: (tv, more) => install(target, tv, {name: 'tvWindow', ...more})})
  } finally {
    for (const one of Object.values(target)) one.close()
    for (const tv of tvs) await tv.close()
  }
}
