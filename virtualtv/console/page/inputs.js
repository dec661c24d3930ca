import {h} from './dom.js'
import {Part} from './part.js'

class Inputs extends Part {
  view() {
    return h('p', {class: 'empty'}, 'Not built yet.')
  }
}
customElements.define('emp-inputs', Inputs)
