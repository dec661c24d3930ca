// SPDX-License-Identifier: MIT
/*
 * Brings what happens on the TV into the store. Events are told as they come; documents that they make untrue are asked for
 * again, at most one question of a kind at a time, so that many events at once cost no more than one.
 */
import {people} from './connection.js'
import {store} from './store.js'
import {timeline} from './timeline-log.js'
import {completeTimeline} from './timeline-past.js'

/** @typedef {import('../client.js').Tv} Tv */

const mostBefore = 2000  // events from before the page was opened

const stateTopics = new Set(['source', 'service', 'mode', 'plane', 'tracks', 'favourites', 'services', 'inputs', 'knob'])

/**
 * Calls a function, and again where it was asked for meanwhile.
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
      // The connection broke: the next one starts with all documents.
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
 * Listens to all that happens, and to the last of what happened before, as far as the server holds it.
 * @param {Tv} tv @param {(event: import('../client.js').TvEvent) => void} listener
 */
async function listen(tv, listener) {
  let after
  let number = 0
  try {
    number = (await tv.call('events.subscribe', {topics: []})).number
    after = Math.max(0, number - mostBefore)
  } catch {
    // The connection broke: the next one tells what happens from then on.
  }
  const {ready} = tv.on('*', listener, {after})
  await ready.then(() => completeTimeline(tv, number), () => {})
}

/** What does not change while the server runs. @param {Tv} tv */
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
