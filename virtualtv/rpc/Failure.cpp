// SPDX-License-Identifier: MIT
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

constexpr std::size_t longestReason = 4096;
constexpr std::size_t longestName = 200;

}  // namespace

std::string nameShown(std::string_view name) {
  std::string shown = text::shortened(name, longestName);
  for (std::size_t at = shown.find('\0'); at != shown.npos; at = shown.find('\0')) shown.replace(at, 1, "\xEF\xBF\xBD");
  return shown;
}

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
  } catch (const Json::RuntimeError&) {
    // jsoncpp reports other errors like this too, but `json::check` finds those before jsoncpp reads a message.
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
  error["data"] = failure.data;
  error["data"]["reason"] = text::shortened(text::asLine(failure.what()), longestReason);
  return error;
}

}  // namespace virtualtv::rpc
