// SPDX-License-Identifier: MIT
// The table of figures, for a terminal and for the page about them.

/** @param rows  {what, is, wanted, unit, detail}: a figure is missed if it exceeds its target */
export const missed = rows => rows.filter(({is, wanted}) => is > wanted)

const shown = (number, unit) => `${number >= 100 ? number.toFixed(0) : Number(number.toPrecision(3))}${unit ? ` ${unit}` : ''}`

/** @return lines of Markdown */
export function tableOf(rows) {
  const cells = rows.map(({what, is, wanted, unit, detail = ''}) =>
    [what, shown(is, unit), detail, `<= ${shown(wanted, unit)}`, is > wanted ? 'MISSED' : ''])
  const head = ['Figure', 'Is', 'Measured', 'Wanted', '']
  return [head, head.map(() => '---'), ...cells].map(line => `| ${line.join(' | ')} |`)
}
