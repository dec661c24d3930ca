/*
 * Commands that have run, written down: as a transcript that `emp-window check` passes, as a test, as client code. What is
 * written starts from the set as it was before them, which lies in a file beside it.
 */
import {replyLines} from '../transcript.js'
import {commandLine, word} from './deed.js'
import {inputOf} from './export-outside.js'
import {engineOf, timeline} from './timeline-log.js'

/** @typedef {import('./timeline-log.js').Entry} Entry */
/** @typedef {{client: string, entry?: Entry, reply?: any, line?: string, remark?: string}} Step  a command, or a line that speaks to the set */
/** @typedef {{steps: Step[], first: number, clients: Map<string, {name: string, appId: string}>, remarks: string[]}} Story */

/** What an engine keeps for later commands: the window, the channels that it found. @param {Entry} entry */
function kept({event, changes}) {
  if (event.name === 'SetWindow') return `window ${engineOf(event)}`
  if (/^Find/.test(event.name)) return `channels ${engineOf(event)}`
  const changed = changes.find(({topic}) => topic === 'plane' || topic === 'source')
  return changed && `${changed.topic} ${changed.window}`
}

/**
 * Where to start, so that what is exported finds all that it stands on and that no snapshot holds: windows, found channels,
 * planes. @param {Entry[]} entries  all @param {number} from  the position of the first that is wanted @return {number}
 */
function startOf(entries, from) {
  const needed = new Set()
  let start = from
  for (let at = from - 1; at >= 0; --at) {
    const {topic, event} = entries[at]
    if (topic === 'resync' || event.started) break
    const what = topic === 'command' ? kept(entries[at]) : undefined
    if (what && (!needed.has(what) || /^plane|^source/.test(what))) {
      needed.add(what)
      start = at
    }
  }
  return start
}

/**
 * Collects what is to be written. Commands that the filter leaves out and that changed nothing are left out, but for those
 * whose calls a fault may count.
 * @param {Entry[]} entries  all @param {Entry} from @param {Entry} to @param {Set<Entry>} wanted
 * @param {(entry: Entry) => Promise<any>} replyOf  the whole reply @return {Promise<Story>}
 */
export async function collect(entries, from, to, wanted, replyOf) {
  const begin = startOf(entries, entries.indexOf(from))
  const part = entries.slice(begin, entries.indexOf(to) + 1)
  const start = part.findIndex(({topic}) => topic === 'command')
  if (start < 0) throw new Error('There is no command in it.')
  const clients = new Map()
  const faults = new Map()
  const steps = faultsBefore(entries.slice(0, begin + start), faults)
  for (const entry of part.slice(start)) {
    if (entry.topic === 'resync') throw new Error('Some events were missed in between. Choose a shorter range.')
    if (entry === from && entry !== part[start]) steps.push({client: '', remark: 'What was chosen starts here; what it stands on is above.'})
    if (entry.topic !== 'command') {
      steps.push(...inputOf(entry.event, faults))
    } else if (entry.event.reply && (wanted.has(entry) || faults.size > 0 || entry.changes.length > 0 || kept(entry))) {
      const client = engineOf(entry.event)
      if (!clients.has(client)) clients.set(client, {name: `${clients.size + 1}:${entry.event.engine}`, appId: timeline.applications.get(client) ?? ''})
      steps.push({client, entry, reply: await replyOf(entry)})
    }
  }
  const remarks = begin < entries.indexOf(from) ? ['It starts earlier than what was chosen, with what that stands on: windows, found channels, planes.'] : []
  return {steps, first: /** @type {number} */ (part[start].command), clients, remarks}
}

/** Faults that stand when it starts. @param {Entry[]} entries @param {Map<number, number>} faults @return {Step[]} */
function faultsBefore(entries, faults) {
  const standing = new Map()
  for (const {event, changes} of entries) {
    if (event.started) standing.clear()
    for (const change of [event, ...changes]) {
      if (change.topic !== 'fault') continue
      if (change.what === 'set') standing.set(change.id, change)
      const isSpent = change.what === 'hit' && !/always/.test(standing.get(change.id)?.fault ?? '')
      if (change.what === 'gone' || isSpent) standing.delete(change.id)
    }
  }
  return [...standing.values()].flatMap(event => inputOf(event, faults))
}

/** @param {Story} story @param {string} snapshot  name of the file @param {string} what  in a line */
export function transcript({steps, clients, remarks}, snapshot, what) {
  const lines = ['> .recorded', `> .restore ${word(snapshot)}`, `# ${what}`, ...remarks.map(remark => `# ${remark}`)]
  let inUse = ''
  for (const {client, entry, reply, line, remark} of steps) {
    if (remark) lines.push(`# ${remark}`)
    if (line) lines.push(`> ${line}`)
    if (line === '.reset') inUse = ''
    if (!entry) continue
    if (client !== inUse) {
      const isNew = !lines.includes(`> .engine ${word(clients.get(client)?.name)}`)
      lines.push(`> .engine ${word(clients.get(client)?.name)}`)
      const appId = clients.get(client)?.appId
      if (isNew && appId) lines.push(`> .app ${word(appId)} ''`)
      inUse = client
    }
    lines.push(commandLine(entry.event.name, entry.event.parameters, entry.event.list), ...replyLines(reply))
  }
  return `${lines.join('\n')}\n`
}

/** @param {unknown} value  as JavaScript @return {string} */
const literal = value => JSON.stringify(value)?.replace(/[\u2028\u2029]/g, unit => `\\u${unit.charCodeAt(0).toString(16)}`) ?? 'undefined'

/** What `Execute` answers for a reply. @param {any} reply */
function answered({accepted, kind, value, units}) {
  if (kind === 'empty') return accepted ? '' : undefined
  return units ? String.fromCharCode(...units) : value
}

/** @param {Story} story @return {Map<string, {name: string, appId: string}>} */
function variables({clients}) {
  return new Map([...clients].map(([key, {appId}], at) => [key, {name: `client${at + 1}`, appId}]))
}

/** @param {Entry} entry @param {string} client */
function callOf({event}, client) {
  const {name, parameters, list} = event
  return list ? `${client}.executeWithParamList(${literal(name)}, ${literal(parameters)})` : `${client}.Execute(${[name, ...parameters].map(literal).join(', ')})`
}

/** A test for Playwright, with a TV of its own. @param {Story} story @param {string} snapshot @param {string} what */
export function playwrightTest(story, snapshot, what) {
  const names = variables(story)
  const lines = story.steps.flatMap(({client, entry, reply, line, remark}) => [
    ...remark ? [`  // ${remark}`] : [], ...line ? [`  await tv.run(${literal(line)})`] : [],
    ...entry ? [`  expect(await ${callOf(entry, names.get(client)?.name ?? 'tv')}).toBe(${literal(answered(reply))})`] : []])
  return `import {expect, test} from '@playwright/test'
import {connect} from 'emp-window'
import {launch} from 'emp-window/launch'

// ${[what, ...story.remarks].join('\n// ')}
test(${literal(what)}, async () => {
  const tv = await launch({snapshot: new URL(${literal(`./${encodeURIComponent(snapshot)}`)}, import.meta.url)})
${[...names.values()].map(({name, appId}) => `  const ${name} = await connect(tv.address, ${literal({appId})})`).join('\n')}
${lines.join('\n')}
${[...names.values()].map(({name}) => `  await ${name}.close()`).join('\n')}
  await tv.close()
})
`
}

/** The same calls on a TV that there is. @param {Story} story @param {string} address @param {string} what */
export function clientModule(story, address, what) {
  const names = variables(story)
  const first = [...names.values()][0]?.name
  const lines = story.steps.flatMap(({client, entry, reply, line, remark}) => [
    ...remark ? [`// ${remark}`] : [], ...line ? [`await ${first}.run(${literal(line)})`] : [],
    ...entry ? [`console.log(await ${callOf(entry, names.get(client)?.name ?? 'tv')})  // was ${literal(answered(reply))?.slice(0, 200)}`] : []])
  return `import {connect} from 'emp-window'

// ${[what, ...story.remarks].join('\n// ')}
const address = process.argv[2] ?? ${literal(address)}
${[...names.values()].map(({name, appId}) => `const ${name} = await connect(address, ${literal({appId})})`).join('\n')}
${lines.join('\n')}
${[...names.values()].map(({name}) => `await ${name}.close()`).join('\n')}
`
}
