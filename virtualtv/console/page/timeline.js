import {h} from './dom.js'
import {Part} from './part.js'

class Timeline extends Part {
  view() {
    return h('p', {class: 'empty'}, 'Not built yet.')
  }
}
customElements.define('emp-timeline', Timeline)
