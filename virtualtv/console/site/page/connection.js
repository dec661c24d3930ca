// SPDX-License-Identifier: MIT
/*
 * Connects the page of a site to its set, which runs in this tab. Replaces the module that connects to a server.
 */
import {connect} from '../client.js'
import {forget} from '../kept.js'
import {PortSocket} from '../port.js'
import {isolate} from '../set/isolation.js'
import {linkTo as linkOf, stateIn} from '../set/link.js'
import {isNoted, note} from '../set/notes.js'
import {Tab} from '../set/tab.js'
import {h} from './dom.js'
import './leftover.js'

/** @typedef {import('./store.js').Known['connection']} Connection */

/**
 * ms to wait for the stored set: `last` after this tab used it, `stranger` otherwise. Even on an idle machine a browser
 * takes up to two seconds to end a busy worker.
 */
const waits = {stranger: 1000, last: 10_000}

const pauses = {patience: 0, firstPause: 50, longestPause: 1000}
/** On the page's own window; apps in its frames find it there. */
const symbol = Symbol.for('emp-window/site')
const page = new URL('..', import.meta.url)
const had = `emp-window.kept ${page.pathname}`  // this tab used the stored set when its page was left

/** With `?thread=page` the set runs on the page's thread, and apps from any folder of this origin can run. */
const wantsOwnThread = new URLSearchParams(location.search).get('thread') === 'page'

/** @type {(why: string | undefined) => void} */
let tellWhy
/** Why the set is on the page's own thread; undefined if it is in a worker. @type {Promise<string | undefined>} */
export const whyHere = new Promise(resolve => { tellWhy = resolve })

/** Where the set came from; undefined until it exists. @type {import('../set/tab-set.js').Keeping | undefined} */
let kept

/** @return {Promise<Tab>} */
async function startTab() {
  const why = wantsOwnThread ? 'its address says so (?thread=page)' : await isolate()
  tellWhy(why)
  const from = {key: page.pathname, patience: isNoted(had) ? waits.last : waits.stranger, ...await stateIn(location.hash)}
  const tab = await Tab.start(from, {here: why !== undefined})
  note(had, false)
  return tab
}

/** Releases the stored set for the next page. @param {Tab} tab */
function leave(tab) {
  if (kept?.as === 'kept') note(had, true)
  tab.leave()
  addEventListener('pageshow', () => location.reload(), {once: true})  // When the user returns to this page, another page may have the set.
}

/**
 * Creates the set of this tab and connects to it.
 * @param {(connection: Connection) => void} tell  receives the reason if that fails
 * @return {Promise<import('../client.js').Tv>}
 */
export async function open(tell) {
  try {
    const tab = await startTab()
    kept = tab.keeping
    addEventListener('pagehide', () => leave(tab))
    Object.defineProperty(globalThis, symbol, {value: tab})
    return await connect(() => new PortSocket(tab.port()), {...pauses, appId: 'page'})
  } catch (error) {
    const {message} = /** @type {Error} */ (error)
    tell({connected: false, reason: message, advice: message, since: Date.now()})
    return new Promise(() => {})  // Only a reload helps.
  }
}

const pieceSize = 2 ** 20  // bytes of a recording per call

/** @param {Blob} blob @return {Promise<string>} in base64 */
function base64Of(blob) {
  return new Promise((resolve, reject) => {
    const reader = new FileReader()
    reader.onload = () => resolve(/** @type {string} */ (reader.result).replace(/^[^,]*,?/, ''))
    reader.onerror = () => reject(new Error('The file was changed or removed meanwhile.'))
    reader.readAsDataURL(blob)
  })
}

/**
 * Scans a recording on the set, piece by piece. The result is kept for this page's session.
 * @param {import('../client.js').Tv} tv @param {File} file
 * @param {{signal: AbortSignal, progress: (bytes: number) => void}} how @return {Promise<import('../client.js').Scan>}
 */
export async function scan(tv, file, {signal, progress}) {
  await tv.scan({content: '', part: 'first'})
  for (let at = 0; at < file.size; at += pieceSize) {
    signal.throwIfAborted()
    await tv.scan({content: await base64Of(file.slice(at, at + pieceSize)), part: 'next'})
    progress(Math.min(at + pieceSize, file.size))
  }
  return tv.scan({content: '', part: 'last'})
}

/** A tab does not play recordings. @type {((window: 'main' | 'pip', signal: AbortSignal) => Promise<Response>) | undefined} */
export const live = undefined

/** What the page says while it is not connected. @type {string} */
export const disconnected = 'The TV of this tab is not running. Reload the page'

/**
 * By the origin of the set: a short text for the head, and a full one.
 * @type {{[as: string]: [string, (reason: string) => string]}}
 */
const words = {
  kept: ['stored in this browser', () => 'This set is stored in this browser: a reload, or another visit, continues with it. Programs outside of the tab can\'t connect to it; emp-window serve is for them.'],
  link: ['from a link, not stored', () => 'This set came with a link and is not stored. A reload restores what the link contains. To store it: Snapshot, open the page without the link, Restore.'],
  'broken link': ['link unusable, not stored', reason => `The link can't be used: ${reason}. This is the built-in set, not stored. What this browser stores is as it was: open the page without the link.`],
  'in use': ['not stored, another tab\'s is', () => 'This set is not stored, since another tab has the one that is. Close that tab and reload this one to continue with it.'],
  storage: ['not stored', reason => `This set is not stored, since this browser stores nothing for this page: ${reason}. A snapshot or a link brings it back.`],
  unusable: ['not stored, see Set', reason => `What this browser stores can't be used: ${reason}. This is the built-in set, not stored.`],
}

/** The short and the full text on the origin of this set. */
function said() {
  const {as, reason = ''} = kept ?? {as: 'storage'}
  const [few, all] = words[as]
  return {few, all: all(reason), isTrouble: as === 'broken link' || as === 'unusable'}
}

/** Where the set is kept, in words. @return {{where: string, isPath: boolean, title: string, isTrouble: boolean}} */
export function keeping() {
  const {few, all, isTrouble} = said()
  return {where: `in this tab, ${few}`, isPath: false, title: all, isTrouble}
}

/**
 * The data of the set for exported code: its name, and an address for programs.
 * @return {{name: string, address: string, remarks: string[]}}
 */
export const given = () => ({
  name: `the TV in a tab of ${page.href}`,
  address: 'http://127.0.0.1:8090',
  remarks: ['Programs can\'t reach into a tab. Start emp-window serve, and restore a snapshot of the tab\'s TV there.'],
})

/** What the pane Set shows about the stored state. @return {import('./dom.js').Child} */
export const besides = () => [
  h('p', {key: 'kept', class: ['set-said kept-how', said().isTrouble ? 'fail' : 'dim']}, said().all),
  kept?.as === 'unusable' && h('emp-leftover', {key: 'leftover', class: 'stack', what: leftoverOf(kept)}),
]

/** @param {import('../set/tab-set.js').Keeping} keeping */
const leftoverOf = ({unusable}) => ({content: unusable, remove: () => forget(page.pathname)})

/** The sessions to show: all except the one that persists the set. @param {any[]} sessions  as the set lists them */
export const people = sessions => sessions.filter(({session}) => session !== kept?.session)

/** Creates a link that contains a set. @type {((snapshot: any) => Promise<string>) | undefined} */
export const linkTo = snapshot => linkOf(snapshot, page.href)
