// SPDX-License-Identifier: MIT
/*
 * The services that match a query, fetched in pages when they become visible. Only one visible page is requested at a
 * time, so that fast scrolling and typing cost no more than what is finally visible.
 */
import {tv} from './act.js'

const pageSize = 100

export class ServicePages {
  /** The number of services; undefined until known. @type {number | undefined} */
  total
  /** Why they could not be fetched. @type {string | undefined} */
  failure
  /** Names of all groups of the set. @type {string[]} */
  groups = []
  /** @type {any} */
  #query = {}
  /** The current version of pages; older pages are shown until they are fetched again. */
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

  /** Sets another query. @param {any} query  parameters of `tv.services` */
  find(query) {
    this.#query = query
    this.#queryVersion = ++this.#version
    this.#range = [0, 1]
    this.#fetchSeen()
  }

  /** Fetches the visible services again, since they have changed. */
  refresh() {
    ++this.#version
    this.#fetchSeen()
  }

  /** A service, undefined until it is known. @param {number} at */
  at(at) {
    return this.#pages.get(Math.floor(at / pageSize))?.services[at % pageSize]
  }

  /** The position of a service among the known ones; -1 if it is not known. @param {number} key */
  indexOf(key) {
    for (const [page, {services}] of this.#pages) {
      const at = services.findIndex(service => service.key === key)
      if (at >= 0) return page * pageSize + at
    }
    return -1
  }

  /** Sets the visible range. @param {number} from @param {number} to  position after the last */
  want(from, to) {
    this.#range = [from, to]
    this.#fetchSeen()
  }

  /** The first visible page to fetch. @return {number | undefined} */
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
    // This is the first answer to a new query, so the known pages belong to the previous query.
    const isOther = [...this.#pages.values()].some(known => known.version < this.#queryVersion)
    if (isOther) this.#pages.clear()
    this.total = total
    this.groups = groups
    this.#pages.set(page, {version, services})
    this.#onchange()
  }
}
