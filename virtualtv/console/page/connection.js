// SPDX-License-Identifier: MIT
/*
 * Connects this page to its set, through the server that served it. A site without a server replaces this module.
 */
import {connect} from '../client.js'
import {rememberedToken, rememberToken} from './memory.js'

/** @typedef {import('./store.js').Known['connection']} Connection */

const firstPause = 200  // ms before the first attempt to reconnect; doubles with each failure
const longestPause = 2000
const patience = 0  // without a connection, actions fail at once instead of running seconds later

/** The token after `#token=` in the address. It is stored for this tab, and removed from the address. */
function token() {
  const given = /^#token=(.+)$/.exec(location.hash)?.[1]
  if (given) {
    rememberToken(decoded(given))
    history.replaceState(null, '', location.pathname + location.search)
  }
  return rememberedToken()
}

/** Decodes a part of an address; returns it unchanged if it has an invalid escape. @param {string} text */
function decoded(text) {
  try {
    return decodeURIComponent(text)
  } catch {
    return text
  }
}

/** Advice when the server refuses the connection; a browser does not report why a WebSocket fails. @param {string} address */
async function adviceFor(address) {
  try {
    const {status} = await fetch(`${address}openrpc.json`, {headers: {Authorization: `Bearer ${token() ?? ''}`}})
    return status === 401 ? 'This server requires a token: add #token=TOKEN to the address of this page' : undefined
  } catch {
    return undefined
  }
}

/**
 * Connects, and tries again until that succeeds.
 * @param {(connection: Connection) => void} tell  receives the reason after each failed attempt
 * @return {Promise<import('../client.js').Tv>}
 */
export async function open(tell) {
  const address = new URL('.', location.href).href
  for (let pause = firstPause; ; pause = Math.min(2 * pause, longestPause)) {
    try {
      return await connect(address, {token: token(), patience, firstPause, longestPause, appId: 'page'})
    } catch (error) {
      const {message} = /** @type {Error} */ (error)
      tell({connected: false, reason: message, advice: await adviceFor(address), since: Date.now()})
      await new Promise(resolve => setTimeout(resolve, pause))
    }
  }
}

/**
 * Scans a recording on the server, sending it while it is read. The result is kept for this page's session.
 * @param {import('../client.js').Tv} tv @param {File} file
 * @param {{signal: AbortSignal, progress: (bytes: number) => void}} how @return {Promise<import('../client.js').Scan>}
 */
export function scan({session}, file, {signal, progress}) {
  return new Promise((resolve, reject) => {
    const request = new XMLHttpRequest()  // fetch does not report upload progress
    request.open('POST', new URL('scan', location.href))
    request.setRequestHeader('Content-Type', 'application/octet-stream')
    request.setRequestHeader('Emp-Session', session)
    if (token()) request.setRequestHeader('Authorization', `Bearer ${token()}`)
    request.upload.onprogress = ({loaded}) => progress(loaded)
    request.onload = () => request.status === 200 ? resolve(JSON.parse(request.responseText)) : reject(new Error(request.responseText.trim()))
    request.onerror = () => reject(new Error('The connection broke, or the file was changed or removed meanwhile.'))
    request.onabort = () => reject(signal.reason)
    signal.addEventListener('abort', () => request.abort())
    request.send(file)
  })
}

/**
 * Requests the stream of a window's recording. @type {((window: 'main' | 'pip', signal: AbortSignal) =>
 * Promise<Response>) | undefined}
 */
export const live = (window, signal) => fetch(new URL(`live/${window}`, location.href), {
  signal, cache: 'no-store', headers: token() ? {Authorization: `Bearer ${token()}`} : {}})

/** What the page says while it is not connected. @type {string} */
export const disconnected = 'Disconnected, reconnecting'

/**
 * Describes where the set's state is. @param {string | null} directory  the server's directory, null for none
 * @return {{where: string, isPath: boolean, title: string, isTrouble?: boolean}}
 */
export function keeping(directory) {
  return directory === null ? {where: 'in memory', isPath: false, title: 'The server was started with --fresh: nothing is stored when it ends.'}
    : {where: directory, isPath: true, title: directory}
}

/**
 * The data of the set for exported code: its name, and its address for programs. @param {import('../client.js').Tv} tv
 * @return {{name: string, address: string, remarks: string[]}} remarks are for programs
 */
export const given = ({address}) => ({name: address, address, remarks: []})

/** What the pane Set shows about the stored state: nothing here. @return {import('./dom.js').Child} */
export const besides = () => null

/** The sessions to show: all of them. @param {any[]} sessions  as the set lists them */
export const people = sessions => sessions

/**
 * Creates a link that contains a set. Not needed for a server, whose address can be shared.
 * @type {((snapshot: any) => Promise<string>) | undefined}
 */
export const linkTo = undefined
