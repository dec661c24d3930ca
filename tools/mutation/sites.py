# SPDX-License-Identifier: MIT
"""Finds where the plug-in's sources can be changed, and how, in the compiler's syntax tree."""

import json
import re
import subprocess
from dataclasses import dataclass, field

# The replacements of operators. If the first of a pair decides a branch, the change equals the negated condition.
SWAPPED = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&", "+": "-",
           "-": "+", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "^": "&", "<<": ">>", ">>": "<<", "+=": "-=",
           "-=": "+=", "*=": "/=", "/=": "*=", "|=": "&=", "&=": "|=", "<<=": ">>=", ">>=": "<<="}
OVERLOADED = {"operator==": "==", "operator!=": "!=", "operator<": "<", "operator>": ">"}
STEPPED = {"++": "--", "--": "++"}

# Nodes with constants that the compiler needs, and nodes that represent others.
PASSED_OVER = {"ConstantExpr", "StaticAssertDecl", "EnumDecl", "PredefinedExpr", "NonTypeTemplateParmDecl",
               "CXXDefaultArgExpr", "CXXDefaultInitExpr", "ImplicitValueInitExpr", "UnaryExprOrTypeTraitExpr"}
LITERALS = {"IntegerLiteral", "FloatingLiteral", "CharacterLiteral", "CXXBoolLiteralExpr", "StringLiteral"}
INTEGER = re.compile(r"^(0[xX][0-9a-fA-F']+|[0-9][0-9']*)([uUlL]*)$")
TEMPLATE_NUMBER = re.compile(r"^(\w+)<(-?\d+)>$")
NEEDING = re.compile(r"\b\w+<([^<>;()]*)>|\[([^][]*)\]")  # template arguments, and sizes of arrays
WRAPPERS = {"ParenExpr", "ImplicitCastExpr", "ExprWithCleanups", "CXXBindTemporaryExpr", "MaterializeTemporaryExpr"}


@dataclass
class Mutant:
    """One change. Texts are those of the source; `number` selects it, from 1 on."""

    file: str
    line: int
    column: int
    before: str
    after: str
    is_table: bool  # part of one of the converter's tables
    number: int = 0

    @property
    def where(self):
        return f"{self.file}:{self.line}:{self.column}"

    @property
    def change(self):
        return f"{self.before} -> {self.after}"


@dataclass
class Site:
    """A stretch of a source and its possible replacements: one of several texts; a switch's value with one label
    hidden; or, for the head of a constant's declaration, the head of a constant that is computed at start."""

    begin: int
    end: int
    rank: int  # among sites of the same stretch, the lowest is outermost
    variants: list  # pairs of (replacement, description)
    labels: list = field(default_factory=list)
    variable: str = ""  # the variable whose value contains this site
    constant: str = ""  # the constant declared here
    is_inline: bool = False  # true also for constants declared in a class, which are implicitly inline
    inside: list = field(default_factory=list)

    @property
    def is_table(self):
        """True in the tables of the converter."""
        return self.variable.startswith("m_st") or self.variable == "kSatelliteModes"


def parse(source, top, includes):
    """The nodes of a source in the plug-in's namespace, each a dictionary that includes its file."""
    flags = ["-std=c++17", "-fsyntax-only", "-w", *[f"-I{folder}" for folder in includes]]
    dump = subprocess.run(["clang++-19", *flags, "-Xclang", "-ast-dump=json", "-Xclang", "-ast-dump-filter=kel", source],
                          cwd=top, capture_output=True, text=True, check=True).stdout
    decoder, at, last = json.JSONDecoder(), 0, [None]
    while at < len(dump):
        node, at = decoder.raw_decode(dump, at)
        complete(node, last)
        yield node
        while at < len(dump) and dump[at].isspace():
            at += 1


def complete(node, last):
    """Writes the file into each location; the dump contains it only where it changes."""
    if isinstance(node, list):
        for part in node:
            complete(part, last)
    elif isinstance(node, dict):
        if "offset" in node:
            last[0] = node.setdefault("file", last[0])
        for part in node.values():
            if isinstance(part, (dict, list)):
                complete(part, last)


def place(location, of_literal):
    """File, offset and length of the token at a location; None for a token from a macro."""
    if "spellingLoc" in location:
        if not of_literal and not location["expansionLoc"].get("isMacroArgExpansion"):
            return None
        location = location["spellingLoc"]
    return (location["file"], location["offset"], location["tokLen"]) if "offset" in location else None


class Finder:
    """Finds the sites of one source and of the headers that belong to it."""

    def __init__(self, texts):
        self.texts = texts  # by file
        self.found = {}  # by file, begin, end and rank
        self.constants = set()  # names of constants computed by the compiler
        self.needed = set()  # the subset of these that the compiler needs
        self.variable = ""  # the variable whose initialiser is being visited

    def span(self, node):
        """File, begin and end of a node's text, or None."""
        begin, end = node.get("range", {}).get("begin"), node.get("range", {}).get("end")
        if not begin or not end:
            return None
        of_literal = node["kind"] in LITERALS
        first, last = place(begin, of_literal), place(end, of_literal)
        if not first or not last or first[0] != last[0] or first[0] not in self.texts:
            return None
        span = first[0], first[1], last[1] + last[2]
        return span if span[1] < span[2] else None

    def text(self, node):
        """A node's text in one line, or None."""
        span = self.span(node)
        if span is None:
            return None
        text = self.texts[span[0]][span[1]:span[2]]
        return None if "//" in text and "\n" in text else re.sub(r"\s*\n\s*", " ", text)

    def add(self, node, rank, variants=(), labels=()):
        span = self.span(node)
        if span is None or self.text(node) is None:
            return
        self.found.setdefault((*span, rank), Site(span[1], span[2], rank, list(variants), list(labels), self.variable))

    def walk(self, node):
        kind = node.get("kind")
        if kind == "ConstantExpr":
            self.need(node)
        if kind is None or kind in PASSED_OVER or node.get("isImplicit"):
            return
        outer = self.variable
        if kind == "VarDecl":
            self.variable = node.get("name", "")
            self.note_constant(node)
        look = getattr(self, f"see_{kind}", None)
        if kind in LITERALS:
            self.see_literal(node)
        elif look:
            look(node)
        for part in self.parts(node):
            self.walk(part)
        self.variable = outer

    @staticmethod
    def parts(node):
        """The children of a node, without those that the compiler generates."""
        parts = node.get("inner", [])
        return [parts[1], *parts[-2:]] if node["kind"] == "CXXForRangeStmt" else parts

    def need(self, node):
        """Records the constants that are part of a constant that the compiler needs."""
        if "referencedDecl" in node:
            self.needed.add(node["referencedDecl"].get("name"))
        for part in node.get("inner", []):
            self.need(part)

    def see_VarTemplateDecl(self, node):
        # Computed at start, its instances would be initialised in another order than in the source.
        self.needed.add(node["name"])

    def see_ClassTemplateDecl(self, node):
        # The same holds for static members of its instances.
        pattern = next(part for part in node["inner"] if part["kind"] == "CXXRecordDecl")
        self.needed |= {part["name"] for part in pattern.get("inner", []) if part["kind"] == "VarDecl"}

    def note_constant(self, node):
        span, name = self.span(node), place(node.get("loc", {}), False)
        if node.get("constexpr") and span and name and name[0] == span[0]:
            self.constants.add(node["name"])
            head = (span[0], span[1], name[1], 0)
            is_inline = node.get("inline", False)
            self.found.setdefault(head, Site(*head[1:], [], constant=node["name"], is_inline=is_inline))

    def see_literal(self, node):
        text = self.text(node)
        if text is None:
            return
        if node["kind"] == "StringLiteral":
            at = text.find('"')
            changed = [text[:at + 1] + "~" + text[at + 1:]] if at >= 0 else []
        elif node["kind"] == "CXXBoolLiteralExpr":
            changed = [{"true": "false", "false": "true"}[text]] if text in ("true", "false") else []
        elif node["kind"] == "IntegerLiteral":
            number = INTEGER.match(text)
            changed = [f"{int(number[1].replace(chr(39), ''), 0) + 1}{number[2]}"] if number else []
        else:
            changed = [f"{text} + 1"]
        self.add(node, 3, [(other, other) for other in changed])

    def see_DeclRefExpr(self, node):
        if node.get("referencedDecl", {}).get("kind") == "EnumConstantDecl":
            text = self.text(node)
            self.add(node, 3, [(f"static_cast<decltype({text})>(static_cast<int>({text}) + 1)", f"{text} + 1")])
        number = TEMPLATE_NUMBER.match(self.text(node) or "")
        if number:
            other = f"{number[1]}<{int(number[2]) + 1}>"
            self.add(node, 3, [(other, other)])

    def operator(self, node, operator, operands):
        left, right = [self.text(operand) for operand in operands]
        if operator in SWAPPED and left and right:
            other = SWAPPED[operator]
            self.add(node, 2, [(f"{left} {other} {right}", f"{left} {other} {right}")])

    def see_BinaryOperator(self, node):
        self.operator(node, node["opcode"], node["inner"])

    see_CompoundAssignOperator = see_BinaryOperator

    def see_CXXOperatorCallExpr(self, node):
        callee = node["inner"][0]
        while callee.get("inner"):
            callee = callee["inner"][0]
        operator = OVERLOADED.get(callee.get("referencedDecl", {}).get("name"))
        if operator and len(node["inner"]) == 3:
            self.operator(node, operator, node["inner"][1:])

    def see_UnaryOperator(self, node):
        text, opcode = self.text(node), node["opcode"]
        operand = self.text(node["inner"][0])
        if text is None or operand is None:
            return
        if opcode == "!":
            self.add(node, 2, [(f"static_cast<bool>({operand})", operand)])
        elif opcode in STEPPED:
            other = operand + STEPPED[opcode] if node.get("isPostfix") else STEPPED[opcode] + operand
            self.add(node, 2, [(other, other)])

    def condition(self, node):
        """Negates a condition, unless a change of its operator has the same effect."""
        core = node
        while core.get("kind") in WRAPPERS and core.get("inner"):
            core = core["inner"][0]
        if core.get("opcode") in ("==", "!=", "!") or core.get("kind") in ("CXXBoolLiteralExpr", "CXXOperatorCallExpr"):
            return
        text = self.text(node)
        if text:
            self.add(node, 1, [(f"!({text})", f"!({text})")])

    def see_IfStmt(self, node):
        if not node.get("hasVar") and not node.get("isConstexpr"):
            self.condition(node["inner"][1 if node.get("hasInit") else 0])

    def see_WhileStmt(self, node):
        if not node.get("hasVar"):
            self.condition(node["inner"][0])

    def see_ConditionalOperator(self, node):
        self.condition(node["inner"][0])

    def see_ForStmt(self, node):
        if node["inner"][2].get("kind"):
            self.condition(node["inner"][2])

    def see_SwitchStmt(self, node):
        labels = []
        collect_labels(node["inner"][-1], labels)
        texts = [self.text(label) for label in labels]
        self.add(node["inner"][-2], 0, labels=[text for text in texts if text])


def collect_labels(node, labels):
    if node.get("kind") == "CaseStmt":
        labels.append(node["inner"][0])
    for part in node.get("inner", []):
        if part.get("kind") != "SwitchStmt":
            collect_labels(part, labels)


def find(top, sources, headers, includes):
    """The nested sites of sources and headers by file, the texts, the names of constants, and the names of constants
    that the compiler needs."""
    texts = {name: (top / name).read_text(encoding="utf-8") for name in [*sources, *headers]}
    finder = Finder(texts)
    for source in sources:
        for node in parse(source, top, includes):
            finder.walk(node)
    for text in texts.values():
        finder.needed |= {name for found in NEEDING.findall(text) for name in re.findall(r"\w+", " ".join(found))}
    by_file = {name: [] for name in texts}
    for (name, *_), site in finder.found.items():
        by_file[name].append(site)
    return texts, {name: nest(sites) for name, sites in by_file.items()}, finder.constants, finder.needed & finder.constants


def nest(sites):
    """Sites as a forest. A site that partially overlaps another one is left out."""
    roots, stack = [], []
    for site in sorted(sites, key=lambda site: (site.begin, -site.end, site.rank)):
        while stack and stack[-1].end <= site.begin:
            stack.pop()
        if stack and site.end > stack[-1].end:
            continue
        (stack[-1].inside if stack else roots).append(site)
        stack.append(site)
    return roots
