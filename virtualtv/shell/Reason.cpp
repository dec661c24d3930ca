#include "shell/Reason.h"

#include <new>

namespace virtualtv::shell {

std::string reasonOf(const std::exception_ptr& thrown, const std::string& doing) {
  try {
    std::rethrow_exception(thrown);
  } catch (const std::bad_alloc&) {
    return std::string(notEnoughMemory) + " to " + doing;
  } catch (const std::exception& exception) {
    return exception.what();
  } catch (...) {
    return "an exception of an unknown kind";
  }
}

}  // namespace virtualtv::shell
