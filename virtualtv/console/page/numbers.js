// SPDX-License-Identifier: MIT
/*
 * The meanings of numbers. Inputs and TV modes have two numbers each: knobs and `tv.state` use the TV service's,
 * commands use the plug-in's.
 */

/** @typedef {{set: number, plugin: number, name: string, canBeShown: boolean}} Source */

/** The inputs that the set has. @type {Source[]} */
const sources = [
  {set: 0, plugin: 0, name: 'Live TV', canBeShown: true},
  {set: 1, plugin: 15, name: 'AV', canBeShown: true},
  {set: 7, plugin: 23, name: 'Component', canBeShown: true},
  {set: 10, plugin: 27, name: 'PC', canBeShown: true},
  {set: 13, plugin: 31, name: 'HDMI 1', canBeShown: true},
  {set: 14, plugin: 32, name: 'HDMI 2', canBeShown: true},
  {set: 15, plugin: 33, name: 'HDMI 3', canBeShown: true},
  {set: 16, plugin: 34, name: 'HDMI 4', canBeShown: true},
  {set: 17, plugin: 35, name: 'SCART', canBeShown: true},
  {set: 31, plugin: 53, name: 'USB', canBeShown: false},
]

/** The source with a number of the TV service. @param {number} number @return {Source | undefined} */
export function sourceOf(number) {
  return sources.find(source => source.set === number)
}

/** The TV modes without an operator's list, by the set's number of their antenna. @type {[number, string][]} */
export const antennaModes = [[1, 'Terrestrial'], [2, 'Cable'], [4, 'Satellite']]

/** TV modes that the command SetTVMode takes. */
export const tvModes = [
  ['Antennas', antennaModes],
  ['Operators\' lists', [[23, 'Terrestrial, an operator'], [24, 'Cable, an operator'],
    ...[...range(5, 20), ...range(25, 31)].map(mode => [mode, `Satellite, operator ${mode}`])]],
]

/** Antennas by the set's numbers. */
export const antennas = ['terrestrial', 'cable', 'satellite']

/** The plug-in's number of a TV mode of the set. @param {{antenna: number, service: number}} mode @return {number} 0 for none */
export function tvModeOf({antenna, service}) {
  if (antenna === 0) return service === 21 ? 23 : 1
  if (antenna === 1) return service === 21 ? 24 : 2
  if (antenna !== 2) return 0
  if (service >= 3 && service <= 18) return service + 2
  return service >= 21 && service <= 27 ? service + 4 : 4
}

/** @param {number} antenna */
export const antennaName = antenna => antennas[antenna] ?? 'unknown antenna'

/** @type {Intl.DisplayNames | undefined} */
let languages

/** @param {string | number} code  three letters, or a number of the set */
export function languageName(code) {
  if (typeof code === 'number') return 'no known code'
  if (code === 'und') return 'not known'
  if (code === 'qaa') return 'original'
  languages ??= new Intl.DisplayNames('en', {type: 'language'})
  try {
    const name = languages.of(code)
    return name === code || !name ? 'no known code' : name
  } catch {
    return 'no known code'
  }
}

export const codingNames = /** @type {{[code: string]: string}} */ ({
  unknown: 'not known', mpeg: 'MPEG', ac3: 'AC-3', eac3: 'E-AC-3', aac: 'AAC'})
export const audioModes = /** @type {{[mode: number]: string}} */ ({0: 'not known', 1: 'mono', 2: 'stereo', 4: 'surround'})
export const audioTypes = /** @type {{[type: number]: string}} */ ({
  0: 'for all', 1: 'clean effects', 2: 'hearing impaired', 3: 'visually impaired'})
export const subtitleTypes = /** @type {{[type: string]: string}} */ ({
  dvb: 'DVB subtitle', teletext: 'teletext page', 'teletext-subtitle': 'teletext subtitle'})

/** @param {number} region */
export const regionName = region => region === 17 ? 'service list 2, whatever the country' : 'the country determines the service list'

/** @param {number} country */
export function countryName(country) {
  if ([0, 2].includes(country)) return 'service list 0'
  if ([1, 36, 63, 75].includes(country)) return 'service list 21, an operator\'s'
  if ([34, 64, 65, 67, 69, 70, 71, 72, 73, 74, 80].includes(country)) return 'service list 2'
  return 'service list 1'
}

/** @param {number} from @param {number} to @return {number[]} */
function range(from, to) {
  return Array.from({length: to - from + 1}, (_, index) => from + index)
}
