// SPDX-License-Identifier: MIT
// An app in TypeScript: what the typings allow, and what they do not.
import {connect, createTv, forgetTv, installWindow, runTranscript, EmpConnectionError, EmpRpcError, EmpTvError} from 'emp-window'
import type {EmpWindow, EmpWindowScript, KeptTv, Reply, Snapshot, Tv, TvEvent} from 'emp-window'
import {launch} from 'emp-window/launch'
import {PortSocket, servePort} from 'emp-window/port'
import {junitReport} from 'emp-window/transcript'

declare global {
  var tvWindow: EmpWindow
  var empWindow: EmpWindowScript
}

export function app(): string {
  installWindow(globalThis, {address: 'http://127.0.0.1:8090', name: 'tvWindow', appId: 'com.example.guide'})
  const mode: number = tvWindow.GetTVMode()
  const name: string | number = tvWindow.GetCurrentChannel_Name()
  const tuned: number = tvWindow.SetChannelByServiceid(1152959734176350309n)
  const reply: string | number | undefined = tvWindow.Execute('SetChannel', 3, undefined, 'x', true)
  const lines: string[] = tvWindow.run('.get main')
  return [mode, name, tuned, reply, ...lines].join()
}

export async function test(): Promise<void> {
  const tv = await launch({list: 'channels.conf', options: ['--no-wait'], appId: 'a'})
  const pid: number = tv.pid
  const code: number = await tv.window.SetChannel(3, 0)
  const id: number = await tv.fault('IServiceNavigation::GetTvMode', {result: 0, times: 'always', outputs: {mode: '0,1'}})
  const snapshot: Snapshot = await tv.snapshot()
  const {total, services: [first]} = await tv.services({antenna: 'cable', limit: 10})
  const shape: '16:9' | '4:3' | undefined = (await tv.state()).windows.main.picture?.shape
  const openingCalls: string[] = (await tv.why()).opening?.calls ?? []
  console.log(first?.name, first?.favourites[0], shape, openingCalls)
  const stop = tv.on('service', event => {
    if (event.state) console.log(event.resync, event.state.revision)
    else console.log(event.number, event.after.service?.name ?? event.after.previous?.id)
  })
  await stop.ready
  stop()
  tv.on('*', all)
  tv.on('fault', all)
  tv.on('command', event => {
    if (event.state) return
    const reply: Reply | null = event.reply
    const command: number = event.command
    console.log(command, event.parameters.join(), reply?.value)
  })
  tv.on('engine', event => {
    if (event.state) return
    console.log(event.what === 'closed' ? event.why : event.appId)
  })
  tv.on('connection', ({connected, reason}) => console.log(connected, reason))
  const {passed, junit} = await runTranscript('> GetTVMode\nint 1\n', tv, {name: 'a.txt'})
  await runTranscript('> GetTVMode\nint 1\n', tvWindow).then(result => junitReport([result]))
  console.log(pid, code, id, snapshot, total, passed, junit)
  await tv.close()
}

function all(event: TvEvent): void {
  if (event.state) return
  const number: number = event.number
  if (event.topic === 'plane') console.log(number, event.before.app.active?.width, event.command)
  if (event.topic === 'source') console.log(event.window === 'isp' ? event.after.shown : event.after.number)
  if (event.topic === 'log') console.log(event.lines[0]?.text)
}

export async function errors(): Promise<string> {
  const tv = await connect('http://127.0.0.1:8090', {token: 't', patience: 100})
  try {
    await tv.call('tv.set', ['region', 3])
  } catch (error) {
    if (error instanceof EmpRpcError) return `${error.code} ${error.data?.reason} ${error.method}`
    if (error instanceof EmpConnectionError) return String(error.sent)
  }
  return tv.session
}

export async function inMemory(snapshot: Snapshot): Promise<void> {
  const tv: Tv = await createTv({snapshot, list: '', wait: false, appId: 'a'})
  const object: EmpWindow = installWindow(globalThis, {tv, name: 'tvWindow', appId: 'b'})
  await object.tv?.fault('IServiceNavigation::GetTvMode', {result: 0})
  const kept: KeptTv = await createTv({persist: 'living room', module: new URL('emp-window.wasm', 'https://tv.example')})
  await kept.saved()
  try {
    await forgetTv('living room')
  } catch (error) {
    if (error instanceof EmpTvError && error.what === 'in use') console.log(error.reason, error.snapshot)
  }
  const {port1, port2} = new MessageChannel()
  servePort(kept, port1)
  const far: Tv = await connect(() => new PortSocket(port2), {appId: 'c'})
  await connect(() => new WebSocket('ws://127.0.0.1:8090/rpc'))
  await far.close()
  empWindow.installWindow(globalThis, {tv: empWindow.createTv({list: ''}), name: 'other'})
}

export async function mistakes(): Promise<void> {
  const tv = await connect('http://127.0.0.1:8090')
  // @ts-expect-error: there is no such command
  await tv.window.SetChanel(3, 0)
  // @ts-expect-error: it takes two parameters
  await tv.window.SetChannel(3, 0, 1)
  // @ts-expect-error: a parameter can't be an object
  await tv.window.SetChannel({major: 3})
  // @ts-expect-error: a command of a connected client returns a promise
  const code: number = tv.window.SetChannel(3, 0)
  // @ts-expect-error: the state has no such member
  console.log((await tv.state()).windows.third)
  // @ts-expect-error: there is no such topic
  tv.on('mood', () => {})
  // @ts-expect-error: an event of that topic has no such member
  tv.on('knob', event => console.log(event.state ? '' : event.window))
  // @ts-expect-error: a TV without persistence has nothing to save
  await (await createTv()).saved()
  // @ts-expect-error: there is no such reason
  if (new EmpTvError().what === 'mood') return
  // @ts-expect-error: a TV is missing, or an address
  installWindow(globalThis, {name: 'tvWindow'})
  // @ts-expect-error: the name is missing
  installWindow(globalThis, {address: 'http://127.0.0.1:8090'})
  // @ts-expect-error: the functions of the app's object can't be replaced
  tvWindow.SetChannel = () => 1
  console.log(code)
}
