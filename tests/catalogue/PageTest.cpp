// SPDX-License-Identifier: MIT
// The catalogue as files: JSON for tools, Markdown for people.
#include "Page.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

Json::Value read(const std::string& text) {
  Json::Value value;
  std::istringstream in(text);
  in >> value;
  return value;
}

const Json::Value catalogued = read(R"({
  "introduction": ["First.", "Second."],
  "parsing": {"dec": "Digits."},
  "answers": {"value": "A number."},
  "types": {
    "input": {"help": "An input.", "values": [{"value": 0, "means": "TV | radio."}, {"value": 5, "to": 7, "means": "HDMI."}]},
    "list": {"help": "A list.", "members": {"name": "Text: the nâme."}}
  },
  "commands": [
    {"name": "Get_Input", "help": "Tells a | b.",
     "parameters": [{"name": "which", "help": "Which one.", "parse": "dec", "required": false, "preset": 0,
                     "unparsed": "reads as 0", "values": "1|2"}],
     "answer": {"kind": "value", "reply": "int", "help": "The input.", "type": "input", "preset": 100,
                "presetMeans": "Unknown."},
     "failures": [{"code": -1, "means": "Not told."}]},
    {"name": "List", "help": "Lists.", "parameters": [], "failures": [],
     "answer": {"kind": "textOrNone", "reply": "ascii", "help": "The list."}}
  ],
  "listCommands": [
    {"name": "List", "help": "Lists by a list.", "failures": [],
     "parameters": [{"name": "each", "help": "Each one.", "parse": "num", "required": true,
                     "unparsed": "gets no answer and does nothing", "values": "any"}],
     "answer": {"kind": "value", "reply": "int", "help": "How many."}}
  ]
})");

const catalogue::Examples examples = {{"Get_Input", "> Get_Input 1\nint 5\n"},
                                      {"List", "> List\nascii a\n"},
                                      {"List with a parameter list", ">+ List 1 2\nint 2\n"}};

TEST(Document, IsTheCatalogueAgain) {
  EXPECT_EQ(read(catalogue::document(catalogued)), catalogued);
}

TEST(Document, HasNoBlanksAtLineEndsAndEndsWithOneLineBreak) {
  const std::string text = catalogue::document(catalogued);
  EXPECT_EQ(text.find(" \n"), std::string::npos);
  EXPECT_TRUE(text.ends_with("}\n"));
  EXPECT_FALSE(text.ends_with("\n\n"));
}

TEST(Document, KeepsCharactersBeyondAscii) {
  EXPECT_NE(catalogue::document(catalogued).find("the nâme"), std::string::npos);
}

TEST(Page, TellsEverythingOfACommand) {
  const std::string page = catalogue::page(catalogued, examples);
  for (const char* line : {
           "First.\n\nSecond.\n",
           "\n| [`Get_Input`](#get_input) | `which` | `int` | Tells a \\| b. |\n",
           "\n| [`List`](#list) | | `ascii` | Lists. |\n",
           "\n- `dec`: Digits.\n",
           "\n- `value`: A number.\n",
           "\n### Get_Input\n\n`Get_Input which`\n\nTells a | b.\n\n",
           "\n| `which` | 1\\|2 | `dec` | reads as 0 | Which one. |\n",
           "\nAnswers `int` (`value`): The input.\n\n- Values: [`input`](#input)\n- Preset `100`: Unknown.\n"
           "- Fails with `int -1`: Not told.\n\n```\n> Get_Input 1\nint 5\n```\n",
           "\n### List\n\n`List`\n\nLists.\n\nAnswers `ascii` (`textOrNone`): The list.\n",
           "\n| [`List`](#list-with-a-parameter-list) with a parameter list | `each` | `int` | Lists by a list. |\n",
           "\n### List with a parameter list\n\n`List each`\n\nLists by a list.\n\n",
           "\n```\n>+ List 1 2\nint 2\n```\n",
           "\n| `each` | any | `num` | gets no answer and does nothing | Each one. |\n",
           "\n### input\n\nAn input.\n",
           "\n| 0 | TV \\| radio. |\n| 5 to 7 | HDMI. |\n",
           "\n### list\n\nA list.\n",
           "\n| `name` | Text: the nâme. |\n",
       }) {
    EXPECT_NE(page.find(line), std::string::npos) << line << "\nis missing in\n" << page;
  }
}

TEST(Page, HasNoBlanksAtLineEndsAndEndsWithOneLineBreak) {
  const std::string page = catalogue::page(catalogued, examples);
  EXPECT_EQ(page.find(" \n"), std::string::npos);
  EXPECT_TRUE(page.ends_with("\n"));
  EXPECT_FALSE(page.ends_with("\n\n"));
}

}  // namespace
