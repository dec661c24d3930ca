// SPDX-License-Identifier: MIT
/*
 * The earlier state that an export depends on and that no snapshot contains: windows, found channels, planes, faults,
 * some knobs.
 */
import {inputOf} from './export-outside.js'
import {engineOf} from './timeline-log.js'

/** @typedef {import('./timeline-log.js').Entry} Entry */

/** The state that a command leaves for later ones. @param {Entry} entry @return {string | undefined} */
export function leftBy({event, changes}) {
  if (event.name === 'SetWindow') return `window ${engineOf(event)}`
  if (/^Find/.test(event.name)) return `channels ${engineOf(event)}`
  const changed = changes.find(({topic}) => topic === 'plane' || topic === 'source')
  return changed && `${changed.topic} ${changed.window}`
}

/**
 * The position at which an export must start to include all state that it depends on.
 * @param {Entry[]} entries  all @param {number} from  the position of the first wanted entry @return {number}
 */
export function startOf(entries, from) {
  let start = leavingsBefore(entries, from)
  for (;;) {
    const counting = [...faultsBehind(entries.slice(0, start)).values()].filter(({isCounting}) => isCounting)
    const first = Math.min(start, ...counting.map(({at}) => at))
    if (first === start) return start
    start = leavingsBefore(entries, first)
  }
}

/**
 * The position of the first command whose state is still in effect at a position.
 * @param {Entry[]} entries
 * @param {number} from
 * @return {number}
 */
function leavingsBefore(entries, from) {
  const found = new Set()
  let start = from
  for (let at = from - 1; at >= 0; --at) {
    const {topic, event} = entries[at]
    if (topic === 'resync' || event.started) break
    if (topic === 'engine') found.add(`window ${event.engine}`).add(`channels ${event.engine}`)  // a new engine has no earlier state
    const what = topic === 'command' ? leftBy(entries[at]) : undefined
    if (what && (!found.has(what) || /^plane|^source/.test(what))) {
      found.add(what)
      start = at
    }
  }
  return start
}

/**
 * Faults that exist after some entries and can still hit.
 * @param {Entry[]} entries
 * @return {Map<number, {event: any, at: number, isCounting: boolean}>}  by number: the event and the position at which
 *   each was set, and whether it counts calls
 */
function faultsBehind(entries) {
  const standing = new Map()
  entries.forEach(({event, changes}, at) => {
    if (event.started) standing.clear()
    for (const change of [event, ...changes]) {
      if (change.topic !== 'fault') continue
      const {what, id, fault, hits} = change
      if (what === 'set') standing.set(id, {event: change, at, isCounting: /\bnth=/.test(fault) || timesOf(fault) < Infinity})
      else if (what === 'gone' || hits >= timesOf(standing.get(id)?.event.fault ?? '')) standing.delete(id)
    }
  })
  return standing
}

/** The number of calls that a fault hits. @param {string} fault  as `tv.faults` lists it */
const timesOf = fault => Number(/ times=(\d+)/.exec(fault)?.[1] ?? Infinity)

/** The last values of knobs that are not persisted. @param {Entry[]} entries @return {any[]} their events */
function knobsBehind(entries) {
  const turned = new Map()
  for (const {event} of entries) {
    if (event.started) turned.clear()
    if (event.topic === 'knob' && /\.resolution$|^latency\./.test(event.name)) turned.set(event.name, event)
  }
  return [...turned.values()]
}

/**
 * The steps that complete a restored snapshot to the state after some entries.
 * @param {Entry[]} entries @param {Map<number, number>} faults  as for inputOf
 */
export function standingSteps(entries, faults) {
  return [...knobsBehind(entries), ...[...faultsBehind(entries).values()].map(({event}) => event)].flatMap(event => inputOf(event, faults))
}
