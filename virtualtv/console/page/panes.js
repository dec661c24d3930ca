// SPDX-License-Identifier: MIT
/** The page's panes, and their places on a wide page. */
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
 * Shows a pane and moves the focus into it. Notifies the pane with the event `emp-show` of the window.
 * @param {string} name @param {object} [more]  what to show in the pane, as in {command: 'SetSource'}
 */
export function showPane(name, more = {}) {
  dispatchEvent(new CustomEvent('emp-show', {detail: {name, ...more}}))
}
