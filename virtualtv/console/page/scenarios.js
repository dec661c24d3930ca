// SPDX-License-Identifier: MIT
/*
 * Scenarios of failing sets, each with the calls that cause and undo it. Whether a scenario is active is read from the
 * set, so it does not matter who started it.
 */
import {transcriptLine} from './deed.js'

/** @typedef {{method: string, params: any}} Step */
/** @typedef {{id: number, fault: string}} Fault  as `tv.faults` lists it */
/** @typedef {{state: any, faults: Fault[], latency: string}} Seen  the data that shows which scenarios are active */
/**
 * @typedef {object} Scenario
 * @property {string} name
 * @property {string} effect  the effect on apps
 * @property {Step[]} steps
 * @property {(seen: Seen) => boolean} isOn
 * @property {(seen: Seen) => Step[]} undo
 * @property {Step[]} [behind]  steps that must follow when its fault is set or removed
 */

const slowCall = 'IServiceNavigation::TuneService'
export const slowKnob = `latency.${slowCall}`

/** @param {string} name @param {string | number} value @return {Step} */
const turn = (name, value) => ({method: 'tv.set', params: {name, value}})
const reopen = {method: 'tv.run', params: {line: '.reopen'}}

/** @param {Fault} fault @param {{operation: string, result?: any, outputs?: any}} wanted */
function isSame({fault}, {operation, result, outputs}) {
  const answer = outputs ? Object.entries(outputs).map(([name, value]) => `out.${name}=${value}`).join(' ') : `result=${result}`
  return fault === `${operation} always ${answer}`
}

/**
 * A scenario that sets a fault.
 * @param {{operation: string, result?: any, outputs?: any}} fault
 * @param {Step[]} behind
 */
const faulty = (fault, behind = []) => ({
  steps: [{method: 'tv.fault', params: {...fault, times: 'always'}}, ...behind],
  isOn: (/** @type {Seen} */ {faults}) => faults.some(one => isSame(one, fault)),
  undo: (/** @type {Seen} */ {faults}) => [
    ...faults.filter(one => isSame(one, fault)).map(({id}) => ({method: 'tv.clearFaults', params: {id}})), ...behind],
  behind,
})

/** @type {Scenario[]} */
export const scenarios = [
  {
    name: 'Signal fades', effect: 'GetSignalStrength answers 0.',
    steps: [turn('tuner.fade', 255)],
    isOn: ({state}) => state?.tuner?.fade > 0, undo: () => [turn('tuner.fade', 0)],
  },
  {
    name: 'Secondary manager gone', effect: 'On the ISP source the lists of tracks are empty and changes of tracks fail.',
    steps: [turn('isp.present', 'off')],
    isOn: ({state}) => state?.isp?.present === false, undo: () => [turn('isp.present', 'on')],
  },
  {
    name: 'Slow tunes', effect: 'Each channel change takes 3 seconds, and its answer is delayed by that time.',
    steps: [turn(slowKnob, 3000)],
    isOn: ({latency}) => latency !== '0', undo: () => [turn(slowKnob, 0)],
  },
  {
    name: 'Empty channel list', effect: 'FindChannel answers 0, GetFullChannelList -1.',
    ...faulty({operation: 'IServiceNavigation::GetServiceList', outputs: {services: '[]'}}),
  },
  {
    name: 'No navigation', effect: 'Engines that open from now on can neither tune nor list channels; an app does once it is reloaded.',
    ...faulty({operation: 'TVServiceAPI::CreateServiceNavigation', result: null}, [reopen]),
  },
]

/** Steps that must follow the removal of faults, so that no effect of them remains. @param {Fault[]} faults */
export const behind = faults => scenarios.filter(one => one.behind && one.isOn({state: null, latency: '0', faults})).flatMap(one => one.behind ?? [])

/** The lines that a scenario runs. @param {Step[]} steps */
export const linesOf = steps => steps.map(({method, params}) => transcriptLine(method, params)?.replace(/^> /, '') ?? method)
