#include "net/Pages.h"

#include <array>
#include <cstddef>

namespace virtualtv::embedded {

extern const std::string_view frontPage;
// NOLINTBEGIN(readability-identifier-naming): named after their files
extern const std::string_view client_js;
extern const std::string_view window_js;
extern const std::string_view transcript_js;
extern const std::string_view client_d_ts;
extern const std::string_view commands_d_ts;
extern const std::string_view transcript_d_ts;
// NOLINTEND(readability-identifier-naming)

}  // namespace virtualtv::embedded

namespace virtualtv::net {

std::optional<File> fileAt(std::string_view path) {
  constexpr std::string_view script = "text/javascript; charset=utf-8";
  constexpr std::string_view typings = "text/plain; charset=utf-8";
  struct Place {
    std::string_view path;
    File file;
  };
  const std::array places{
      Place{"/client.js", {script, embedded::client_js}},
      Place{"/window.js", {script, embedded::window_js}},
      Place{"/transcript.js", {script, embedded::transcript_js}},
      Place{"/client.d.ts", {typings, embedded::client_d_ts}},
      Place{"/commands.d.ts", {typings, embedded::commands_d_ts}},
      Place{"/transcript.d.ts", {typings, embedded::transcript_d_ts}},
  };
  for (const Place& place : places) {
    if (place.path == path) return place.file;
  }
  return std::nullopt;
}

std::string frontPage(std::string_view host) {
  constexpr std::string_view mark = "HOST";
  std::string page(embedded::frontPage);
  for (std::size_t at = page.find(mark); at != std::string::npos; at = page.find(mark, at + host.size())) {
    page.replace(at, mark.size(), host);
  }
  return page;
}

std::string policyOf(const std::vector<std::string>& origins) {
  std::string frames = "frame-src 'self'";
  for (const std::string& origin : origins) frames += " " + origin;
  return "default-src 'self'; media-src 'self' blob:; " + frames +
         "; frame-ancestors 'none'; object-src 'none'; base-uri 'none'; form-action 'none'";
}

}  // namespace virtualtv::net
