// SPDX-License-Identifier: MIT
/*
 * Persists a TV in memory in the browser's IndexedDB, under a key that only one tab at a time can use. Stored data is
 * overwritten only by the set that was started from it.
 */
import './window.js'

const {EmpTvError} = globalThis[Symbol.for('emp-window/2')]

const store = 'sets'
const format = 1  // version of a record
const lockPatience = 1000  // ms for a closing or reloading page to release a key
const pause = 20  // minimum ms from a change to saving it
const share = 10  // saving takes at most one part in this many of the time
const topics = ['source', 'service', 'mode', 'plane', 'tracks', 'favourites', 'services', 'inputs', 'knob', 'settings']

// Some errors of browsers have no text, for instance when storage is full.
const failure = (key, message, cause) =>
  new EmpTvError('storage', `persist '${key}': ${message}: ${cause.message || cause.name}`, {cause})

/** The result of a request to the database. */
const done = request => new Promise((resolve, reject) => {
  request.onsuccess = () => resolve(request.result)
  request.onerror = () => reject(request.error)
})

const own = new Set()  // keys locked by this page

/**
 * Locks the key for this page.
 * @param patience  ms to wait for another page to release it
 * @return a function that releases the key; its promise is fulfilled when other pages can lock it
 * @throws EmpTvError if another tab, or this page itself, holds the key
 */
async function lock(key, patience) {
  const {navigator} = globalThis
  if (!navigator?.locks) {
    throw failure(key, "this page can't tell other tabs from itself", new Error('it wants https, localhost or a file'))
  }
  try {
    return await new Promise((resolve, reject) => {
      const given = navigator.locks.request(`emp-window ${key}`, {signal: AbortSignal.timeout(patience)}, () => new Promise(release => {
        own.add(key)
        resolve(() => {
          own.delete(key)
          release()
          return given
        })
      }))
      given.catch(reject)
    })
  } catch (cause) {
    if (cause.name !== 'TimeoutError') throw failure(key, "this page can't lock it", cause)
    const who = own.has(key) ? 'this page has this TV already; close() it' : 'another tab has this TV; close that tab'
    throw new EmpTvError('in use', `persist '${key}': ${who}, or take another key`, {cause})
  }
}

/** Fails if there is no IndexedDB, or the browser does not allow pages to use it. */
function checkThere(key) {
  let isThere
  try {
    isThere = Boolean(globalThis.indexedDB)
  } catch (cause) {
    throw failure(key, "this page can't keep anything in IndexedDB", cause)
  }
  if (!isThere) throw failure(key, 'a TV is kept in browsers alone', new Error('there is no IndexedDB; keep what snapshot() answers'))
}

async function openDatabase(key) {
  try {
    const request = indexedDB.open('emp-window', 1)
    request.onupgradeneeded = () => request.result.createObjectStore(store)
    return await done(request)
  } catch (cause) {
    throw failure(key, "this page can't keep anything in IndexedDB", cause)
  }
}

/** Opens the data stored under a key. */
async function openShelf(key, patience = lockPatience) {
  checkThere(key)
  const release = await lock(key, patience)
  try {
    return new Shelf(key, await openDatabase(key), release)
  } catch (error) {
    release()
    throw error
  }
}

/** The data stored under one key. */
class Shelf {
  #key
  #database
  #release
  #text  // the last saved answer of the set
  #written = Promise.resolve()  // settles with the last transaction
  #failed = false

  constructor(key, database, release) {
    this.#key = key
    this.#database = database
    this.#release = release
  }

  /** The stored snapshot; undefined if there is none. */
  async read() {
    let record
    try {
      record = await done(this.#database.transaction(store).objectStore(store).get(this.#key))
    } catch (cause) {
      throw failure(this.#key, "what is kept can't be read", cause)
    }
    if (record === undefined) return undefined
    if (record?.format !== format) throw this.unusable(record, `its format is ${record?.format}, not ${format}`)
    return record.snapshot
  }

  unusable(snapshot, reason, cause) {
    const message = `persist '${this.#key}': what is kept can't be used: ${reason}. It stays as it is; forgetTv('${this.#key}') removes it`
    return new EmpTvError('kept', message, {cause, reason, snapshot})
  }

  /**
   * Saves the set's data if it has changed: `ask` returns the set's reply to tv.snapshot. The transaction has started
   * when this returns.
   */
  save(ask) {
    try {
      const text = ask()
      if (text === this.#text) return
      this.#text = text
      this.#written = this.#write(JSON.parse(text).result.snapshot)
    } catch (cause) {
      this.#written = Promise.reject(cause)
    }
    this.#written = this.#written.catch(cause => {
      throw failure(this.#key, "the TV can't be saved, what was kept before is still there", cause)
    })
    this.#written.then(() => { this.#failed = false }, error => this.#tell(error))
  }

  /** Fulfilled when all saved data is in the database. */
  written() {
    return this.#written
  }

  async remove() {
    const transaction = this.#database.transaction(store, 'readwrite')
    await done(transaction.objectStore(store).delete(this.#key))
  }

  async close() {
    this.#database.close()
    await this.#release()
  }

  #write(snapshot) {
    return new Promise((resolve, reject) => {
      const transaction = this.#database.transaction(store, 'readwrite')
      transaction.oncomplete = () => resolve()
      transaction.onabort = () => reject(transaction.error ?? new Error('given up'))
      transaction.objectStore(store).put({format, snapshot}, this.#key)
      transaction.commit?.()  // so that closing the page now does not undo it
    })
  }

  #tell(error) {
    this.#text = undefined  // so that saving is tried again
    if (!this.#failed) console.error(`emp-window: ${error.message}`)
    this.#failed = true
  }
}

/** Saves a set soon after each change, and immediately when the page is left. */
class Keeper {
  /** The keeper's own session on the set. */
  session
  #shelf
  #connection
  #timer
  #cost = 0  // duration of the last saving, ms
  #reply  // the set's reply to the last request
  #saveNow = () => this.#save()

  constructor(set, shelf) {
    this.#shelf = shelf
    const {document} = globalThis
    globalThis.addEventListener('pagehide', this.#saveNow)
    document?.addEventListener('visibilitychange', this.#saveNow)
    this.#connection = set.open(text => this.#take(text))
    this.session = JSON.parse(this.#ask('session.open')).result.session
    this.#ask('events.subscribe', {topics})
    this.#save()
  }

  async saved() {
    this.#save()
    await this.#shelf.written()
  }

  async close() {
    try {
      await this.saved()
    } finally {
      clearTimeout(this.#timer)
      globalThis.removeEventListener('pagehide', this.#saveNow)
      globalThis.document?.removeEventListener('visibilitychange', this.#saveNow)
      this.#connection.close()
      await this.#shelf.close()
    }
  }

  #save() {
    clearTimeout(this.#timer)
    this.#timer = undefined
    const start = performance.now()
    this.#shelf.save(() => this.#ask('tv.snapshot'))
    this.#cost = performance.now() - start
  }

  /** Returns the text of the set's reply, which arrives before `send` returns. */
  #ask(method, params = {}) {
    this.#connection.send(JSON.stringify({jsonrpc: '2.0', id: 1, method, params}))
    return this.#reply
  }

  #take(text) {
    if (!text.startsWith('{"jsonrpc":"2.0","method":')) this.#reply = text
    else this.#timer ??= setTimeout(this.#saveNow, Math.max(pause, share * this.#cost))
  }
}

/**
 * Creates a set from the data stored under a key, or a new one if there is none, and persists it from then on.
 * @param make  make(snapshot, unusable) creates the set from the stored snapshot, or a new set if that is undefined;
 *   `unusable(error)` returns the error to throw when the snapshot can't be used
 * @param patience  ms to wait for another page to release the key
 * @return {set, keeper}: `keeper.saved()` saves all changes; `keeper.close()` does so and releases the key, and must be
 *   called before `set.close()`
 */
export async function keepSet(key, make, patience) {
  const shelf = await openShelf(key, patience)
  try {
    const snapshot = await shelf.read()
    const set = make(snapshot, error => shelf.unusable(snapshot, error.reason, error))
    return {set, keeper: new Keeper(set, shelf)}
  } catch (error) {
    await shelf.close()
    throw error
  }
}

/** Removes the data stored under a key. */
export async function forget(key) {
  const shelf = await openShelf(key)
  try {
    await shelf.remove()
  } catch (cause) {
    throw failure(key, "it can't be removed", cause)
  } finally {
    await shelf.close()
  }
}
