import {h} from './dom.js'
import {Part} from './part.js'

class Channels extends Part {
  view() {
    return h('p', {class: 'empty'}, 'Not built yet.')
  }
}
customElements.define('emp-channels', Channels)
