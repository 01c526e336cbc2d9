"""Makes mutants: small changes to a C++ source, found in clang's syntax tree."""

import re
from dataclasses import dataclass
from pathlib import Path

from clang.cindex import Cursor, CursorKind, Index, TypeKind

OPERATORS = {
    "<": ["<=", ">="],
    "<=": ["<", ">"],
    ">": [">=", "<="],
    ">=": [">", "<"],
    "==": ["!="],
    "!=": ["=="],
    "&&": ["||"],
    "||": ["&&"],
    "+": ["-"],
    "-": ["+"],
    "*": ["/"],
    "/": ["*"],
    "%": ["*"],
    "<<": [">>"],
    ">>": ["<<"],
    "&": ["|"],
    "|": ["&"],
    "+=": ["-=", "="],
    "-=": ["+=", "="],
    "*=": ["/=", "="],
    "/=": ["*=", "="],
}
ARITHMETIC = {"+", "-", "*", "/", "%", "<<", ">>", "&", "|"}
TESTS = {"<", "<=", ">", ">=", "==", "!=", "&&", "||", "!"}

LITERALS = {
    CursorKind.INTEGER_LITERAL,
    CursorKind.FLOATING_LITERAL,
    CursorKind.STRING_LITERAL,
    CursorKind.CHARACTER_LITERAL,
    CursorKind.CXX_BOOL_LITERAL_EXPR,
    CursorKind.CXX_NULL_PTR_LITERAL_EXPR,
}
# Nothing in these runs, or a compiler or a test of the binary interface holds it.
SKIPPED = {
    CursorKind.STATIC_ASSERT,
    CursorKind.ENUM_DECL,
    CursorKind.PREPROCESSING_DIRECTIVE,
    CursorKind.MACRO_DEFINITION,
    CursorKind.INCLUSION_DIRECTIVE,
}
FUNCTIONS = {
    CursorKind.FUNCTION_DECL,
    CursorKind.FUNCTION_TEMPLATE,
    CursorKind.CXX_METHOD,
    CursorKind.CONSTRUCTOR,
    CursorKind.DESTRUCTOR,
    CursorKind.CONVERSION_FUNCTION,
    CursorKind.LAMBDA_EXPR,
}
DEPENDENT = {TypeKind.DEPENDENT, TypeKind.UNEXPOSED, TypeKind.INVALID, TypeKind.OVERLOAD}
# Literals, which are changed anyway, and what an empty value is the same as.
PLAIN_VALUE = re.compile(r'(\d+|true|false|nullptr|\{\}|std::nullopt|".*"|\*this)$', re.DOTALL)


@dataclass(frozen=True)
class Mutant:
    """The bytes from `begin` to `end` of `file` are replaced by `text`."""

    file: str
    begin: int
    end: int
    text: str

    def applied_to(self, source: bytes) -> bytes:
        return source[: self.begin] + self.text.encode() + source[self.end :]

    def lines(self, source: bytes) -> range:
        """The numbers of the lines that are changed."""
        first = source.count(b"\n", 0, self.begin) + 1
        return range(first, first + source.count(b"\n", self.begin, self.end) + 1)

    def before(self, source: bytes) -> str:
        first, last = self._whole_lines(source)
        return source[first:last].decode()

    def after(self, source: bytes) -> str:
        first, last = self._whole_lines(source)
        return (source[first : self.begin] + self.text.encode() + source[self.end : last]).decode()

    def _whole_lines(self, source: bytes) -> tuple[int, int]:
        last = source.find(b"\n", self.end)
        return source.rfind(b"\n", 0, self.begin) + 1, len(source) if last < 0 else last


@dataclass(frozen=True)
class Body:
    """Where the body of a function stands, with its braces."""

    begin: int
    end: int
    gives_nothing: bool
    may_be_constant: bool


class _Maker:
    def __init__(self, name: str, source: bytes, path: str):
        self.name = name
        self.source = source
        self.path = path
        self.found: dict[Mutant, None] = {}  # a set that keeps the order
        self.bodies: list[Body] = []
        self.last_breaks: set[int] = set()

    def add(self, begin: int, end: int, text: str) -> None:
        if self.source[begin:end].decode() != text:
            self.found[Mutant(self.name, begin, end, text)] = None

    def text(self, cursor: Cursor) -> str:
        return self.source[cursor.extent.start.offset : cursor.extent.end.offset].decode()

    def replace(self, cursor: Cursor, text: str) -> None:
        self.add(cursor.extent.start.offset, cursor.extent.end.offset, text)

    def is_here(self, cursor: Cursor) -> bool:
        file = cursor.location.file
        return file is not None and file.name == self.path

    def visit(self, cursor: Cursor, function: Cursor | None) -> None:
        if cursor.kind in SKIPPED:
            return
        if cursor.kind in FUNCTIONS:
            if function is None:
                self.note_body(cursor)
            function = cursor
        children = [child for child in cursor.get_children() if self.is_here(child)]
        self.mutate(cursor, children, function)
        for child in children:
            self.visit(child, function)

    def note_body(self, function: Cursor) -> None:
        """Not of a function whose type its body tells."""
        compounds = [
            each for each in function.get_children() if each.kind == CursorKind.COMPOUND_STMT
        ]
        type_ = function.type.spelling
        if len(compounds) != 1 or function.kind == CursorKind.LAMBDA_EXPR or "auto" in type_:
            return
        begin, end = (each.offset for each in (compounds[0].extent.start, compounds[0].extent.end))
        head = self.source[function.extent.start.offset : begin]
        if self.source[begin : begin + 1] != b"{":
            return
        is_structor = function.kind in (CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR)
        gives_nothing = is_structor or type_.startswith("void ")
        self.bodies.append(Body(begin, end, gives_nothing, b"constexpr" in head))

    def mutate(self, cursor: Cursor, children: list[Cursor], function: Cursor | None) -> None:
        kind = cursor.kind
        if kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR):
            self.change_operator(cursor, children)
        elif kind == CursorKind.UNARY_OPERATOR:
            self.change_unary(cursor)
        elif kind == CursorKind.CALL_EXPR:
            if re.match(r"operator\W", cursor.spelling):
                self.change_operator(cursor, children[:1] + children[1:][-1:])
            else:
                self.change_call(cursor)
        elif kind == CursorKind.INIT_LIST_EXPR:
            self.swap_neighbours(children)
        elif kind in LITERALS:
            self.change_literal(cursor)
        elif kind == CursorKind.DECL_REF_EXPR:
            self.change_enumerator(cursor)
        elif kind == CursorKind.RETURN_STMT:
            self.change_result(cursor, children, function)
        elif kind == CursorKind.CONSTRUCTOR:
            self.drop_initialisers(children)
        elif kind == CursorKind.SWITCH_STMT:
            self.note_last_break(children[-1])
        elif kind == CursorKind.COMPOUND_STMT:
            for child in children:
                self.delete_statement(child)
        elif kind in (CursorKind.CASE_STMT, CursorKind.DEFAULT_STMT):
            for child in children[-1:]:
                self.delete_statement(child)
        if kind in (CursorKind.IF_STMT, CursorKind.CONDITIONAL_OPERATOR):
            self.fix_condition(children[0], ["true", "false"])
        elif kind == CursorKind.WHILE_STMT:
            self.fix_condition(children[0], ["false"])
        elif kind == CursorKind.DO_STMT:
            self.fix_condition(children[-1], ["false"])
        elif kind == CursorKind.FOR_STMT and len(children) >= 3:
            self.fix_condition(children[-3], ["false"])

    def change_operator(self, cursor: Cursor, operands: list[Cursor]) -> None:
        if len(operands) != 2:
            return
        begin, end = operands[0].extent.end.offset, operands[1].extent.start.offset
        match = re.fullmatch(r"\s*([-+*/%<>=!&|^]+)\s*", self.source[begin:end].decode())
        if match is None or match[1] not in OPERATORS:
            return
        operator = match[1]
        of_objects = cursor.type.get_canonical().kind == TypeKind.RECORD
        if operator in ARITHMETIC and of_objects:
            return  # such as joining strings or inserting into a stream: nothing to change to
        for other in OPERATORS[operator]:
            if of_objects and other != "=":
                continue
            self.add(begin + match.start(1), begin + match.end(1), other)

    def change_unary(self, cursor: Cursor) -> None:
        begin, end = cursor.extent.start.offset, cursor.extent.end.offset
        text = self.text(cursor)
        for operator, other in (("++", "--"), ("--", "++")):
            if text.startswith(operator):
                self.add(begin, begin + 2, other)
            elif text.endswith(operator):
                self.add(end - 2, end, other)
        if text.startswith("!") or re.match(r"-[^-]", text):
            self.add(begin, begin + 1, "")

    def change_call(self, cursor: Cursor) -> None:
        match = re.match(r"std::(max|min)\(", self.text(cursor))
        if match:
            begin = cursor.extent.start.offset + match.start(1)
            self.add(begin, begin + 3, {"max": "min", "min": "max"}[match[1]])
            return  # the order of its arguments means nothing
        self.swap_neighbours([each for each in cursor.get_arguments() if each is not None])

    def swap_neighbours(self, values: list[Cursor]) -> None:
        for left, right in zip(values, values[1:]):
            if left.kind in LITERALS and right.kind in LITERALS:
                continue
            begin, end = left.extent.end.offset, right.extent.start.offset
            if begin <= left.extent.start.offset or end < begin:
                continue  # a default argument
            if _type(left) == _type(right):
                between = self.source[begin:end].decode()
                self.add(
                    left.extent.start.offset,
                    right.extent.end.offset,
                    self.text(right) + between + self.text(left),
                )

    def change_literal(self, cursor: Cursor) -> None:
        text = self.text(cursor)
        if text in ("true", "false"):
            self.replace(cursor, "false" if text == "true" else "true")
        elif cursor.kind == CursorKind.INTEGER_LITERAL:
            match = re.fullmatch(r"(\d+)([uUlL]*)", text)
            if match:
                for value in {int(match[1]) + 1, max(int(match[1]) - 1, 0)}:
                    self.replace(cursor, f"{value}{match[2]}")
        elif cursor.kind == CursorKind.FLOATING_LITERAL:
            is_zero = re.search("[1-9]", text) is None
            for value in ("1.0",) if is_zero else ("0.0", f"(2 * {text})"):
                self.replace(cursor, value)
        elif cursor.kind == CursorKind.CHARACTER_LITERAL and len(text) == 3:
            self.replace(cursor, "'X'")
        elif cursor.kind == CursorKind.STRING_LITERAL:
            for match in re.finditer(r'"((?:[^"\\]|\\.)*)"', text):
                self.change_string(cursor.extent.start.offset + match.start(1), match[1])

    def change_string(self, begin: int, text: str) -> None:
        end = begin + len(text.encode())
        if not text:
            self.add(begin, end, "X")
            return
        self.add(begin, end, "")
        characters = re.findall(r"\\.|[^\\]", text)
        middle = len(characters) // 2
        self.add(begin, end, "".join([*characters[:middle], "X", *characters[middle + 1 :]]))

    def change_enumerator(self, cursor: Cursor) -> None:
        target = cursor.referenced
        if target is None or target.kind != CursorKind.ENUM_CONSTANT_DECL:
            return
        names = [each.spelling for each in target.semantic_parent.get_children()]
        other = names[(names.index(target.spelling) + 1) % len(names)]
        end = cursor.extent.end.offset
        self.add(end - len(target.spelling), end, other)

    def change_result(
        self, cursor: Cursor, children: list[Cursor], function: Cursor | None
    ) -> None:
        if not children or PLAIN_VALUE.match(self.text(children[0])):
            return
        value = children[0]
        expected = value.type
        if function is not None and function.kind != CursorKind.LAMBDA_EXPR:
            expected = function.result_type
        kind = expected.get_canonical().kind
        text = self.text(value)
        if kind == TypeKind.BOOL:
            if not self.is_test(value):
                self.replace(value, f"!({text})")
        elif kind == TypeKind.POINTER:
            self.replace(value, "nullptr")
        elif kind == TypeKind.VOID:
            self.replace(value, "")
        elif TypeKind.BOOL.value < kind.value <= TypeKind.LONGDOUBLE.value:
            self.replace(value, f"({text}) + 1")
        elif kind not in (TypeKind.LVALUEREFERENCE, TypeKind.RVALUEREFERENCE):
            self.replace(value, "{}")

    def is_test(self, cursor: Cursor) -> bool:
        """Whether the outermost operator is changed anyway."""
        if cursor.kind == CursorKind.UNARY_OPERATOR:
            return self.text(cursor).startswith("!")
        if cursor.kind != CursorKind.BINARY_OPERATOR:
            return False
        left, right = list(cursor.get_children())
        between = self.source[left.extent.end.offset : right.extent.start.offset]
        return between.decode().strip() in TESTS

    def drop_initialisers(self, children: list[Cursor]) -> None:
        for member, value in zip(children, children[1:]):
            if member.kind == CursorKind.MEMBER_REF and not PLAIN_VALUE.match(self.text(value)):
                begin = member.extent.end.offset
                if self.source[begin : begin + 1] == b"(":
                    end = value.extent.end.offset
                    if self.source[end : end + 1] == b")" and end > begin:
                        self.add(begin + 1, end, "")

    def note_last_break(self, body: Cursor) -> None:
        """Without it the switch ends all the same."""
        last = list(body.get_children())[-1:]
        while last and last[0].kind in (CursorKind.CASE_STMT, CursorKind.DEFAULT_STMT):
            last = list(last[0].get_children())[-1:]
        self.last_breaks.update(each.extent.start.offset for each in last)

    def delete_statement(self, cursor: Cursor) -> None:
        if cursor.kind == CursorKind.BREAK_STMT and cursor.extent.start.offset in self.last_breaks:
            return
        if cursor.kind.is_expression() or cursor.kind in (
            CursorKind.BREAK_STMT,
            CursorKind.CONTINUE_STMT,
        ):
            self.replace(cursor, "")
        elif cursor.kind == CursorKind.RETURN_STMT and not list(cursor.get_children()):
            self.replace(cursor, "")

    def fix_condition(self, condition: Cursor, values: list[str]) -> None:
        if condition.kind.is_expression():
            for value in values:
                self.replace(condition, value)


def _type(cursor: Cursor) -> str:
    type_ = cursor.type
    if type_.kind in (TypeKind.LVALUEREFERENCE, TypeKind.RVALUEREFERENCE):
        type_ = type_.get_pointee()
    type_ = type_.get_canonical()
    if type_.kind in DEPENDENT:
        return "dependent"
    return re.sub(r"^const ", "", type_.spelling)


def make_mutants(
    root: Path, name: str, options: list[str]
) -> tuple[list[Mutant], list[Body]]:
    """All mutants of the file `name` below `root`, in the order of their places, and its bodies."""
    path = str(root / name)
    source = (root / name).read_bytes()
    unit = Index.create().parse(path, args=["-x", "c++", *options])
    errors = [str(each) for each in unit.diagnostics if each.severity >= each.Error]
    if errors:
        raise RuntimeError("\n".join(errors))
    maker = _Maker(name, source, path)
    for child in unit.cursor.get_children():
        if maker.is_here(child):
            maker.visit(child, None)
    mutants = sorted(maker.found, key=lambda each: (each.begin, each.end, each.text))
    return mutants, maker.bodies
