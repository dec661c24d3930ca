// SPDX-License-Identifier: MIT
/*
 * The services that meet a query, fetched by pages as they are looked at. One page is asked for at a time, and always one
 * that is in sight, so that fast scrolling and typing cost no more than what is seen in the end.
 */
import {tv} from './act.js'

const pageSize = 100

export class ServicePages {
  /** How many there are; undefined until that is known. @type {number | undefined} */
  total
  /** Why they could not be fetched. @type {string | undefined} */
  failure
  /** Names of all groups of the set. @type {string[]} */
  groups = []
  /** @type {any} */
  #query = {}
  /** Pages are of a version; those before the present one are shown until they are fetched again. */
  #version = 0
  #queryVersion = 0
  /** @type {Map<number, {version: number, services: any[]}>} */
  #pages = new Map()
  #range = [0, 1]
  #isAsking = false
  #onchange

  /** @param {() => void} onchange  called when there is more to show */
  constructor(onchange) {
    this.#onchange = onchange
  }

  /** Looks for other services. @param {any} query  as `tv.services` takes it */
  find(query) {
    this.#query = query
    this.#queryVersion = ++this.#version
    this.#range = [0, 1]
    this.#fetchSeen()
  }

  /** Fetches anew what is seen, since the services have changed. */
  refresh() {
    ++this.#version
    this.#fetchSeen()
  }

  /** A service, undefined until it is known. @param {number} at */
  at(at) {
    return this.#pages.get(Math.floor(at / pageSize))?.services[at % pageSize]
  }

  /** Where a service stands among those that are known; -1 where it is not one of them. @param {number} key */
  indexOf(key) {
    for (const [page, {services}] of this.#pages) {
      const at = services.findIndex(service => service.key === key)
      if (at >= 0) return page * pageSize + at
    }
    return -1
  }

  /** Says which are in sight. @param {number} from @param {number} to  the one behind the last */
  want(from, to) {
    this.#range = [from, to]
    this.#fetchSeen()
  }

  /** The first page in sight that has to be fetched. @return {number | undefined} */
  #missing() {
    const [from, to] = this.#range
    for (let page = Math.floor(from / pageSize); page * pageSize < Math.max(to, from + 1); ++page) {
      if (this.#pages.get(page)?.version !== this.#version) return page
    }
    return undefined
  }

  async #fetchSeen() {
    if (this.#isAsking) return
    this.#isAsking = true
    try {
      for (let page = this.#missing(); page !== undefined; page = this.#missing()) await this.#fetch(page)
      this.failure = undefined
    } catch (error) {
      this.failure = /** @type {Error} */ (error).message
      this.#onchange()
    } finally {
      this.#isAsking = false
    }
  }

  /** @param {number} page */
  async #fetch(page) {
    const version = this.#version
    const {total, groups, services} = await tv().services({...this.#query, offset: page * pageSize, limit: pageSize})
    if (version < this.#queryVersion) return
    // The first answer to another query: what was shown until now is of the one before.
    const isOther = [...this.#pages.values()].some(known => known.version < this.#queryVersion)
    if (isOther) this.#pages.clear()
    this.total = total
    this.groups = groups
    this.#pages.set(page, {version, services})
    this.#onchange()
  }
}
