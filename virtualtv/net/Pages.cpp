// SPDX-License-Identifier: MIT
#include "net/Pages.h"

#include <array>
#include <span>

namespace virtualtv::embedded {

using Entry = std::array<std::string_view, 3>;  // path, content, the same by gzip
using Files = std::span<const Entry>;
extern const Files clientFiles;
extern const Files pageFiles;

}  // namespace virtualtv::embedded

namespace virtualtv::net {

namespace {

constexpr std::string_view pageFolder = "/page/";
/// The path of the apps that are part of the page, which shows them in frames.
constexpr std::string_view apps = "/page/apps/";

std::string_view typeOf(std::string_view name) {
  constexpr std::array<std::array<std::string_view, 2>, 5> types{{
      {".html", "text/html; charset=utf-8"},
      {".css", "text/css; charset=utf-8"},
      {".js", "text/javascript; charset=utf-8"},
      {".svg", "image/svg+xml"},
      {".ts", "text/plain; charset=utf-8"},
  }};
  for (const auto& [ending, type] : types) {
    if (name.ends_with(ending)) return type;
  }
  return "application/octet-stream";
}

/// The content security policy of a page.
std::string policyOf(std::string_view path, const std::vector<std::string>& origins) {
  std::string frames = "frame-src 'self'";
  for (const std::string& origin : origins) frames += " " + origin;
  const std::string ancestors = path.starts_with(apps) ? "'self'" : "'none'";
  return "default-src 'self'; media-src 'self' blob:; " + frames + "; frame-ancestors " + ancestors +
         "; object-src 'none'; base-uri 'none'; form-action 'none'";
}

const embedded::Entry* find(const embedded::Files& files, std::string_view name) {
  for (const embedded::Entry& entry : files) {
    if (entry[0] == name) return &entry;
  }
  return nullptr;
}

const embedded::Entry* entryAt(std::string_view path) {
  if (path == "/") return find(embedded::pageFiles, "index.html");
  if (path.starts_with(pageFolder)) return find(embedded::pageFiles, path.substr(pageFolder.size()));
  return find(embedded::clientFiles, path.substr(path.starts_with('/') ? 1 : 0));
}

}  // namespace

std::optional<File> fileAt(std::string_view path, const std::vector<std::string>& origins) {
  const embedded::Entry* const entry = entryAt(path);
  if (entry == nullptr) return std::nullopt;
  const auto& [name, content, compressed] = *entry;
  const std::string_view type = typeOf(name);
  const bool isPage = type == typeOf(".html");
  return File{type, content, compressed, isPage ? policyOf(path, origins) : std::string()};
}

}  // namespace virtualtv::net
