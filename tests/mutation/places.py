"""Finds the places in function bodies where a small change makes a mutant, with libclang."""
import dataclasses
import re

from clang.cindex import CursorKind, Index, TranslationUnit, TypeKind

COMPARISONS = {"<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"], "==": ["!="], "!=": ["=="]}
LOGICAL = {"&&": ["||"], "||": ["&&"]}
ARITHMETIC = {"+": ["-"], "-": ["+"], "+=": ["-="], "-=": ["+="]}
NUMBERS = {TypeKind.INT, TypeKind.UINT, TypeKind.LONG, TypeKind.ULONG, TypeKind.LONGLONG, TypeKind.ULONGLONG,
           TypeKind.SHORT, TypeKind.USHORT, TypeKind.FLOAT, TypeKind.DOUBLE}
FUNCTIONS = {CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR,
             CursorKind.FUNCTION_TEMPLATE, CursorKind.CONVERSION_FUNCTION}
SCOPES = {CursorKind.NAMESPACE, CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL, CursorKind.CLASS_TEMPLATE}
BINARY = {CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR, CursorKind.CALL_EXPR}
SKIPPED = {CursorKind.PARM_DECL, CursorKind.STATIC_ASSERT, CursorKind.ENUM_DECL}
BODIES = {CursorKind.COMPOUND_STMT, CursorKind.IF_STMT, CursorKind.FOR_STMT, CursorKind.WHILE_STMT,
          CursorKind.CXX_FOR_RANGE_STMT}


@dataclasses.dataclass(frozen=True, order=True)
class Mutant:
    """The text of one expression, bytes [start, end) of a file, and what takes its place."""
    file: str
    start: int
    end: int
    kind: str  # "value", "condition" (any type that converts to bool) or "statement" (a call whose result is unused)
    operator: str
    mutated: str
    line: int
    original_shown: str
    mutated_shown: str

    def __str__(self):
        return f"{self.file}:{self.line}: {self.operator}: {self.original_shown} -> {self.mutated_shown}"


def find(root, groups, arguments):
    """The mutants of the files, whose paths are relative to root."""
    found = set()
    for files in groups:
        sources = sources_of(root, files)
        unit = parse(root, sources, arguments)
        finder = Finder(root, sources, macro_uses(unit, sources))
        for cursor in unit.cursor.get_children():
            finder.visit_declaration(cursor)
        found |= finder.found
    return sorted(found)


def compatible(root, files, arguments):
    """Groups of files that can be read as one: a name is defined once only in each."""
    groups = []
    while files:
        unit = parse(root, sources_of(root, files), arguments)  # its messages live as long as it does
        errors = [message for message in unit.diagnostics
                  if message.severity >= message.Error and message.location.file]
        wrong = {message.location.file.name for message in errors}
        group = [name for name in files if str(root / name) not in wrong]
        if not group:
            raise SystemExit("mutate: libclang cannot read the sources:\n" + "\n".join(map(str, errors)))
        groups.append(group)
        files = [name for name in files if name not in group]
    return groups


def sources_of(root, files):
    return {str(root / name): (root / name).read_bytes() for name in files}


def parse(root, sources, arguments):
    """All sources as one translation unit: most of the time is Qt's headers."""
    unity = str(root / "mutants.cpp")
    includes = "".join(f'#include "{path}"\n' for path in sources)
    texts = [(path, text.decode()) for path, text in sources.items()]
    return Index.create().parse(unity, [*arguments, "-ferror-limit=0", "-w"], [(unity, includes), *texts],
                                TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)


def macro_uses(unit, sources):
    """The extents of the macros used in each file: nothing inside them is mutated."""
    uses = {path: [] for path in sources}
    for cursor in unit.cursor.get_children():
        if cursor.kind == CursorKind.MACRO_INSTANTIATION and cursor.location.file:
            extents = uses.get(cursor.location.file.name)
            if extents is not None:
                extents.append((cursor.extent.start.offset, cursor.extent.end.offset))
    return uses


class Finder:
    """Walks the functions of one translation unit."""

    def __init__(self, root, sources, macros):
        self.found = set()
        self._root = root
        self._sources = sources
        self._macros = macros
        self._path = None

    def visit_declaration(self, cursor):
        path = cursor.location.file.name if cursor.location.file else None
        if path not in self._sources:
            return
        if cursor.kind in SCOPES:
            for child in cursor.get_children():
                self.visit_declaration(child)
        elif cursor.kind in FUNCTIONS and cursor.is_definition():
            self._path = path
            if not re.search(r"\bconstexpr\b", self._text(cursor).split("{")[0]):
                self._visit_children(cursor)

    def _visit_children(self, cursor):
        for child in cursor.get_children():
            self._visit(child)

    def _visit(self, cursor):
        if cursor.kind in SKIPPED or self._is_in_macro(cursor):
            return
        if cursor.kind == CursorKind.DECL_STMT and re.match(r"(static )?constexpr\b", self._text(cursor)):
            return
        self._mutate(cursor)
        children = list(cursor.get_children())
        if cursor.kind == CursorKind.CASE_STMT:
            children = children[1:]  # without the label
        for child in children:
            self._visit(child)

    def _mutate(self, cursor):
        if cursor.kind in BINARY:
            self._mutate_binary(cursor)
        if cursor.kind in BODIES:
            self._drop_calls(cursor)
        if cursor.kind in {CursorKind.IF_STMT, CursorKind.CONDITIONAL_OPERATOR}:
            self._negate_condition(cursor)
        elif cursor.kind == CursorKind.RETURN_STMT:
            self._negate_returned(cursor)
        elif cursor.kind in {CursorKind.INTEGER_LITERAL, CursorKind.FLOATING_LITERAL}:
            self._change_number(cursor)
        elif cursor.kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            other = {"true": "false", "false": "true"}.get(self._text(cursor))
            if other:
                self._add(cursor, "value", "constant", other)

    def _mutate_binary(self, cursor):
        parts = self._operands(cursor)
        if not parts:
            return
        left, operator, right = parts
        for operators, name in ((COMPARISONS, "comparison"), (LOGICAL, "logic"), (ARITHMETIC, "arithmetic")):
            if operators is ARITHMETIC and cursor.type.get_canonical().kind not in NUMBERS:
                continue
            for other in operators.get(operator, []):
                self._add(cursor, "value", name, f"{left} {other} {right}")

    def _operands(self, cursor):
        children = list(cursor.get_children())
        if cursor.kind == CursorKind.CALL_EXPR and not cursor.spelling.startswith("operator"):
            return None
        if len(children) < 2:
            return None
        left, right = children[0], children[-1]
        between = self._bytes(left.extent.end.offset, right.extent.start.offset).strip()
        if cursor.extent.start.offset != left.extent.start.offset or not re.fullmatch(r"[-+<>=!&|]{1,2}", between):
            return None
        return self._text(left), between, self._text(right)

    def _drop_calls(self, cursor):
        """But for reserve(), which changes no result."""
        statements = list(cursor.get_children())
        if cursor.kind == CursorKind.IF_STMT:  # without the condition
            statements = statements[1 if statements[0].kind.is_expression() else 2:]
        elif cursor.kind != CursorKind.COMPOUND_STMT:
            statements = statements[-1:]
        for statement in statements:
            call = unwrapped(statement)
            if call.kind == CursorKind.CALL_EXPR and call.spelling != "reserve" and not self._is_in_macro(call):
                self._add(statement, "statement", "dropped call", "void()")

    def _negate_condition(self, cursor):
        condition = next(iter(cursor.get_children()), None)
        if condition is None or not condition.kind.is_expression():
            return
        if cursor.kind == CursorKind.IF_STMT:
            before = self._bytes(cursor.extent.start.offset, condition.extent.start.offset)
            if not re.fullmatch(r"if\s*\(\s*", before):
                return  # with a declaration, or constexpr
        self._negate(condition, "condition")

    def _negate_returned(self, cursor):
        value = next(iter(cursor.get_children()), None)
        if value is not None and value.type.get_canonical().kind == TypeKind.BOOL:
            self._negate(value, "returned value")

    def _negate(self, cursor, operator):
        """Not a comparison or a constant, of which the opposite is a mutant of its own."""
        if self._is_in_macro(cursor):
            return
        inner = unwrapped(cursor)
        parts = self._operands(inner) if inner.kind in BINARY else None
        if not (parts and parts[1] in COMPARISONS) and self._text(cursor) not in {"true", "false"}:
            self._add(cursor, "condition", operator, f"!({self._text(cursor)})")

    def _change_number(self, cursor):
        text = self._text(cursor)
        if re.fullmatch(r"(0x[0-9a-fA-F]+|\d+(\.\d+)?)[uUlL]*", text):
            self._add(cursor, "value", "constant", "0" if text == "1" else f"{text} + 1")

    def _add(self, cursor, kind, operator, mutated):
        extent = cursor.extent
        if extent.start.file.name != self._path or not self._text(cursor):
            return
        name = str(self._path)[len(str(self._root)) + 1:]
        self.found.add(Mutant(name, extent.start.offset, extent.end.offset, kind, operator, mutated,
                              extent.start.line, one_line(self._text(cursor)), one_line(mutated)))

    def _is_in_macro(self, cursor):
        start = cursor.extent.start.offset
        return any(first <= start < last for first, last in self._macros[self._path])

    def _text(self, cursor):
        return self._bytes(cursor.extent.start.offset, cursor.extent.end.offset)

    def _bytes(self, start, end):
        return self._sources[self._path][start:end].decode()


def unwrapped(cursor):
    """Without the conversions and temporaries that surround an expression of the same text."""
    while cursor.kind == CursorKind.UNEXPOSED_EXPR:
        children = list(cursor.get_children())
        if len(children) != 1 or children[0].extent != cursor.extent:
            break
        cursor = children[0]
    return cursor


def one_line(text):
    """Without comments and line breaks."""
    return " ".join(re.sub(r"//[^\n]*", "", text).split())
