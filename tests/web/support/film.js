// SPDX-License-Identifier: MIT
// A recording that plays, and a server whose TV has the services of the recording only.
import assert from 'node:assert/strict'
import {spawnSync} from 'node:child_process'
import {mkdtempSync} from 'node:fs'
import {join} from 'node:path'
import {program, serve} from '../../client/support/server.js'

export const tones = {eng: 440, deu: 880, ita: 660}
export const red = [255, 0, 0]
export const green = [0, 255, 0]
export const blue = [0, 0, 255]

export function run(command, args) {
  const {status, stderr} = spawnSync(command, args, {encoding: 'utf8'})
  assert.equal(status, 0, `${command}: ${stderr}`)
}

/** Writes a recording of two services: one is red with green on its right and has two tones, the other is blue with
 *  a third tone. */
export function makeRecording(path) {
  const seconds = 6
  const input = source => ['-f', 'lavfi', '-i', `${source}:d=${seconds}`]
  const size = 's=640x360:r=25'
  run('ffmpeg', ['-v', 'error', '-f', 'lavfi', '-i', `color=c=0xff0000:${size}:d=${seconds},drawbox=x=iw/2:w=iw/2:color=0x00ff00:t=fill`,
    ...input(`color=c=0x0000ff:${size}`), ...Object.values(tones).flatMap(tone => input(`sine=${tone}`)),
    ...['0:v', '2:a', '3:a', '1:v', '4:a'].flatMap(stream => ['-map', stream]),
    ...['-c:v', 'libx264', '-preset', 'ultrafast', '-pix_fmt', 'yuv420p', '-g', '25', '-c:a', 'mp2'],
    ...Object.keys(tones).flatMap((language, at) => [`-metadata:s:a:${at}`, `language=${language}`]),
    ...['-program', 'title=Red:program_num=1:st=0:st=1:st=2', '-program', 'title=Blue:program_num=2:st=3:st=4', '-f', 'mpegts', path]])
}

/** Starts a server whose TV has the services of a recording. @param folder  for its state */
export function serveRecording(folder, recording) {
  const state = mkdtempSync(join(folder, 'state-'))
  run(program, ['--state', state, 'scan', '--import', recording])
  return serve({state})
}
