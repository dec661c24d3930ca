// SPDX-License-Identifier: MIT
/*
 * Updates the store with events of the TV. Documents that an event outdates are fetched again, with at most one request
 * of a kind at a time, so that many events at once cost no more than one.
 */
import {people} from './connection.js'
import {store} from './store.js'
import {timeline} from './timeline-log.js'
import {completeTimeline} from './timeline-past.js'

/** @typedef {import('../client.js').Tv} Tv */

const mostBefore = 2000  // events from before the page was opened

const stateTopics = new Set(['source', 'service', 'mode', 'plane', 'tracks', 'favourites', 'services', 'inputs', 'knob'])

/**
 * Runs a function, and runs it again if it was requested meanwhile.
 * @param {() => Promise<void>} ask @return {() => void}
 */
function coalesced(ask) {
  let isRunning = false
  let isWanted = false
  return async function again() {
    isWanted = true
    if (isRunning) return
    isRunning = true
    try {
      while (isWanted) {
        isWanted = false
        await ask()
      }
    } catch {
      // The connection broke; the next one starts by fetching all documents.
    } finally {
      isRunning = false
    }
  }
}

/** Subscribes the store to a TV. @param {Tv} tv */
export function feed(tv) {
  const ask = {
    state: coalesced(async () => store.set('state', await tv.state())),
    keptIn: coalesced(async () => store.set('keptIn', (await tv.call('session.open')).state ?? null)),
    sessions: coalesced(async () => store.set('sessions', await tv.sessions())),
    faults: coalesced(async () => store.set('faults', await tv.faults())),
    settings: coalesced(async () => store.set('settings', await tv.settings())),
    knobs: coalesced(async () => store.set('knobs', await tv.knobs())),
  }

  /** @param {string} topic */
  const take = topic => {
    if (stateTopics.has(topic)) ask.state()
    if (topic === 'services' || topic === 'favourites') store.set('services', store.get('services') + 1)
    if (topic === 'knob' && store.get('knobs')) ask.knobs()
    if (topic === 'session' || topic === 'engine') ask.sessions()
    if (topic === 'fault') ask.faults()
    if (topic === 'settings') ask.settings()
  }

  const listener = (/** @type {import('../client.js').TvEvent} */ event) => {
    if (event.topic !== 'session' || people([event]).length > 0) timeline.take(event)
    store.set('timeline', timeline.version)
    if (event.state === undefined) return take(event.topic)
    store.set('state', event.state)
    store.set('services', store.get('services') + 1)
    for (const question of [ask.keptIn, ask.sessions, ask.faults, ask.settings]) question()
    if (store.get('knobs')) ask.knobs()
  }
  listen(tv, listener)
  tv.on('connection', ({connected, reason}) => store.set('connection', {connected, reason, since: Date.now()}))
  describe(tv).catch(error => store.set('connection', {...store.get('connection'), reason: error.message}))
}

/**
 * Subscribes to all events, including the last earlier ones that the server still has.
 * @param {Tv} tv @param {(event: import('../client.js').TvEvent) => void} listener
 */
async function listen(tv, listener) {
  let after
  let number = 0
  try {
    number = (await tv.call('events.subscribe', {topics: []})).number
    after = Math.max(0, number - mostBefore)
  } catch {
    // The connection broke; the next one continues with new events.
  }
  const {ready} = tv.on('*', listener, {after})
  await ready.then(() => completeTimeline(tv, number), () => {})
}

/** Fetches the data that does not change while the server runs. @param {Tv} tv */
async function describe(tv) {
  const {methods} = await tv.discover()
  store.set('commands', methods.filter((/** @type {any} */ method) => /^window\.[A-Z]/.test(method.name)).map(commandOf))
  store.set('operations', await tv.operations())
}

/** @param {any} method  of the OpenRPC document */
function commandOf({name, summary, description, params, result}) {
  return {
    name: name.slice('window.'.length), help: description ?? summary ?? '',
    answers: result.schema.description ?? '', failures: result.schema['x-failures'] ?? [],
    parameters: params.map((/** @type {any} */ parameter) => ({
      name: parameter.name, help: parameter.description ?? parameter.summary ?? '', schema: parameter.schema})),
  }
}
