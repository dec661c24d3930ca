// SPDX-License-Identifier: MIT
// The time from a tune until the picture of the recording is on screen.
import {mkdtempSync, rmSync} from 'node:fs'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {Console} from '../support/console.js'
import {blue, makeRecording, red, serveRecording} from '../support/film.js'

/** Runs in the page: waits until the left of the main picture has a colour, except for the changes made by coding.
 *  @return the time then */
function untilSeen(wanted) {
  return new Promise(resolve => {
    const look = () => {
      const {canvas} = document.querySelector('emp-picture')
      const [...seen] = canvas.getContext('2d').getImageData(canvas.width / 4, canvas.height / 2, 1, 1).data
      if (wanted.every((part, at) => Math.abs(part - seen[at]) < 48)) resolve(Date.now())
      else requestAnimationFrame(look)
    }
    look()
  })
}

/** The milliseconds from the command to the first picture of the service that it tunes to: the longest of `times`
 *  runs. */
export async function tuneDelay(times = 10) {
  const folder = mkdtempSync(join(tmpdir(), 'emp-window-measure-'))
  try {
    const recording = join(folder, 'two.ts')
    makeRecording(recording)
    const shown = await Console.open({server: await serveRecording(folder, recording)})
    await shown.page.evaluate(untilSeen, red)
    const delays = []
    for (let time = 0; time < times; ++time) {
      const [channel, colour] = time % 2 === 0 ? [2, blue] : [1, red]
      const seen = shown.page.evaluate(untilSeen, colour)
      await shown.page.evaluate(() => 0)  // it looks by now
      const begun = Date.now()
      await shown.tv.window.SetChannel(channel, 0)
      delays.push(await seen - begun)
    }
    await shown.close()
    return Math.max(...delays)
  } finally {
    rmSync(folder, {recursive: true})
  }
}
