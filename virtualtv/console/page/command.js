import {h} from './dom.js'
import {Part} from './part.js'

class Command extends Part {
  view() {
    return h('p', {class: 'empty'}, 'Not built yet.')
  }
}
customElements.define('emp-command', Command)
