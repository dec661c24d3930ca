// SPDX-License-Identifier: MIT
/* Converts changes of the set outside of commands to lines that repeat them. */
import {word} from './deed.js'
import {differences} from './timeline-outside.js'

/** @param {any} track */
const audioText = ({pid, lang, coding, mode, type, readable}) => `${readable === false ? '!' : ''}${pid}:${lang}:${coding}:${mode}:${type}`

/** @param {any} track */
const subtitleText = ({pid, lang, type, readable}) => `${readable === false ? '!' : ''}${pid}:${lang}:${type}`

/** @param {any[]} list @param {(one: any) => string} text */
const listText = (list, text) => list.map(text).join(',') || 'none'

/** @param {any} service */
const serviceKey = service => service ? `#${service.key}` : '0'

/** A text in the form for a field of a service. @param {string} text */
const quoted = text => `"${text.replace(/["\\]/g, '\\$&').replace(/[\0-\x1f\x7f-\x9f]/g, unit => `\\u${unit.charCodeAt(0).toString(16).padStart(4, '0')}`)}"`

/** @param {string} name @param {unknown} value */
const set = (name, value) => `.set ${word(name)} ${word(value)}`

/** The lines for members that differ. @param {any} event @param {{[member: string]: (value: any) => string}} writers */
function changed({before, after}, writers) {
  const names = new Set(differences(before, after).map(([path]) => path))
  return Object.entries(writers).filter(([member]) => [...names].some(name => name === member || name.startsWith(`${member}.`)))
    .map(([member, write]) => write(member.split('.').reduce((part, key) => part?.[key], after)))
}

/** @type {{[topic: string]: (event: any) => string[]}} */
const writers = {
  source: event => event.window === 'isp' ? ispLines(event) : changed(event, {
    number: value => set(`${event.window}.source`, value),
    state: value => set(`${event.window}.source_state`, value),
    previous: value => set(`${event.window}.previous_source`, value)}),
  service: ({window, before, after}) => [
    ...JSON.stringify(before.service) !== JSON.stringify(after.service) ? [set(`${window}.service`, serviceKey(after.service))] : [],
    ...JSON.stringify(before.previous) !== JSON.stringify(after.previous) ? [set(`${window}.previous_service`, serviceKey(after.previous))] : []],
  mode: ({window, after}) => [set(`${window}.mode`, `${after.antenna},${after.service}`)],
  tracks: event => event.kind ? [set(`service.${serviceKey(event.service)}.${event.kind}`, event.after || 'none')] : changed(event, {
    audio: value => set(`${event.window}.audio`, value), subtitle: value => set(`${event.window}.subtitle`, value)}),
  favourites: ({service, after}) => [set(`service.${serviceKey(service)}.favourites`, after || 'none')],
  inputs: event => changed(event, {
    plugged: value => set(`input.${event.input}.plugged`, value ? 'on' : 'off'),
    picture: ({width, height, rate}) => set(`input.${event.input}.picture`, `${width}x${height}@${rate}`)}),
  knob: ({name, after}) => [set(name, after)],
  settings: ({key, after}) => [after === null || after === undefined ? `.vconf unset ${word(key)}`
    : `.vconf set ${word(key)} ${typeof after === 'number' ? 'int' : 'str'} ${word(after)}`],
  services: ({service, field, after, started, edit}) => started ? [started === 'reset' ? '.reset' : '.restart']
    : edit ? [`.service ${edit}`] : field ? [set(`service.${serviceKey(service)}.${field}`, after === null ? 'unset' : field === 'name' || field === 'attached' ? quoted(after) : after)] : [],
}

/** @param {any} event */
function ispLines(event) {
  return changed(event, {
    present: value => set('isp.present', value ? 'on' : 'off'),
    picture: ({width, height}) => set('isp.picture', `${width}x${height}`),
    'tracks.audio': value => set('isp.audio', listText(value, audioText)),
    'tracks.subtitles': value => set('isp.subtitles', listText(value, subtitleText)),
    'tracks.audioInUse': value => set('isp.audio_in_use', value),
    'tracks.subtitleInUse': value => set('isp.subtitle_in_use', value)})
}

/** @param {any} event @param {Map<number, number>} faults  as for inputOf @return {string[]} */
function faultLines({what, id, fault}, faults) {
  if (what === 'set') {
    faults.set(id, faults.size + 1)
    return [`.fault ${fault.replace(/ engine=\S+/, '')}`]
  }
  return what === 'gone' && faults.has(id) ? [`.fault clear ${faults.get(id)}`] : []
}

/**
 * The lines that repeat a change from outside.
 * @param {any} event
 * @param {Map<number, number>} faults  for each fault set so far, its number in the export by its number on the set
 * @return {import('./export.js').Step[]}
 */
export function inputOf(event, faults) {
  if (event.topic === 'services' && !event.field && !event.edit && (!event.started || /restore|back/.test(event.started))) {
    throw new Error('A list was imported or a snapshot restored in this range, and the timeline does not contain it. Select a shorter range.')
  }
  const lines = event.topic === 'fault' ? faultLines(event, faults) : writers[event.topic]?.(event) ?? []
  return lines.map(line => ({client: '', line}))
}
