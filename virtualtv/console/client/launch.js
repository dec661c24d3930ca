// SPDX-License-Identifier: MIT
/*
 * A separate virtual TV for a test, in Node: starts emp-window on a free port and connects to it. The program ends with
 * `close()`, and also when this process ends in any way, since its standard input is a pipe from here.
 */
import {spawn} from 'node:child_process'
import {readFile} from 'node:fs/promises'
import {basename} from 'node:path'
import {fileURLToPath} from 'node:url'
import {connect} from './node.js'

const startPatience = 10_000  // ms until the program must print its address
const endPatience = 5000  // ms until the program is killed
const mostErrors = 64 * 1024  // characters of standard error that are kept

const pathOf = file => file instanceof URL ? fileURLToPath(file) : String(file)

/** The arguments of the program. */
function argumentsOf({state, snapshot, options = []}) {
  const words = state === undefined ? [] : ['--state', pathOf(state)]
  words.push('serve', '--listen', '127.0.0.1:0', '--until-eof')
  if (state === undefined) words.push('--fresh')
  if (isFile(snapshot)) words.push('--snapshot', pathOf(snapshot))
  return [...words, ...options]
}

/** True if a snapshot is the name of a file, rather than a result of `tv.snapshot()`. */
function isFile(snapshot) {
  return typeof snapshot === 'string' || snapshot instanceof URL
}

/**
 * Starts the program, and waits for its address.
 * @return {child, address, ended, said}; `said()` is its standard error so far
 * @throws Error with its standard error
 */
function start(program, words) {
  const child = spawn(program, words, {stdio: ['pipe', 'pipe', 'pipe'], windowsHide: true})
  const ended = new Promise(resolve => child.on('close', (code, signal) => resolve({code, signal})))
  let output = ''
  let errors = ''
  child.stdin.on('error', () => {})  // the program may have ended
  child.stderr.setEncoding('utf8').on('data', text => errors = (errors + text).slice(-mostErrors))
  return new Promise((resolve, reject) => {
    const fail = reason => {
      clearTimeout(patience)
      child.kill('SIGKILL')
      reject(new Error(`${program} ${words.join(' ')}: ${reason}${errors && `\n${errors.trimEnd()}`}`))
    }
    const patience = setTimeout(() => fail(`no address within ${startPatience} ms`), startPatience)
    child.on('error', error => fail(error.code === 'ENOENT'
      ? 'there is no such program; EMP_WINDOW or the option program names it' : error.message))
    ended.then(({code, signal}) => fail(`ended with ${signal ? `signal ${signal}` : `status ${code}`}`))
    child.stdout.setEncoding('utf8').on('data', text => {
      if (output.includes('\n')) return
      output += text
      if (!output.includes('\n')) return
      const address = /^emp-window: (https?:\/\/\S+)\r?\n/.exec(output)?.[1]
      if (!address) return fail(`an address is wanted in its first line, not '${output.split('\n')[0]}'`)
      clearTimeout(patience)
      resolve({child, address, ended, said: () => errors})
    })
  })
}

/** Reports on the console when the program ends by itself. */
function reportEnd(server) {
  server.ended.then(({code, signal}) => {
    if (!server.isEnding) console.error(`emp-window ended with ${signal ?? `status ${code}`}\n${server.said()}`.trimEnd())
  })
}

/** Ends the program by closing its input; kills it if it does not end. */
async function end(server) {
  const {child, ended} = server
  server.isEnding = true
  child.stdin.end()
  const patience = setTimeout(() => child.kill('SIGKILL'), endPatience)
  await ended
  clearTimeout(patience)
}

async function readList(file) {
  const bytes = await readFile(file)
  try {
    return new TextDecoder('utf-8', {fatal: true}).decode(bytes)
  } catch {
    throw new Error(`${pathOf(file)}: not UTF-8; import it with 'emp-window import --encoding', or write it as UTF-8`)
  }
}

async function prepare(tv, {list, snapshot}) {
  if (snapshot !== undefined && !isFile(snapshot)) await tv.restore(snapshot)
  if (list !== undefined) await tv.import(await readList(list), {name: basename(pathOf(list))})
}

/**
 * Starts a separate virtual TV, fresh unless a state is given, and connects to it.
 * @param list  file of a channel list to import
 * @param state  directory of the set's state
 * @param snapshot  file, or a result of `tv.snapshot()`
 * @param program  path of emp-window
 * @param options  further arguments for `emp-window serve`
 * @param connection  options of `connect`: appId, widgetId and so on
 * @return the connected client, with `pid`; its `close()` also ends the program
 */
export async function launch({program = process.env.EMP_WINDOW || 'emp-window', list, snapshot, state, options,
  ...connection} = {}) {
  const starting = start(pathOf(program), argumentsOf({state, snapshot, options}))
  if (!globalThis.WebSocket) import('./node-websocket.js').catch(() => {})  // loads while the program starts
  const server = await starting
  reportEnd(server)
  let tv
  try {
    tv = await connect(server.address, connection)
    await prepare(tv, {list, snapshot})
  } catch (error) {
    await Promise.all([tv?.close(), end(server)])
    throw error
  }
  const disconnect = tv.close.bind(tv)
  tv.pid = server.child.pid
  tv.close = async () => {
    await disconnect()
    await end(server)
  }
  return tv
}
