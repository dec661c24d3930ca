// SPDX-License-Identifier: MIT
/* Describes changes of the set outside of commands. */

/** @typedef {{[name: string]: any}} Values */

/** @param {any} service */
const serviceShown = service => service ? `${service.major}-${service.minor} ${service.name}` : 'none'

/** Shortens the name of a session, or a text that starts with one: removes the server's run. @param {string} name */
export const shortName = name => name.replace(/^[0-9a-f]{8,}-/, '#')

/**
 * The differences of two documents, member by member: `[name, before, after]`.
 * @param {any} before
 * @param {any} after
 * @param {string} [path]
 * @return {[string, any, any][]}
 */
export function differences(before, after, path = '') {
  const isPart = (/** @type {any} */ value) => typeof value === 'object' && value !== null
  if (!isPart(before) || !isPart(after) || Array.isArray(before) !== Array.isArray(after)) {
    return JSON.stringify(before) === JSON.stringify(after) ? [] : [[path, before, after]]
  }
  const names = [...new Set([...Object.keys(before), ...Object.keys(after)])]
  return names.flatMap(name => differences(before[name], after[name], path ? `${path}.${name}` : name))
}

/** @param {any} value */
export const valueShown = value => value === undefined || value === null ? 'unset' : typeof value === 'string' ? value || '(empty)' : JSON.stringify(value)

/** @type {{[topic: string]: (event: any) => string}} */
const titles = {
  source: ({window}) => `${window} source`,
  service: ({window, after}) => `${window} service ${serviceShown(after.service)}`,
  mode: ({window}) => `${window} TV mode`,
  plane: ({window}) => `${window} plane`,
  tracks: ({window, kind, service}) => kind ? `${kind} of ${serviceShown(service)}` : `${window} tracks`,
  favourites: ({service}) => `favourites of ${serviceShown(service)}`,
  inputs: ({after}) => `input ${after.source} ${after.name}`,
  knob: ({name, after}) => `${name} = ${valueShown(after)}`,
  settings: ({key, before, after}) => `${key} ${valueShown(before)} -> ${valueShown(after)}`,
  engine: ({what, engine, why, appId}) => `${shortName(engine)} ${what}${why ? `: ${why}` : ''}${appId ? ` for ${appId}` : ''}`,
  session: ({what, session}) => `${shortName(session)} ${what}`,
  fault: ({what, id, fault, hits}) => `${id} ${what}${fault ? `: ${fault}` : ''}${hits ? `, ${hits} ${hits === 1 ? 'hit' : 'hits'} so far` : ''}`,
  log: ({lines}) => lines[0]?.text ?? '',
  call: ({call}) => call,
  services: ({started, service, field, before, after, added, changed, gone, edit}) => started ? `the set started: ${started}`
    : field ? `${field} of ${serviceShown(service)}: ${valueShown(before)} -> ${valueShown(after)}`
      : `${edit ? `service ${edit}` : 'list replaced'}, ${before} -> ${after}: ${added} added, ${changed} changed, ${gone} gone`,
}

/** An entry that is not a command, in one line. @param {any} event */
export function titleOf(event) {
  if (event.topic === 'resync') return event.isAnother ? 'The server was restarted. Earlier data is no longer available.' : 'Some events were missed here.'
  const title = titles[event.topic]?.(event) ?? ''
  const isDocument = ['source', 'mode', 'plane', 'inputs', 'tracks'].includes(event.topic)
  const parts = isDocument ? differences(event.before, event.after).filter(([, , after]) => typeof after !== 'object') : []
  return `${title}${parts.length > 0 ? `: ${parts.slice(0, 4).map(([name, before, after]) => `${name ? `${name} ` : ''}${valueShown(before)} -> ${valueShown(after)}`).join(', ')}` : ''}`
}
