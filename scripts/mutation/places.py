"""The places of a source file that can be changed, and the changes.

A change is one replacement in one line. Comments, texts, character constants, preprocessor lines and lines outside of functions
are never changed."""
import re
from dataclasses import dataclass

COMMENT_OR_TEXT = re.compile(
    r'R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"'  # raw text
    r'|"(?:\\.|[^"\\\n])*"'
    r"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])+'"
    r"|//[^\n]*"
    r"|/\*.*?\*/", re.DOTALL)
PREPROCESSOR = re.compile(r"^[ \t]*#(?:\\\n|[^\n])*", re.MULTILINE)

# A pattern for the code between the spaces that the formatter sets, what replaces it, and the name of the change. Without the
# spaces, templates and references would match.
OPERATORS = [
    (r"(?<= )==(?= )", "!=", "comparison"),
    (r"(?<= )!=(?= )", "==", "comparison"),
    (r"(?<= )<(?= )", "<=", "comparison"),
    (r"(?<= )<=(?= )", "<", "comparison"),
    (r"(?<= )>(?= )", ">=", "comparison"),
    (r"(?<= )>=(?= )", ">", "comparison"),
    (r"(?<= )&&(?= )", "||", "condition"),
    (r"(?<= )\|\|(?= )", "&&", "condition"),
    (r"(?<=[(\s])!(?=[\w(])", "", "condition"),
    (r"\btrue\b", "false", "constant"),
    (r"\bfalse\b", "true", "constant"),
    (r"(?<= )\+(?= )", "-", "arithmetic"),
    (r"(?<= )-(?= )", "+", "arithmetic"),
    (r"(?<= )\*(?= )", "/", "arithmetic"),
    (r"(?<= )&(?= )", "|", "arithmetic"),
    (r"(?<= )\|(?= )", "&", "arithmetic"),
    (r"\+\+", "--", "arithmetic"),
    (r"(?<= )\+=(?= )", "-=", "arithmetic"),
    (r"(?<= )-=(?= )", "+=", "arithmetic"),
    (r"(?<= )\|=(?= )", "&=", "arithmetic"),
]
OPERATORS = [(re.compile(pattern), new, kind) for pattern, new, kind in OPERATORS]
NUMBER = re.compile(r"(?<![\w.])(?:0[xX][0-9A-Fa-f']+|\d[\d']*)(?=[uUlL]*(?![\w.]))")
CONDITION = re.compile(r"\b(?:if|while) \(")
CALL = re.compile(r"^\s+(?:[\w:]+(?:<[\w:]+>)?(?:\(\))?(?:\.|->))*[\w:]+\(.*\);$")
ASSIGNMENT = re.compile(r"^\s+[*\w:.\[\]>-]+ (?:[-+|&]?=) .*;$")
# A line that begins like this declares something or leaves the function, so it cannot be removed.
KEPT = re.compile(r"^\s+(?:return|throw|using|static_assert|delete|else|case|default|goto|break|continue)\b")


@dataclass(frozen=True)
class Change:
    """One change: `old` at `column` of `line` (both from 1) becomes `new`."""
    line: int
    column: int
    old: str
    new: str
    kind: str


def blanked(text):
    """Returns the text with spaces instead of comments, texts and preprocessor lines. Lines and columns stay the same."""
    def blank(found):
        return re.sub(r"[^\n]", " ", found[0])
    return PREPROCESSOR.sub(blank, COMMENT_OR_TEXT.sub(blank, text))


def closing(line, opening):
    """Returns the index of the parenthesis that closes the one at `opening`, or -1 if it is not in the line."""
    depth = 0
    for index in range(opening, len(line)):
        depth += {"(": 1, ")": -1}.get(line[index], 0)
        if depth == 0:
            return index
    return -1


def in_functions(lines):
    """Yields, for each line, whether it is inside a function. A namespace's and a class's braces do not count."""
    stack = []
    for line in lines:
        yield "function" in stack
        for index, character in enumerate(line):
            if character == "{":
                head = line[:index].rstrip()
                outside = "function" not in stack
                is_scope = outside and re.search(r"\b(?:namespace|class|struct|enum|union|extern)\b[^()]*$", head)
                stack.append("scope" if is_scope or (outside and head.endswith("=")) else "function")
            elif character == "}" and stack:
                stack.pop()


def removal(number, line, kind):
    return Change(number, len(line) - len(line.lstrip()) + 1, line.strip(), "{}", kind)


def changes_in_line(number, code, original):
    for pattern, new, kind in OPERATORS:
        for found in pattern.finditer(code):
            yield Change(number, found.start() + 1, found[0], new, kind)
    for found in NUMBER.finditer(code):
        value = int(found[0].replace("'", ""), 16 if found[0][:2] in ("0x", "0X") else 10)
        yield Change(number, found.start() + 1, found[0], str(value + 1), "constant")
    for found in CONDITION.finditer(code):
        end = closing(code, found.end() - 1)
        # A declaration in the condition cannot be negated.
        if end > 0 and not re.search(r"(?<![=!<>])=(?!=)|;", code[found.end():end]):
            old = original[found.end() - 1:end + 1]
            yield Change(number, found.end(), old, f"(!{old})", "negated condition")
    if not KEPT.match(code) and code.count("(") == code.count(")") and code.count("{") == code.count("}"):
        if ASSIGNMENT.match(code):
            yield removal(number, original, "removed assignment")
        elif CALL.match(code):
            yield removal(number, original, "removed call")


def changes_in(text):
    """Returns all changes of a source text, ordered by line and column."""
    originals = text.split("\n")
    lines = blanked(text).split("\n")
    found = []
    ends_statement = True  # whether the line before ends a statement, so that this one begins one
    for number, (code, inside) in enumerate(zip(lines, in_functions(lines)), 1):
        if inside and code.strip():
            for change in changes_in_line(number, code, originals[number - 1]):
                if ends_statement or not change.kind.startswith("removed"):
                    found.append(change)
        if code.strip():
            ends_statement = code.rstrip()[-1] in ";{}:)" and not code.lstrip().startswith(("return", ":"))
    return sorted(found, key=lambda change: (change.line, change.column, change.kind))


def changed(text, change):
    """Returns the text with the change."""
    lines = text.split("\n")
    line = lines[change.line - 1]
    begin = change.column - 1
    assert line[begin:begin + len(change.old)] == change.old, (change, line)
    lines[change.line - 1] = line[:begin] + change.new + line[begin + len(change.old):]
    return "\n".join(lines)
