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
    std::string unparsed;  ///< what a text that is no number comes to: "reads as 0"
    std::string type;      ///< what it holds: a name that `Catalogue::findType` knows; empty where `values` says it
    std::string values;    ///< the same in words, with its unit
  };

  struct Failure {
    int code = 0;
    std::string means;
  };

  std::string name;
  std::string help;
  std::vector<Parameter> parameters;
  std::string reply;       ///< of a success, as a transcript shows it: "int", "ascii" or "unicode"
  std::string answerKind;  ///< a key of `Catalogue::answers`
  std::string answerHelp;  ///< what the reply tells
  std::string answerType;  ///< what the reply holds, as of a parameter; this and `answerValues` may both be empty
  std::string answerValues;
  std::optional<int> preset;  ///< the number answered when there is neither a number nor a failure code
  std::string presetMeans;
  std::vector<Failure> failures;
};

/// What parameters and replies hold: numbers with meanings, or a document with members.
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

/// The catalogue of the plug-in's commands, for completion and help. It tells what there is to say of each command, and
/// nothing of how the plug-in carries it out.
class Catalogue {
 public:
  /// Reads a document of the form of docs/commands.json. @throws std::invalid_argument, with a line for a person, when
  /// it is of another.
  explicit Catalogue(std::string_view document);

  /// All commands, in the order in which the plug-in compares names.
  const std::vector<CatalogueCommand>& commands() const { return commands_; }
  auto begin() const { return commands_.begin(); }
  auto end() const { return commands_.end(); }

  /// The commands that take a parameter list. One of them may also be among `commands`, with other parameters.
  const std::vector<CatalogueCommand>& listCommands() const { return listCommands_; }

  /// The command of that name, owned by the catalogue; null when there is none.
  const CatalogueCommand* find(std::string_view name) const;
  /// The same among those that take a parameter list.
  const CatalogueCommand* findList(std::string_view name) const;

  /// The type of that name, owned by the catalogue; null when there is none.
  const CatalogueType* findType(std::string_view name) const;

  /// Ways to read a parameter and kinds of answers: a line on each, by name.
  const std::map<std::string, std::string>& parsing() const { return parsing_; }
  const std::map<std::string, std::string>& answers() const { return answers_; }

 private:
  std::vector<CatalogueCommand> commands_;
  std::vector<CatalogueCommand> listCommands_;
  std::map<std::string, CatalogueType, std::less<>> types_;
  std::map<std::string, std::string> parsing_;
  std::map<std::string, std::string> answers_;
};

/// The catalogue that is built in: docs/commands.json. It stays as long as the program.
const Catalogue& catalogue();
/// The same, for who needs little of it and not for long.
Catalogue readCatalogue();

/// The names of its commands, in their order, and of those that take a parameter list.
std::vector<std::string> commandNames();
std::vector<std::string> listCommandNames();

}  // namespace virtualtv
