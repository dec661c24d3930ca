import {h} from './dom.js'
import {Part} from './part.js'

class App extends Part {
  view() {
    return h('p', {class: 'empty'}, 'Not built yet.')
  }
}
customElements.define('emp-app', App)
