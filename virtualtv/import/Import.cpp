#include "import/Import.h"

#include <algorithm>
#include <array>

#include "import/Dvbv5.h"
#include "import/Lines.h"
#include "import/Vdr.h"
#include "import/Words.h"

namespace virtualtv::import {

namespace {

struct FormatName {
  Format format;
  std::string_view name;
};

constexpr std::array<FormatName, 2> names{{{Format::vdr, "vdr"}, {Format::dvbv5, "dvbv5"}}};

}  // namespace

std::string_view name(Format format) {
  const auto found =
      std::find_if(names.begin(), names.end(), [&](const auto& known) { return known.format == format; });
  return found == names.end() ? std::string_view() : found->name;
}

std::optional<Format> formatNamed(std::string_view name) {
  const auto found = std::find_if(names.begin(), names.end(), [&](const auto& known) { return known.name == name; });
  if (found == names.end()) return std::nullopt;
  return found->format;
}

/// The first line that only one of the formats has decides.
std::optional<Format> recognise(std::string_view content) {
  bool inSection = false;
  for (Lines lines(content); lines.next();) {
    const std::string_view line = lines.line();
    if (trimmed(line).starts_with('#')) continue;
    if (looksLikeVdr(line)) return Format::vdr;
    if (looksLikeDvbv5Section(line)) inSection = true;
    if (inSection && looksLikeDvbv5Value(line)) return Format::dvbv5;
  }
  return std::nullopt;
}

Result read(std::string_view content, Format format) {
  return format == Format::dvbv5 ? readDvbv5(content) : readVdr(content);
}

}  // namespace virtualtv::import
