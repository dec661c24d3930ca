// SPDX-License-Identifier: MIT
// Posts messages to a set in memory, in Node and in pages, and says what they take: as bench/posted does natively.

const runs = 5
const shortestRun = 20  // ms

/** @return the milliseconds of one post, the average of a run */
function timeOf(set, message) {
  const start = performance.now()
  for (let posts = 1; ; ++posts) {
    set.post(message)
    const time = performance.now() - start
    if (time >= shortestRun) return time / posts
  }
}

/** @param source  the module, as `compile` of the package's module.js takes it, which `module` is */
export async function posterOf(module, source) {
  const set = module.startSet(await module.compile(source))
  return {
    post: message => set.post(message),
    /** What a post takes in nanoseconds, the least of several runs. */
    time: message => 1e6 * Math.min(...Array.from({length: runs}, () => timeOf(set, message))),
    end: () => set.close(),
  }
}
