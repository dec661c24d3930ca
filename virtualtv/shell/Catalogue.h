#pragma once

#include <string>
#include <vector>

#include "shell/Lines.h"

namespace virtualtv::shell {

/// A plug-in command as the catalogue describes it.
struct CatalogueCommand {
  struct Parameter {
    std::string name;
    std::string help;
    bool required = false;
  };

  std::string name;
  std::string help;
  std::vector<Parameter> parameters;
  std::string reply;       ///< kind of its reply: "int", "ascii", "unicode"
  std::string answerHelp;  ///< what the reply tells
};

/// The plug-in's commands, in the catalogue's order.
const std::vector<CatalogueCommand>& catalogue();

}  // namespace virtualtv::shell
