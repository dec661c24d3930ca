#include "rpc/Schemas.h"

#include "json/Read.h"

namespace virtualtv::embedded {
extern const std::string_view schemas;
}

namespace virtualtv::rpc {

const Json::Value& namedSchemas() {
  static const Json::Value all = json::read(embedded::schemas);
  return all;
}

}  // namespace virtualtv::rpc
