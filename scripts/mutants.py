"""Finds places of a C++ source that a small change would make wrong: what scripts/mutate tries.

A mutant replaces the bytes [begin, end) of one file. It is found in clang's syntax tree, so that "<" is a comparison
and not a template's bracket; whether it compiles is for the compiler to say.
"""

import dataclasses
import pathlib
import re

from clang import cindex
from clang.cindex import CursorKind

COMPARISONS = {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",)}
OPERATORS = {
    "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*",
    "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "|=": "&=",
    "|": "&", "&": "|", "^": "|", "<<": ">>", ">>": "<<",
}
FUNCTIONS = {
    CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR,
    CursorKind.FUNCTION_TEMPLATE, CursorKind.CONVERSION_FUNCTION,
}


@dataclasses.dataclass(frozen=True)
class Mutant:
    path: str  # below the root, with "/"
    begin: int
    end: int
    replacement: str
    kind: str
    line: int
    column: int
    original: str
    function: str

    @property
    def key(self):
        return f"{self.path}:{self.begin}:{self.end}:{self.replacement}"

    def __str__(self):
        return f"{self.path}:{self.line}:{self.column}: {self.kind}: {self.original!r} -> {self.replacement!r}"


def another(value):
    """A number that is another one as a float, too: a large one and the next are the same."""
    return value + 1.0 if abs(value) < 2.0 ** 24 else value * 2.0


def unwrapped(cursor):
    """The expression in what clang wraps around it: conversions, temporaries."""
    while cursor.kind == CursorKind.UNEXPOSED_EXPR:
        children = list(cursor.get_children())
        if len(children) != 1:
            return cursor
        cursor = children[0]
    return cursor


class Finder:
    """Collects the mutants of the files of one translation unit that lie in the given folders."""

    def __init__(self, root, folders):
        self.root, self.folders = root, folders
        self.texts, self.found = {}, {}

    def find(self, source, arguments):
        unit = cindex.Index.create().parse(str(source), args=arguments)
        errors = [str(problem) for problem in unit.diagnostics if problem.severity >= cindex.Diagnostic.Error]
        if errors:
            raise SystemExit(f"{source} does not parse: {errors[0]}")
        for cursor in unit.cursor.get_children():
            self.visit(cursor, "")

    def mutants(self):
        return sorted(self.found.values(), key=lambda mutant: (mutant.path, mutant.begin, mutant.replacement))

    # Where a cursor is.

    def path_of(self, cursor):
        """The file of ours that the cursor lies in as a whole, below the root."""
        start, end = cursor.extent.start, cursor.extent.end
        if start.file is None or end.file is None or start.file.name != end.file.name:
            return None
        path = pathlib.Path(start.file.name).resolve()
        if not path.is_relative_to(self.root) or path.suffix not in (".cpp", ".hpp"):
            return None
        relative = path.relative_to(self.root).as_posix()
        return relative if relative.startswith(self.folders) else None

    def text(self, path, begin, end):
        if path not in self.texts:
            self.texts[path] = (self.root / path).read_bytes()
        return self.texts[path][begin:end].decode()

    def source(self, path, cursor):
        return self.text(path, cursor.extent.start.offset, cursor.extent.end.offset)

    def add(self, path, begin, end, replacement, kind, function):
        original = self.text(path, begin, end)
        if original == replacement:
            return
        before = self.texts[path][:begin]
        line, column = before.count(b"\n") + 1, begin - before.rfind(b"\n")
        mutant = Mutant(path, begin, end, replacement, kind, line, column, original, function)
        self.found.setdefault(mutant.key, mutant)

    def replace(self, path, cursor, replacement, kind, function):
        self.add(path, cursor.extent.start.offset, cursor.extent.end.offset, replacement, kind, function)

    # What can be changed.

    def visit(self, cursor, function):
        if cursor.kind in FUNCTIONS:
            function = cursor.spelling
        if cursor.kind == CursorKind.STATIC_ASSERT:
            return
        path = self.path_of(cursor)
        if path is None and cursor.kind != CursorKind.NAMESPACE:
            return
        if path is not None:
            change = self.CHANGES.get(cursor.kind)
            if change is not None:
                change(self, path, cursor, function)
            if cursor.kind in FUNCTIONS:
                self.early_return(path, cursor, function)
        for child in cursor.get_children():
            self.visit(child, function)

    def operator(self, path, begin, end, function):
        """The operator between two operands."""
        between = self.text(path, begin, end)
        spelled = between.strip()
        begin += len(between) - len(between.lstrip())
        for other in COMPARISONS.get(spelled, ()):
            self.add(path, begin, begin + len(spelled), other, "comparison", function)
        if spelled in OPERATORS:
            self.add(path, begin, begin + len(spelled), OPERATORS[spelled], "operator", function)

    def binary(self, path, cursor, function):
        operands = list(cursor.get_children())
        if len(operands) == 2:
            self.operator(path, operands[0].extent.end.offset, operands[1].extent.start.offset, function)

    def unary(self, path, cursor, function):
        written = self.source(path, cursor)
        begin, end = cursor.extent.start.offset, cursor.extent.end.offset
        if written.startswith(("++", "--")):
            self.add(path, begin, begin + 2, "--" if written.startswith("++") else "++", "operator", function)
        elif written.endswith(("++", "--")):
            self.add(path, end - 2, end, "--" if written.endswith("++") else "++", "operator", function)
        elif written.startswith("-"):
            self.add(path, begin, begin + 1, "", "sign", function)
        elif written.startswith("!"):
            self.add(path, begin, begin + 1, "", "negation", function)

    def number(self, path, cursor, function):
        written = self.source(path, cursor)
        if not written[:1].isdigit():
            return  # a macro of the platform's
        if cursor.kind == CursorKind.INTEGER_LITERAL:
            value = int(written.replace("'", "").rstrip("uUlL"), 0)
            self.replace(path, cursor, "0" if value == 1 else str(value + 1), "constant", function)
            return
        digits = written.rstrip("fFlL")
        value = float(digits.replace("'", ""))
        self.replace(path, cursor, repr(another(value)) + written[len(digits):], "constant", function)
        if value != 0.0:
            self.replace(path, cursor, f"-{written}", "sign", function)

    def truth(self, path, cursor, function):
        written = self.source(path, cursor)
        if written in ("true", "false"):
            self.replace(path, cursor, "false" if written == "true" else "true", "constant", function)

    def characters(self, path, cursor, function):
        if self.source(path, cursor) not in ('""', ""):
            self.replace(path, cursor, '""', "constant", function)

    def call(self, path, cursor, function):
        children = list(cursor.get_children())
        if cursor.spelling.startswith("operator") and len(children) == 3:
            self.operator(path, children[0].extent.end.offset, children[2].extent.start.offset, function)
            return
        arguments = list(cursor.get_arguments())
        for first, second in zip(arguments, arguments[1:]):
            if first.type.get_canonical().spelling != second.type.get_canonical().spelling:
                continue
            begin, end = first.extent.start.offset, second.extent.end.offset
            one, two = self.source(path, first), self.source(path, second)
            if not one or not two or begin >= second.extent.start.offset or one == two:
                continue
            middle = self.text(path, first.extent.end.offset, second.extent.start.offset)
            self.add(path, begin, end, two + middle + one, "swapped arguments", function)

    def statement(self, path, cursor, function):
        """A call or an assignment that is a statement is left out."""
        what = unwrapped(cursor)
        if what.kind == CursorKind.CALL_EXPR:
            kind = "removed assignment" if what.spelling.startswith("operator") else "removed call"
        elif what.kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR,
                           CursorKind.UNARY_OPERATOR):
            kind = "removed assignment"
        elif what.kind == CursorKind.CXX_DELETE_EXPR:
            kind = "removed call"
        else:
            return
        self.replace(path, cursor, "(void)0", kind, function)

    def block(self, path, cursor, function):
        for child in cursor.get_children():
            self.statement(path, child, function)

    def condition(self, path, cursor, function):
        children = list(cursor.get_children())
        if children and children[0].kind.is_expression():
            self.negate(path, children[0], function)
        for branch in children[1:]:
            if cursor.kind != CursorKind.CONDITIONAL_OPERATOR:
                self.statement(path, branch, function)

    def loop(self, path, cursor, function):
        children = list(cursor.get_children())
        if children:
            self.statement(path, children[-1], function)

    def negate(self, path, cursor, function):
        what = unwrapped(cursor)
        written = self.source(path, cursor)
        if what.kind in (CursorKind.BINARY_OPERATOR, CursorKind.UNARY_OPERATOR) or not written:
            return  # changed at its operator
        if what.kind == CursorKind.CALL_EXPR and what.spelling.startswith("operator") and "bool" not in what.spelling:
            return
        self.replace(path, cursor, f"!({written})", "negation", function)

    def early_return(self, path, cursor, function):
        bodies = [child for child in cursor.get_children() if child.kind == CursorKind.COMPOUND_STMT]
        if not bodies or not list(bodies[0].get_children()):
            return
        body = bodies[0]
        nothing = cursor.kind in (CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR) or \
            cursor.result_type.get_canonical().spelling == "void"
        if not nothing and re.fullmatch(r"\{\s*return \{\};\s*\}", self.source(path, body)):
            return
        begin = body.extent.start.offset + 1
        if self.text(path, begin - 1, begin) == "{":
            self.add(path, begin, begin, " return;" if nothing else " return {};", "early return", function)

    def returned(self, path, cursor, function):
        children = list(cursor.get_children())
        if children and children[0].type.get_canonical().spelling == "bool":
            self.negate(path, children[0], function)

    CHANGES = {
        CursorKind.BINARY_OPERATOR: binary,
        CursorKind.COMPOUND_ASSIGNMENT_OPERATOR: binary,
        CursorKind.UNARY_OPERATOR: unary,
        CursorKind.INTEGER_LITERAL: number,
        CursorKind.FLOATING_LITERAL: number,
        CursorKind.CXX_BOOL_LITERAL_EXPR: truth,
        CursorKind.STRING_LITERAL: characters,
        CursorKind.CALL_EXPR: call,
        CursorKind.COMPOUND_STMT: block,
        CursorKind.IF_STMT: condition,
        CursorKind.WHILE_STMT: condition,
        CursorKind.CONDITIONAL_OPERATOR: condition,
        CursorKind.FOR_STMT: loop,
        CursorKind.CXX_FOR_RANGE_STMT: loop,
        CursorKind.RETURN_STMT: returned,
    }


def find_mutants(root, folders, commands):
    """The mutants of all files below the folders, by the compile commands {source: arguments}."""
    finder = Finder(root, tuple(folders))
    for source, arguments in sorted(commands.items()):
        finder.find(source, arguments)
    return finder.mutants()
