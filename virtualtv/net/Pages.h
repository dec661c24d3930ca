// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The files that the server offers to browsers.
namespace virtualtv::net {

struct File {
  std::string_view type;  ///< its media type
  std::string_view content;
  std::string_view compressed;  ///< the content compressed by gzip
  std::string policy;           ///< content security policy; empty unless the file is a page
};

/// The file at a path; nothing when there is none. @param origins  the origins whose pages the page at `/` may embed.
std::optional<File> fileAt(std::string_view path, const std::vector<std::string>& origins);

}  // namespace virtualtv::net
