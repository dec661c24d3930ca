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
  std::string_view compressed;  ///< the same by gzip
  std::string policy;           ///< what it may load and who may show it; empty where it is no page
};

/// A file that browsers load, by its path; nothing where there is none.
/// @param origins  whose pages the page at `/` may show.
std::optional<File> fileAt(std::string_view path, const std::vector<std::string>& origins);

}  // namespace virtualtv::net
