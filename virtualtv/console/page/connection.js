// SPDX-License-Identifier: MIT
/*
 * How this page reaches its set: by the server that it came from. A site without a server has another module in place of this one.
 */
import {connect} from '../client.js'
import {rememberedToken, rememberToken} from './memory.js'

/** @typedef {import('./store.js').Known['connection']} Connection */

const firstPause = 200  // ms before the first try to connect again; doubles with each that fails
const longestPause = 2000
const patience = 0  // what is done without a connection fails at once: nobody wants it to happen seconds later

/** The token that the address brings behind `#token=`. It is kept for this tab, and taken out of the address. */
function token() {
  const given = /^#token=(.+)$/.exec(location.hash)?.[1]
  if (given) {
    rememberToken(decoded(given))
    history.replaceState(null, '', location.pathname + location.search)
  }
  return rememberedToken()
}

/** A part of an address without its escapes; as it stands where a per cent sign starts none. @param {string} text */
function decoded(text) {
  try {
    return decodeURIComponent(text)
  } catch {
    return text
  }
}

/** What a person can do where the server lets nobody in; a browser does not tell why a WebSocket fails. @param {string} address */
async function adviceFor(address) {
  try {
    const {status} = await fetch(`${address}openrpc.json`, {headers: {Authorization: `Bearer ${token() ?? ''}`}})
    return status === 401 ? 'This server wants a token: add #token=TOKEN to the address of this page' : undefined
  } catch {
    return undefined
  }
}

/**
 * Connects, as soon as that can be done. @param {(connection: Connection) => void} tell  is told why it can't yet
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
 * Has a recording scanned: it is sent as it is read. What is found is kept for this page's session.
 * @param {import('../client.js').Tv} tv @param {File} file
 * @param {{signal: AbortSignal, progress: (bytes: number) => void}} how @return {Promise<import('../client.js').Scan>}
 */
export function scan({session}, file, {signal, progress}) {
  return new Promise((resolve, reject) => {
    const request = new XMLHttpRequest()  // fetch does not tell how much is sent
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
 * Asks for what a window's recording shows and sounds like. @type {((window: 'main' | 'pip', signal: AbortSignal) => Promise<Response>) | undefined}
 */
export const live = (window, signal) => fetch(new URL(`live/${window}`, location.href), {
  signal, cache: 'no-store', headers: token() ? {Authorization: `Bearer ${token()}`} : {}})

/** What the page says while it is not connected. @type {string} */
export const disconnected = 'Disconnected, reconnecting'

/**
 * Where the set is kept, in words. @param {string | null} directory  the server's, null for none
 * @return {{where: string, isPath: boolean, title: string, isTrouble?: boolean}}
 */
export function keeping(directory) {
  return directory === null ? {where: 'in memory', isPath: false, title: 'The server was started with --fresh: nothing is kept when it ends.'}
    : {where: directory, isPath: true, title: directory}
}

/**
 * What is written of the set for others: its name, and the address at which programs reach one. @param {import('../client.js').Tv} tv
 * @return {{name: string, address: string, remarks: string[]}} remarks are for programs
 */
export const given = ({address}) => ({name: address, address, remarks: []})

/** What the pane Set says of keeping besides: nothing. @return {import('./dom.js').Child} */
export const besides = () => null

/** The sessions of others, and this page's own. @param {any[]} sessions  as the set lists them */
export const people = sessions => sessions

/** Makes a link that brings a set to others. A set on a server is reached by its address. @type {((snapshot: any) => Promise<string>) | undefined} */
export const linkTo = undefined
