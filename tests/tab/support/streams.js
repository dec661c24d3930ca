// SPDX-License-Identifier: MIT
// Lists of calls that reveal whether a set does what another one does.
import {readFileSync, readdirSync} from 'node:fs'
import {join} from 'node:path'
import {fileURLToPath} from 'node:url'

const tests = fileURLToPath(new URL('../..', import.meta.url))
const linesBetweenStates = 50
const encodings = ['', 'ISO-8859-2', 'ISO_6937', 'GB2312', 'none of these']

const filesIn = (folder, end) => readdirSync(folder).filter(name => name.endsWith(end)).map(name => join(folder, name))

const run = line => ['tv.run', {line}]
const kept = [['tv.snapshot', {}]]

/** The lines of a transcript, without their expected output, and queries for everything that can be printed. */
function callsOf(transcript) {
  const lines = transcript.split('\n').filter(line => line.startsWith('>')).map(line => line.replace(/^> ?/, ''))
  const calls = lines.flatMap((line, at) => [run(line), ...at % linesBetweenStates ? [] : [['tv.state', {}], ['tv.settings', {}]]])
  return [run('.trace on'), run('.log on 3'), ...calls, ...kept]
}

const streamOf = file => ({name: file.split('/').slice(-2).join('/'), calls: callsOf(readFileSync(file, 'utf8'))})

/** The content of a file as a text: decoded as UTF-8 if it is valid, otherwise one character for each byte. */
function textIn(file) {
  const bytes = readFileSync(file)
  const text = bytes.toString()
  return Buffer.from(text).equals(bytes) ? text : bytes.toString('latin1')
}

/** Imports a list in several ways, and queries the result each time. */
function importsOf(file, ways) {
  const content = textIn(file)
  return {
    name: file.split('/').slice(-2).join('/'),
    calls: ways.flatMap(way => [['tv.import', {content, name: 'list', ...way}], run('FindChannel 0 1'), run('GetFullChannelList'), ...kept]),
  }
}

/** Scans a recording, whole and in parts, imports the services found, and exports them in each format. */
function scansOf(file) {
  const bytes = readFileSync(file)
  const scan = (part, from, to) => ['tv.scan', {content: bytes.subarray(from, to).toString('base64'), part}]
  const half = bytes.length >> 1
  const exports = ['vdr', 'dvbv5', 'm3u', 'json'].map(format => ['tv.export', {format}])
  return {
    name: `broadcasts/${file.split('/').at(-1)}`,
    calls: [scan(), scan('first', 0, half), scan('last', half), ['tv.importScan', {}], ...exports, run('GetFullChannelList'), ...kept],
  }
}

/** Restores a document, and queries the result. */
function restoresOf(file) {
  let snapshot = readFileSync(file, 'utf8')
  try {
    snapshot = JSON.parse(snapshot)
  } catch {
    // passes the text unparsed
  }
  return {name: `snapshots/${file.split('/').at(-1)}`, calls: [['tv.restore', {snapshot}], ['tv.state', {}], ...kept]}
}

/** Checks a transcript, valid or not. */
const checkOf = file => ({name: `transcripts/${file.split('/').at(-1)}`, calls: [['tv.check', {transcript: textIn(file)}], ...kept]})

export const transcripts = () => filesIn(join(tests, 'transcripts'), '.txt').map(streamOf)
export const cases = () => filesIn(join(tests, 'window/cases'), '.txt').map(streamOf)
export const simulation = folder => filesIn(folder, '.txt').map(streamOf)
export const checks = () => filesIn(join(tests, 'fuzz/corpus/transcripts'), '').map(checkOf)
export const recordings = () => filesIn(join(tests, 'fuzz/corpus/broadcasts'), '-packets.input').map(scansOf)
export const snapshots = () => filesIn(join(tests, 'fuzz/corpus/snapshots'), '').map(restoresOf)

/**
 * Short lists in each format and in several encodings; long lists only in their own format.
 * @param formats  names of the formats  @param folder  folder of long lists, if any
 */
export function lists(formats, folder) {
  const ways = [undefined, ...formats].flatMap(format => encodings.map(encoding => ({format, encoding})))
  return [...filesIn(join(tests, 'fuzz/corpus/lists'), '').map(file => importsOf(file, ways)),
    ...(folder ? filesIn(folder, '') : []).map(file => importsOf(file, [{}]))]
}
