// SPDX-License-Identifier: MIT
/*
 * Exports commands that have run: as a transcript that passes `emp-window check`, as a test, or as client code. The
 * export starts from the state before the commands, which is in a file beside it.
 */
import {replyLines} from '../transcript.js'
import {commandLine, word} from './deed.js'
import {inputOf} from './export-outside.js'
import {leftBy, standingSteps, startOf} from './export-standing.js'
import {engineOf, timeline} from './timeline-log.js'

/** @typedef {import('./timeline-log.js').Entry} Entry */
/**
 * A command, a line for the set, or a remark.
 * @typedef {{client: string, entry?: Entry, reply?: any, line?: string, remark?: string}} Step
 */
/** @typedef {{steps: Step[], first: number, clients: Map<string, {name: string, appId: string}>, remarks: string[]}} Story */

/**
 * Collects the steps to export. Commands that the filter hides and that changed nothing are left out, unless a fault
 * may count their calls.
 * @param {Entry[]} entries  all entries @param {Entry} from @param {Entry} to  the last one @param {Set<Entry>} wanted
 * @param {(entry: Entry) => Promise<any>} replyOf  returns the whole reply of an entry @return {Promise<Story>}
 */
export async function collect(entries, from, to, wanted, replyOf) {
  const begin = startOf(entries, entries.indexOf(from))
  const part = entries.slice(begin, entries.indexOf(to) + 1)
  const start = part.findIndex(({topic}) => topic === 'command')
  if (start < 0) throw new Error('The range contains no command.')
  const clients = new Map()
  const faults = new Map()
  const engines = new Engines()
  const steps = standingSteps(entries.slice(0, begin + start), faults)
  for (const entry of part.slice(start)) {
    if (entry.topic === 'resync') throw new Error('Events are missing in this range. Select a shorter one.')
    if (entry === from && entry !== part[start]) steps.push({client: '', remark: 'The selection starts here; the lines above prepare the state that it needs.'})
    if (entry.topic !== 'command') {
      steps.push(...engines.take(entry), ...inputOf(entry.event, faults))
    } else if (entry.event.reply && (wanted.has(entry) || faults.size > 0 || entry.changes.length > 0 || leftBy(entry) || engines.isOpenedBy(entry))) {
      const client = engines.use(entry)
      if (!clients.has(client)) clients.set(client, {name: `${clients.size + 1}:${entry.event.engine}`, appId: timeline.applications.get(client) ?? ''})
      steps.push({client, entry, reply: await replyOf(entry)})
    }
  }
  const remarks = begin < entries.indexOf(from) ? ['Starts before the selection, with the state that the selection needs: windows, found channels, planes, faults.'] : []
  return {steps, first: /** @type {number} */ (part[start].command), clients, remarks}
}

/** Tracks the open engines of an export. An engine is opened by its first command, or again by a line. */
class Engines {
  #open = new Set()
  /** Engines whose opening changed the set and that have not run a command yet. */
  #fresh = new Set()

  /** @param {Entry} entry  no command @return {Step[]} */
  take({event, changes}) {
    if (event.started) this.#open.clear()
    if (event.topic !== 'engine' || event.what !== 'opened') return []
    if (this.#open.has(event.engine)) return [{client: event.engine, line: '.reopen'}]
    if (changes.length > 0) this.#fresh.add(event.engine)
    return []
  }

  /** Whether a command is the first on an engine whose opening changed the set. @param {Entry} entry */
  isOpenedBy({event}) {
    return this.#fresh.has(engineOf(event))
  }

  /** Records that a command is exported. @param {Entry} entry @return {string} its engine */
  use({event}) {
    const engine = engineOf(event)
    this.#fresh.delete(engine)
    this.#open.add(engine)
    return engine
  }
}

/** @param {Story} story @param {string} snapshot  name of the file @param {string} what  in a line */
export function transcript({steps, clients, remarks}, snapshot, what) {
  const lines = ['> .recorded', `> .restore ${word(snapshot)}`, `# ${what}`, ...remarks.map(remark => `# ${remark}`)]
  let inUse = ''
  let named = new Set()
  for (const {client, entry, reply, line, remark} of steps) {
    if (remark) lines.push(`# ${remark}`)
    if (client && client !== inUse) {
      const {name, appId} = /** @type {{name: string, appId: string}} */ (clients.get(client))
      lines.push(`> .engine ${word(name)}`)
      if (appId && !named.has(client)) lines.push(`> .app ${word(appId)} ''`)
      inUse = client
      named.add(client)
    }
    if (line) lines.push(`> ${line}`)
    if (line === '.reset') {
      inUse = ''
      named = new Set()
    }
    if (entry) lines.push(commandLine(entry.event.name, entry.event.parameters, entry.event.list), ...replyLines(reply))
  }
  return `${lines.join('\n')}\n`
}

/** @param {unknown} value  as JavaScript @return {string} */
const literal = value => JSON.stringify(value)?.replace(/[\u2028\u2029]/g, unit => `\\u${unit.charCodeAt(0).toString(16)}`) ?? 'undefined'

/** The result of `Execute` for a reply. @param {any} reply */
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

/** A test for Playwright with its own TV. @param {Story} story @param {string} snapshot @param {string} what */
export function playwrightTest(story, snapshot, what) {
  const names = variables(story)
  const lines = story.steps.flatMap(({client, entry, reply, line, remark}) => [
    ...remark ? [`  // ${remark}`] : [], ...line ? [`  await ${names.get(client)?.name ?? 'tv'}.run(${literal(line)})`] : [],
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

/** The same calls on an existing TV. @param {Story} story @param {string} address @param {string} what */
export function clientModule(story, address, what) {
  const names = variables(story)
  const first = [...names.values()][0]?.name
  const lines = story.steps.flatMap(({client, entry, reply, line, remark}) => [
    ...remark ? [`// ${remark}`] : [], ...line ? [`await ${names.get(client)?.name ?? first}.run(${literal(line)})`] : [],
    ...entry ? [`console.log(await ${callOf(entry, names.get(client)?.name ?? 'tv')})  // was ${literal(answered(reply))?.slice(0, 200)}`] : []])
  return `import {connect} from 'emp-window'

// ${[what, ...story.remarks].join('\n// ')}
const address = process.argv[2] ?? ${literal(address)}
${[...names.values()].map(({name, appId}) => `const ${name} = await connect(address, ${literal({appId})})`).join('\n')}
${lines.join('\n')}
${[...names.values()].map(({name}) => `await ${name}.close()`).join('\n')}
`
}
