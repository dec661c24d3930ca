// SPDX-License-Identifier: MIT
// Posts messages to a set in memory, in Node and in pages, and measures the time as bench/posted does natively.

const runs = 5
const shortestRun = 20  // ms

/** @return the average time of a post in one run, in milliseconds */
function timeOf(set, message) {
  const start = performance.now()
  for (let posts = 1; ; ++posts) {
    set.post(message)
    const time = performance.now() - start
    if (time >= shortestRun) return time / posts
  }
}

/** @param module  the exports of the package's module.js  @param source  the module, in a form that its `compile`
 *  accepts */
export async function posterOf(module, source) {
  const set = module.startSet(await module.compile(source))
  return {
    post: message => set.post(message),
    /** The time of a post in nanoseconds: the least of several runs. */
    time: message => 1e6 * Math.min(...Array.from({length: runs}, () => timeOf(set, message))),
    end: () => set.close(),
  }
}
