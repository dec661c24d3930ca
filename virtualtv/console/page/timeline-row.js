// SPDX-License-Identifier: MIT
/* A line of the timeline. */
import {h} from './dom.js'
import {failureOf, replyShown} from './reply.js'
import {clock, front} from './shown.js'
import {timeline} from './timeline-log.js'
import {titleOf} from './timeline-outside.js'

/** @typedef {import('./timeline-log.js').Entry} Entry */

/** @param {number} count @param {string} one @param {string} [many] */
const counted = (count, one, many = `${one}s`) => h('span', null, count > 0 ? `${count} ${count === 1 ? one : many}` : '')

/** @param {Entry} entry */
export const isHit = entry => entry.changes.some(({topic, what}) => topic === 'fault' && what === 'hit') || entry.calls.some(({fault}) => fault)

/** The row of an entry. @param {Entry} entry */
export function row(entry) {
  return entry.topic === 'command' ? commandRow(entry) : outsideRow(entry)
}

/** @param {Entry} entry */
function commandRow(entry) {
  const {event, calls, changes, log} = entry
  const isFailure = failureOf(event.name, event.reply) !== undefined
  return [
    h('span', {class: 'time'}, clock(entry.time)),
    h('span', {class: 'client cut name', title: front(timeline.clientOf(event), 500)}, front(timeline.clientOf(event), 60)),
    h('code', {class: 'call-of cut'}, h('b', null, front(event.name, 120)), ` ${front(event.parameters.join(' '), 200)}`, event.list && h('span', {class: 'dim'}, ' (list)')),
    h('span', {class: 'answer'}, h('code', {class: ['cut', isFailure && 'fail']}, replyShown(event.reply)), isHit(entry) && h('span', {class: 'fault'}, 'fault')),
    h('span', {class: 'took'}, `${event.duration.toFixed(1)} ms`),
    h('span', {class: 'counts'}, counted(calls.length, 'call'), counted(changes.filter(({topic}) => topic === 'settings').length, 'key'), counted(log.length, 'log', 'log')),
  ]
}

/** @param {Entry} entry */
function outsideRow({topic, time, event}) {
  const isFault = topic === 'fault'
  return [
    h('span', {class: 'time'}, clock(time)),
    h('span', {class: 'client cut dim'}, topic === 'resync' ? 'timeline' : topic),
    h('span', {class: ['outside cut name', isFault ? 'fault' : 'dim']}, front(titleOf(event), 300)),
  ]
}
