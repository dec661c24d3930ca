#include "support/model/Documents.h"

namespace model {

namespace {

/// @param margin  stands before the closing brace.
std::string objectOf(const Members& members, const std::string& margin) {
  std::string text;
  for (const auto& [name, value] : members) {
    text += (text.empty() ? "\n" : ",\n") + margin + "   \"" + name + "\" : " + value;
  }
  return text.empty() ? "{}" : "{" + text + "\n" + margin + "}";
}

}  // namespace

std::string document(const Members& members) {
  return objectOf(members, "") + "\n";
}

std::string arrayOf(const std::vector<Members>& objects) {
  const std::string margin(6, ' ');
  std::string text;
  for (const Members& object : objects) text += (text.empty() ? "\n" : ",\n") + margin + objectOf(object, margin);
  return text.empty() ? "[]" : "[" + text + "\n   ]";
}

}  // namespace model
