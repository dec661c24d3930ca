// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace virtualtv {

/// A plug-in command as the catalogue describes it. Texts are one line each, for people, unless said otherwise.
struct CatalogueCommand {
  struct Parameter {
    std::string name;  ///< one word, as in "index"
    std::string help;
    bool required = false;
    std::string parse;     ///< how its text is read: a key of `Catalogue::parsing`
    std::string unparsed;  ///< the meaning of a text that is not a number: "reads as 0"
    std::string type;      ///< its type: a name that `Catalogue::findType` knows; empty when `values` describes it
    std::string values;    ///< its values in words, with the unit
  };

  struct Failure {
    int code = 0;
    std::string means;
  };

  std::string name;
  std::string help;
  std::vector<Parameter> parameters;
  std::string reply;       ///< kind of reply on success, as in a transcript: "int", "ascii" or "unicode"
  std::string answerKind;  ///< a key of `Catalogue::answers`
  std::string answerHelp;  ///< meaning of the reply
  std::string answerType;  ///< type of the reply, as for a parameter; this and `answerValues` may both be empty
  std::string answerValues;
  std::optional<int> preset;  ///< the reply when there is neither a number nor a failure code
  std::string presetMeans;
  std::vector<Failure> failures;
};

/// The type of a parameter or reply: numbers with meanings, or a document with members.
struct CatalogueType {
  struct Value {
    int from = 0;
    int to = 0;  ///< equal to `from` for one number
    std::string means;
  };

  std::string help;
  std::vector<Value> values;
  std::map<std::string, std::string> members;
};

/// The catalogue of the plug-in's commands, for completion and help. It describes each command, but not how the plug-in
/// carries it out.
class Catalogue {
 public:
  /// Reads a document of the form of docs/commands.json. @throws std::invalid_argument, with a line for a person, when
  /// the document has another form.
  explicit Catalogue(std::string_view document);

  /// All commands, sorted as the plug-in compares names.
  const std::vector<CatalogueCommand>& commands() const { return commands_; }
  auto begin() const { return commands_.begin(); }
  auto end() const { return commands_.end(); }

  /// The commands that take a parameter list. One of them may also be among `commands`, with other parameters.
  const std::vector<CatalogueCommand>& listCommands() const { return listCommands_; }

  /// The command with this name, owned by the catalogue; null when there is none.
  const CatalogueCommand* find(std::string_view name) const;
  /// The same among the commands that take a parameter list.
  const CatalogueCommand* findList(std::string_view name) const;

  /// The type with this name, owned by the catalogue; null when there is none.
  const CatalogueType* findType(std::string_view name) const;

  /// One line of help on each way to read a parameter and each kind of answer, by name.
  const std::map<std::string, std::string>& parsing() const { return parsing_; }
  const std::map<std::string, std::string>& answers() const { return answers_; }

 private:
  std::vector<CatalogueCommand> commands_;
  std::vector<CatalogueCommand> listCommands_;
  std::map<std::string, CatalogueType, std::less<>> types_;
  std::map<std::string, std::string> parsing_;
  std::map<std::string, std::string> answers_;
};

/// The built-in catalogue: docs/commands.json. It lives as long as the program.
const Catalogue& catalogue();
/// Reads the built-in catalogue anew, for callers that need it for a short time only.
Catalogue readCatalogue();

/// The names of the built-in catalogue's commands, in order, and the names of its commands that take a parameter list.
std::vector<std::string> commandNames();
std::vector<std::string> listCommandNames();

}  // namespace virtualtv
