"""Makes the mutants of a C++ source: small changes that a good test notices, one at a time. They are found on the
compiler's own syntax tree (libclang), so that each is the change of one operator, constant, statement, condition,
argument or result, and nothing inside of comments, texts or assertions of the compiler is touched."""

import re

import clang.cindex
from clang.cindex import CursorKind as Kind, TypeKind

OPERATORS = {
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",),
    "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("*",), "<<": (">>",), ">>": ("<<",),
    "&": ("|",), "|": ("&",), "^": ("&",), "&&": ("||",), "||": ("&&",),
    "+=": ("-=",), "-=": ("+=",), "*=": ("/=",), "/=": ("*=",), "&=": ("|=",), "|=": ("&=",),
    "<<=": (">>=",), ">>=": ("<<=",),
}
UNARY = {"++": "--", "--": "++", "!": "", "-": "", "~": ""}
COMPARISONS = ("<", "<=", ">", ">=", "==", "!=")
NUMBER = re.compile(rb"(0[xX][0-9A-Fa-f'.]+([pP][+-]?\d+)?|0b[01']+|\d[\d']*\.?\d*([eE][+-]?\d+)?)[uUlLfF]*$")

STATEMENTS = (Kind.CALL_EXPR, Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR, Kind.UNARY_OPERATOR,
              Kind.CXX_DELETE_EXPR, Kind.UNEXPOSED_EXPR, Kind.BREAK_STMT, Kind.CONTINUE_STMT)
BODIES = (Kind.COMPOUND_STMT, Kind.IF_STMT, Kind.FOR_STMT, Kind.WHILE_STMT, Kind.DO_STMT, Kind.CASE_STMT,
          Kind.DEFAULT_STMT, Kind.CXX_FOR_RANGE_STMT)
FLOATS = (TypeKind.FLOAT, TypeKind.DOUBLE)
INTEGERS = (TypeKind.INT, TypeKind.UINT, TypeKind.LONG, TypeKind.ULONG, TypeKind.LONGLONG, TypeKind.ULONGLONG,
            TypeKind.SHORT, TypeKind.USHORT, TypeKind.UCHAR, TypeKind.SCHAR)


class Mutant:
    """A change of the bytes start..end of a file."""

    def __init__(self, source, kind, start, end, after):
        self.file, self.kind, self.start, self.end, self.after = source.name, kind, start, end, after
        self.before = source.content[start:end].decode()
        self.line = source.content.count(b"\n", 0, start) + 1
        self.text = source.content.split(b"\n")[self.line - 1].decode().strip()
        self.column = start - (source.content.rfind(b"\n", 0, start) + 1) + 1
        self.nth = 1  # of the equal changes of one line, from left to right

    def key(self):
        return self.start, self.end, self.after

    def change(self):
        """The change as one line of text, by which lists name it."""
        text = f"{' '.join(self.before.split())} -> {' '.join(self.after.split()) or 'nothing'}"
        return text if self.nth == 1 else f"{text} (place {self.nth})"

    def applied(self, content):
        return content[: self.start] + self.after.encode() + content[self.end :]


class Source:
    """A file of which mutants are made, and the ones that were found."""

    def __init__(self, name, content):
        self.name, self.content, self.mutants = name, content, {}

    def add(self, kind, start, end, after):
        after = after + "\n" * (self.content.count(b"\n", start, end) - after.count("\n"))  # lines keep their numbers
        mutant = Mutant(self, kind, start, end, after)
        self.mutants.setdefault(mutant.key(), mutant)

    def text(self, cursor):
        return self.content[cursor.extent.start.offset : cursor.extent.end.offset]

    def replace(self, kind, cursor, after):
        self.add(kind, cursor.extent.start.offset, cursor.extent.end.offset, after)

    def sorted_mutants(self):
        ordered = sorted(self.mutants.values(), key=Mutant.key)
        seen = {}
        for mutant in ordered:
            mutant.nth = 1
            same = (mutant.line, mutant.change())
            seen[same] = mutant.nth = seen.get(same, 0) + 1
        return ordered


def children(cursor):
    return list(cursor.get_children())


def bare(cursor):
    """The expression without conversions and parentheses around it."""
    while cursor.kind in (Kind.UNEXPOSED_EXPR, Kind.PAREN_EXPR) and len(children(cursor)) == 1:
        cursor = children(cursor)[0]
    return cursor


def operator_between(source, left, right):
    """The operator between two operands, and where it stands."""
    start, end = left.extent.end.offset, right.extent.start.offset
    found = re.match(rb"[\s)]*([-+*/%&|^<>=!]+)", source.content[start:end])
    return (found.group(1).decode(), start + found.start(1)) if found else ("", start)


def unary_operator(source, cursor):
    operand = children(cursor)[0]
    before = source.content[cursor.extent.start.offset : operand.extent.start.offset].decode().strip(" (")
    if before:
        return before, cursor.extent.start.offset
    return source.content[operand.extent.end.offset : cursor.extent.end.offset].decode().strip(" )"), operand.extent.end.offset


def is_negated_elsewhere(source, cursor):
    """Whether another mutant is the expression's negation already."""
    cursor = bare(cursor)
    if cursor.kind == Kind.BINARY_OPERATOR and len(children(cursor)) == 2:
        return operator_between(source, *children(cursor))[0] in COMPARISONS
    if cursor.kind == Kind.UNARY_OPERATOR:
        return unary_operator(source, cursor)[0] == "!"
    return cursor.kind == Kind.CXX_BOOL_LITERAL_EXPR


def mutate_binary(source, cursor):
    if len(children(cursor)) != 2:
        return
    operator, at = operator_between(source, *children(cursor))
    for other in OPERATORS.get(operator, ()):
        source.add("operator", at, at + len(operator), other)


def mutate_unary(source, cursor):
    operator, at = unary_operator(source, cursor)
    if operator in UNARY:
        source.add("operator", at, at + len(operator), UNARY[operator])


def mutate_number(source, cursor):
    text = source.text(cursor)
    if NUMBER.match(text):
        source.replace("constant", cursor, "1" if text == b"0" else f"({text.decode()} + 1)")


def mutate_truth(source, cursor):
    other = {b"true": "false", b"false": "true"}.get(source.text(cursor))
    if other:
        source.replace("constant", cursor, other)


def negate(source, cursor):
    if cursor.kind.is_expression() and not is_negated_elsewhere(source, cursor):
        source.replace("condition", cursor, f"!({source.text(cursor).decode()})")


def mutate_condition(source, cursor):
    parts = children(cursor)
    if parts:
        negate(source, parts[1] if cursor.kind == Kind.DO_STMT else parts[0])


def mutate_arguments(source, cursor):
    arguments = list(cursor.get_arguments())
    for one, two in zip(arguments, arguments[1:]):
        if one is None or two is None or one.extent.start.offset >= two.extent.start.offset:
            continue
        same = one.type.get_canonical().spelling == two.type.get_canonical().spelling
        start, end = one.extent.start.offset, two.extent.end.offset
        if not same or source.text(one) == source.text(two) or not source.text(one) or not source.text(two):
            continue
        between = source.content[one.extent.end.offset : two.extent.start.offset]
        source.add("arguments", start, end, (source.text(two) + between + source.text(one)).decode())


def mutate_result(source, cursor):
    if not children(cursor):
        return
    result = children(cursor)[0]
    text, kind, inner = source.text(result).decode(), result.type.get_canonical().kind, bare(result)
    if kind == TypeKind.BOOL:
        negate(source, result)
    elif kind in INTEGERS and inner.kind != Kind.INTEGER_LITERAL:
        source.replace("result", result, f"({text}) + 1")
    elif kind in FLOATS and inner.kind != Kind.FLOATING_LITERAL:
        source.replace("result", result, f"({text}) + 1.0f")
    elif kind == TypeKind.POINTER and text != "nullptr":
        source.replace("result", result, "nullptr")
    elif kind == TypeKind.RECORD and text != "{}":
        source.replace("result", result, "{}")


def is_removable(statement):
    if statement.kind == Kind.RETURN_STMT:
        return not children(statement) or children(statement)[0].type.kind == TypeKind.VOID
    return statement.kind in STATEMENTS


def remove_statements(source, cursor):
    parts = children(cursor)
    if cursor.kind != Kind.COMPOUND_STMT:
        parts = parts[1:]  # what comes first is a condition or a variable
    for statement in parts:
        end = statement.extent.end.offset
        semicolon = re.match(rb"\s*;", source.content[end:])
        if semicolon and is_removable(statement):
            source.add("statement", statement.extent.start.offset, end + semicolon.end(), ";")


MUTATORS = {
    Kind.BINARY_OPERATOR: (mutate_binary,),
    Kind.COMPOUND_ASSIGNMENT_OPERATOR: (mutate_binary,),
    Kind.UNARY_OPERATOR: (mutate_unary,),
    Kind.INTEGER_LITERAL: (mutate_number,),
    Kind.FLOATING_LITERAL: (mutate_number,),
    Kind.CXX_BOOL_LITERAL_EXPR: (mutate_truth,),
    Kind.IF_STMT: (mutate_condition,),
    Kind.WHILE_STMT: (mutate_condition,),
    Kind.DO_STMT: (mutate_condition,),
    Kind.CONDITIONAL_OPERATOR: (mutate_condition,),
    Kind.CALL_EXPR: (mutate_arguments,),
    Kind.RETURN_STMT: (mutate_result,),
}


def walk(cursor, sources):
    for child in cursor.get_children():
        if child.kind == Kind.STATIC_ASSERT:
            continue
        place = child.location.file
        source = sources.get(place.name) if place is not None else None
        if source is None and cursor.kind in (Kind.TRANSLATION_UNIT, Kind.NAMESPACE) and place is not None:
            continue  # another file's declaration
        if source is not None:
            for mutator in MUTATORS.get(child.kind, ()):
                mutator(source, child)
            if child.kind in BODIES:
                remove_statements(source, child)
        walk(child, sources)


def find_mutants(path, arguments, sources):
    """Adds the mutants of one translation unit to the sources (by the names under which the compiler opens them).
    Returns the names of those sources that it reads."""
    unit = clang.cindex.Index.create().parse(path, args=arguments)
    errors = [d for d in unit.diagnostics if d.severity >= clang.cindex.Diagnostic.Error]
    if errors:
        raise SystemExit(f"error: {errors[0]}")
    walk(unit.cursor, sources)
    return {path} | {include.include.name for include in unit.get_includes() if include.include.name in sources}
