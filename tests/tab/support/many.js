// SPDX-License-Identifier: MIT
// Many TVs in memory, one after the other.
import {createTv, installWindow} from './package.js'

/** Makes, uses and closes TVs. @return the bytes that the process then takes */
export async function useMany(count) {
  for (let at = 0; at < count; ++at) {
    const tv = await createTv()
    installWindow({}, {tv, name: 'tvWindow'}).GetTVMode()
    await tv.close()
  }
  return process.memoryUsage().rss
}
