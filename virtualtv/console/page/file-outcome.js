// SPDX-License-Identifier: MIT
/* Shows the outcome for a file, in words and tables. */
import {h} from './dom.js'
import {counted, nameOf, numberOf} from './services.js'

/** @typedef {import('./files.js').Outcome} Outcome */

const mostRows = 1000

const failed = {list: 'was not imported', recording: 'was not scanned', transcript: 'was not checked', snapshot: 'was not restored', none: 'was not taken'}

/** The outcome in a word or two. @param {Outcome} outcome @return {{text: string, isFailure: boolean}} */
export function summary({kind, problem, result, found}) {
  if (problem !== undefined) return {text: found ? 'was not imported' : failed[kind], isFailure: true}
  if (kind === 'recording') return {text: `${result ? 'imported: ' : ''}${counted(found.services.length, 'service')} found`, isFailure: found.services.length === 0}
  if (kind === 'list') return {text: result.total > 0 ? 'imported, with problems' : 'imported', isFailure: result.total > 0}
  if (kind === 'snapshot') return {text: 'restored', isFailure: false}
  return {text: result.passed ? 'passed' : 'failed', isFailure: !result.passed}
}

/** The details of the outcome. @param {Outcome} outcome */
export function details({kind, problem, way, result, found, note}) {
  return [
    problem && h('p', {class: 'fail name', role: 'alert'}, problem),
    way && h('p', null, way),
    note && h('p', {class: 'dim'}, note),
    !problem && kind === 'list' && h('p', null, `${changes(result)}; ${counted(result.total, 'line')} could not be read`),
    !problem && kind === 'recording' && result && h('p', null, changes(result)),
    kind === 'list' && result && problemTable(result.problems, 'Line', result.total),
    found && recording(found),
    !problem && kind === 'transcript' && (result.passed ? h('p', null, 'All output is as expected.') : diff(result.diff)),
    !problem && kind === 'snapshot' && h('p', null, 'The snapshot was restored. Engines were closed; faults and latencies were removed.'),
  ]
}

/** @param {any} result  of an import */
const changes = ({imported, added, changed, gone}) => `${counted(imported, 'service')}: ${added} added, ${changed} changed, ${gone} gone`

/** @param {any} found  in a recording */
function recording({packets, services, problems}) {
  return [
    services.length === 0 && h('p', null, packets === 0 ? 'It has no packets of a transport stream.' : `None of its ${counted(packets, 'packet')} describes a service.`),
    services.length > 0 && serviceTable(services),
    problemTable(problems, 'Place', problems.length),
  ]
}

/** @param {any[]} services */
function serviceTable(services) {
  const columns = ['No.', 'Name', 'Kind', 'Audio', 'Subtitles', 'Flags']
  return [
    h('table', {class: 'found-services'},
      h('thead', null, h('tr', null, columns.map(column => h('th', {scope: 'col'}, column)))),
      h('tbody', null, services.slice(0, mostRows).map(service => h('tr', null,
        h('td', {class: 'mono'}, numberOf(service)), h('td', {title: service.provider && `Provider: ${service.provider}`}, nameOf(service.name)), h('td', null, service.kind ?? ''),
        h('td', null, languages(service.audio)), h('td', null, languages(service.subtitles)), h('td', null, service.scrambled && 'scrambled'))))),
    services.length > mostRows && h('p', {class: 'dim'}, `${services.length - mostRows} more are not shown.`),
  ]
}

/** The languages of tracks, without duplicates. @param {{language?: string}[]} tracks */
const languages = tracks => [...new Set(tracks.map(({language}) => language ?? 'und'))].join(', ')

/**
 * The problems of a file by place.
 * @param {any[]} problems
 * @param {string} place  heading for places
 * @param {number} total  number of problems, including those not listed
 */
function problemTable(problems, place, total) {
  return [
    problems.length > 0 && h('table', null,
      h('thead', null, h('tr', null, h('th', {scope: 'col'}, place), h('th', {scope: 'col'}, 'What is wrong'))),
      h('tbody', null, problems.map(({line, at, reason}) => h('tr', null,
        h('td', {class: 'mono'}, line ?? at), h('td', {class: 'name'}, reason))))),
    total > problems.length && h('p', {class: 'dim'}, `${total - problems.length} more are not shown.`),
  ]
}

/** @param {string} text  a unified diff */
function diff(text) {
  const kinds = [['+++', 'place'], ['---', 'place'], ['@@', 'place'], ['+', 'added'], ['-', 'gone']]
  const lines = text.replace(/\n$/, '').split('\n')
  const shown = lines.slice(0, 2000)
  return [
    h('pre', {class: 'diff', 'aria-label': 'Differences: - expected, + printed'},
      shown.map(line => h('span', {class: kinds.find(([start]) => line.startsWith(start))?.[1] ?? ''}, line))),
    lines.length > shown.length && h('p', {class: 'dim'}, `${lines.length - shown.length} more lines are not shown.`),
  ]
}
