// SPDX-License-Identifier: MIT
/*
 * Recognises files and passes them to the TV: channel lists are imported, recordings scanned, transcripts checked,
 * snapshots restored. Returns the outcome; this module draws nothing.
 */
import {act} from './act.js'
import {isRecording, scanned} from './recording.js'
import {onFrame, store} from './store.js'

export const mostBytes = 32 * 1024 * 1024

/**
 * The outcome for a file.
 * @typedef {object} Outcome
 * @property {string} name
 * @property {'list' | 'recording' | 'transcript' | 'snapshot' | 'none'} kind
 * @property {string} [problem]  why it failed
 * @property {string} [way]  advice on the problem
 * @property {any} [result]  result of the call; for a list without services, the data of its error
 * @property {any} [found]  content of a recording; `result` follows once it is imported
 * @property {string} [note]
 */

/**
 * Receives the current step, and the share that is done, 0 to 1.
 * @typedef {(what: string, share?: number) => void} Tell
 */

/**
 * Recognises a file and uses it.
 * @param {File} file @param {Tell} tell @param {AbortSignal} signal  aborts the scan of a recording
 * @return {Promise<Outcome | undefined>} undefined if it was aborted
 */
export async function take(file, tell, signal) {
  try {
    if (!await isRecording(file)) return await takeText(file, tell)
  } catch (error) {
    if (!(error instanceof DOMException)) throw error
    return none(file.name, 'It cannot be read. Is it a folder, or was it changed or removed?')
  }
  return useRecording(file, tell, signal)
}

/** @param {File} file @param {Tell} tell @param {AbortSignal} signal @return {Promise<Outcome | undefined>} */
async function useRecording(file, tell, signal) {
  const {name, size} = file
  const progress = (/** @type {number} */ bytes) => tell(bytes < size ? `is scanned: ${megabytes(bytes)} of ${megabytes(size)}` : 'is scanned', bytes / size)
  progress(0)
  try {
    return {name, kind: 'recording', found: await scanned(file, {signal, progress})}
  } catch (error) {
    return signal.aborted ? undefined : {name, kind: 'recording', problem: /** @type {Error} */ (error).message}
  }
}

/**
 * Imports the services of the last scanned recording.
 * @param {Outcome} outcome
 * @param {boolean} add  add to the services of the set
 * @return {Promise<Outcome>}
 */
export const importFound = ({name, found, note}, add) => called({name, kind: 'recording', found, note}, 'tv.importScan', {add})

/** @param {File} file @param {Tell} tell @return {Promise<Outcome>} */
async function takeText(file, tell) {
  const name = file.name
  if (file.size > mostBytes) return none(name, `It has ${megabytes(file.size)}; the server takes at most 32 MiB.`, 'For a channel list, use: emp-window import FILE')
  if (file.size === 0) return none(name, 'It is empty.')
  const bytes = new Uint8Array(await file.arrayBuffer())
  if (bytes.includes(0)) return none(name, 'It is neither a text nor a recording (MPEG transport stream).', wanted)
  const {text, isUnicode} = textOf(bytes)
  const outcome = await use({name, text, isUnicode, tell})
  return isUnicode || outcome.problem !== undefined ? outcome : {...outcome,
    note: 'It is not UTF-8. Names were read as ISO 8859-15. "emp-window import FILE" detects the encoding.'}
}

const wanted = 'Drop a channel list (VDR, libdvbv5, zap, lamedb, M3U, JSON), a recording, a transcript (lines that start with >) or a snapshot.'

/** @param {string} name @param {string} problem @param {string} [way] @return {Outcome} */
const none = (name, problem, way) => ({name, kind: 'none', problem, way})

/** @param {number} bytes */
const megabytes = bytes => `${(bytes / 1024 / 1024).toFixed(1)} MiB`

/** @param {Uint8Array} bytes */
function textOf(bytes) {
  try {
    return {text: new TextDecoder('utf-8', {fatal: true}).decode(bytes), isUnicode: true}
  } catch {
    return {text: new TextDecoder('iso-8859-15').decode(bytes), isUnicode: false}
  }
}

/** @typedef {{name: string, text: string, isUnicode: boolean, tell: Tell}} Content  of a file */

/** @param {Content} content @return {Promise<Outcome>} */
async function use(content) {
  const {text} = content
  if (/^\s*[{[]/.test(text) && !/^\s*\[[^\]\n]*\]\s*(\n|$)/.test(text)) return useDocument(content)
  if (/^[^\S\n]*(?!#)\S.*/m.exec(text)?.[0].startsWith('>')) return useTranscript(content)
  const outcome = await useList(content)
  if (!/not a channel list of a known format/.test(outcome.problem ?? '')) return outcome
  // A transcript may have other text at its start: the check then reports the error.
  return /^>/m.test(text) ? useTranscript(content) : {...outcome, kind: 'none', way: wanted}
}

/** @param {string} name @param {'snapshot' | 'transcript'} kind @return {Outcome} */
const noUnicode = (name, kind) => ({name, kind, problem: `A ${kind} must be UTF-8; this file is not.`})

/** @param {Content} content @return {Promise<Outcome>} */
async function useTranscript({name, text, isUnicode, tell}) {
  if (!isUnicode) return noUnicode(name, 'transcript')
  await shownFirst(tell, `is checked: ${linesOf(text)}`)
  return called({name, kind: 'transcript'}, 'tv.check', {transcript: text})
}

/** @param {Content} content @return {Promise<Outcome>} */
async function useList({name, text, tell}) {
  await shownFirst(tell, `is imported: ${linesOf(text)}`)
  return called({name, kind: 'list'}, 'tv.import', {content: text, name})
}

/** @param {Content} content  JSON @return {Promise<Outcome>} */
async function useDocument(content) {
  const {name, text, isUnicode, tell} = content
  if (!isUnicode) return noUnicode(name, 'snapshot')
  let snapshot
  try {
    snapshot = JSON.parse(text)
  } catch (error) {
    return none(name, `It looks like JSON but is invalid: ${/** @type {Error} */ (error).message}`, wanted)
  }
  const missing = ['version', 'state', 'settings', 'services'].filter(member => !(member in Object(snapshot)))
  if (missing.join() === 'version,state,settings') return useList(content)  // as exported in the format json
  if (Array.isArray(snapshot) || missing.length > 0) {
    return none(name, `It is JSON, but no snapshot: ${Array.isArray(snapshot) ? 'it is an array' : `it lacks ${missing.join(', ')}`}.`, wanted)
  }
  await shownFirst(tell, `is restored: ${snapshot.services?.length ?? 0} services`)
  return called({name, kind: 'snapshot'}, 'tv.restore', {snapshot})
}

/** The number of lines of a text, in words. @param {string} text */
function linesOf(text) {
  let count = text.endsWith('\n') ? 0 : 1
  for (let at = text.indexOf('\n'); at >= 0; at = text.indexOf('\n', at + 1)) ++count
  return `${count.toLocaleString('en')} lines`
}

/** Shows the progress, and waits until it is visible, since the next step may take long. @param {Tell} tell @param {string} what */
async function shownFirst(tell, what) {
  tell(what)
  await new Promise(resolve => onFrame(() => setTimeout(resolve)))
}

/** @param {Outcome} outcome @param {string} method @param {any} params @return {Promise<Outcome>} */
async function called(outcome, method, params) {
  const size = new Blob([JSON.stringify(params)]).size + 200
  if (size > mostBytes) return {...outcome, problem: `The message would have ${megabytes(size)}; the server accepts at most 32 MiB.`}
  const result = await act(method, params)
  if (result !== undefined) return {...outcome, result}
  const {error, data} = store.get('deed')
  return {...outcome, problem: error, result: data?.problems && data}
}
