// SPDX-License-Identifier: MIT
/** The page's panes, and where they stand while there is room. */
export const panes = [
  {name: 'Screen', tag: 'emp-screen', place: 'screen'},
  {name: 'Remote control', tag: 'emp-remote', place: 'left'},
  {name: 'Inputs', tag: 'emp-inputs', place: 'left'},
  {name: 'Channels', tag: 'emp-channels', place: 'right'},
  {name: 'Tracks', tag: 'emp-tracks', place: 'right'},
  {name: 'Planes', tag: 'emp-planes', place: 'right'},
  {name: 'Faults', tag: 'emp-faults', place: 'right'},
  {name: 'App', tag: 'emp-app', place: 'right'},
  {name: 'Set', tag: 'emp-set', place: 'right'},
  {name: 'Timeline', tag: 'emp-timeline', place: 'below'},
  {name: 'Command', tag: 'emp-command', place: 'below'},
]

/**
 * Brings a pane into sight and the focus into it. The pane hears of it too, by the event `emp-show` of the window.
 * @param {string} name @param {object} [more]  what it is to show there, as {command: 'SetSource'}
 */
export function showPane(name, more = {}) {
  dispatchEvent(new CustomEvent('emp-show', {detail: {name, ...more}}))
}
