// SPDX-License-Identifier: MIT
#include "shell/Reason.h"

#include <new>

#include "set/Knobs.h"
#include "text/UnknownName.h"

namespace virtualtv::shell {

std::string reasonOf(const std::exception_ptr& thrown, const std::string& doing) {
  try {
    std::rethrow_exception(thrown);
  } catch (const std::bad_alloc&) {
    return std::string(notEnoughMemory) + " to " + doing;
  } catch (const text::UnknownName& unknown) {
    return unknown.what() + ("; '.help " + unknown.kind() + "' lists them");
  } catch (const GroupOfKnobs& given) {
    return given.what() + ("; '.get " + given.group() + "' prints them");
  } catch (const std::exception& exception) {
    return exception.what();
  } catch (...) {
    return "an exception of an unknown kind";
  }
}

}  // namespace virtualtv::shell
