/* How services are named. */
import {h} from './dom.js'

/** A service's number, written as the shell does. @param {{major?: number | null, minor?: number | null}} service */
export function numberOf({major, minor}) {
  if (major === null || major === undefined) return ''
  return minor ? `${major}-${minor}` : String(major)
}

/** A name, told as such where there is none. @param {string | null | undefined} name */
export function nameOf(name) {
  return name ? h('bdi', {class: 'name cut', title: name}, name) : h('span', {class: 'dim'}, '(no name)')
}

/** Number and name in a line. @param {any} service  null for none */
export function lineOf(service) {
  return service ? `${numberOf(service)} ${service.name || '(no name)'}`.trim() : 'no service'
}
