#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What the server has to show in a browser.
namespace virtualtv::net {

struct File {
  std::string_view type;  ///< its media type
  std::string_view content;
};

/// A file that clients load, by its path; nothing where there is none.
std::optional<File> fileAt(std::string_view path);

/// The page at `/`. @param host  as the request calls this server, port included; nothing in it needs an escape.
std::string frontPage(std::string_view host);

/// What that page may load and who may show it. @param origins  whose pages it may show.
std::string policyOf(const std::vector<std::string>& origins);

}  // namespace virtualtv::net
