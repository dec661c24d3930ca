#include "rpc/Failure.h"

#include <new>

#include "rpc/Server.h"
#include "text/Units.h"
#include "text/UnknownName.h"

namespace virtualtv::rpc {

namespace {

const char* messageOf(Code code) {
  switch (code) {
    case Code::notJson:
      return "Parse error";
    case Code::notARequest:
      return "Invalid Request";
    case Code::noSuchMethod:
      return "Method not found";
    case Code::badParameters:
      return "Invalid params";
    case Code::internal:
      return "Internal error";
    case Code::unreadable:
      return "The set can't read or keep something";
    case Code::badValue:
      return "The set does not take this";
    case Code::noSuchSession:
      return "No such session";
  }
  return "";
}

}  // namespace

Failure currentFailure(const std::string& doing) {
  try {
    throw;
  } catch (const Failure& failure) {
    return failure;
  } catch (const NoSuchSession& error) {
    return {Code::noSuchSession, error.what()};
  } catch (const text::UnknownName& error) {
    return {Code::badValue, error.what() + ("; tv." + error.kind() + " lists them")};
  } catch (const std::invalid_argument& error) {
    return {Code::badValue, error.what()};
  } catch (const std::bad_alloc&) {
    return {Code::internal, "not enough memory to run " + doing};
  } catch (const std::runtime_error& error) {
    return {Code::unreadable, error.what()};
  } catch (const std::exception& error) {
    return {Code::internal, error.what()};
  } catch (...) {
    return {Code::internal, "an exception of an unknown kind"};
  }
}

Json::Value errorOf(const Failure& failure) {
  Json::Value error;
  error["code"] = static_cast<int>(failure.code);
  error["message"] = messageOf(failure.code);
  error["data"]["reason"] = text::printable(failure.what());
  return error;
}

}  // namespace virtualtv::rpc
