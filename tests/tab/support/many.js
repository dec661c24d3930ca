// SPDX-License-Identifier: MIT
// Many TVs in memory, one after another.
import {createTv, installWindow} from './package.js'

/** Creates, uses and closes TVs. @return the memory of the process afterwards, in bytes */
export async function useMany(count) {
  for (let at = 0; at < count; ++at) {
    const tv = await createTv()
    installWindow({}, {tv, name: 'tvWindow'}).GetTVMode()
    await tv.close()
  }
  return process.memoryUsage().rss
}
