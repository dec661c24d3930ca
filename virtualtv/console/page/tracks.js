import {h} from './dom.js'
import {Part} from './part.js'

class Tracks extends Part {
  view() {
    return h('p', {class: 'empty'}, 'Not built yet.')
  }
}
customElements.define('emp-tracks', Tracks)
