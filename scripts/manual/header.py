"""Reads the comments of include/dovrel/pos.h, and makes the pages of the functions."""
import re

FUNCTION = re.compile(r"/\*\*\n((?: \*.*\n)+?) \*/\nPOS_EXPORT (\w+ (\w+)\(([^;]*)\));")
SEE_ALSO = {
    "InitializePOS": ["TerminatePOS", "posRegisterApplicationWithClasses"],
    "TerminatePOS": ["InitializePOS", "posUnregisterApplication"],
    "posRegisterApplicationWithClasses": ["posUnregisterApplication", "posInstantiateObject", "posExecuteCMD"],
    "posUnregisterApplication": ["posRegisterApplicationWithClasses"],
    "posInstantiateObject": ["posCallMethod", "posDeleteObject", "posFreeDllHeapData"],
    "posInstantiateObjectOnExecuter": ["posInstantiateObject", "posCallMethodOnExecuter"],
    "posCallMethod": ["posInstantiateObject", "posCallMethodOnExecuter", "posDeleteDLLHeapData"],
    "posCallMethodOnExecuter": ["posCallMethod", "posInstantiateObjectOnExecuter"],
    "posDeleteObject": ["posInstantiateObject", "posFreeDllHeapData"],
    "posGetInfo": ["posDeleteDLLHeapData"],
    "posExecuteCMD": ["posDeleteDLLHeapData"],
    "posDeleteDLLHeapData": ["posCallMethod", "posFreeDllHeapData"],
    "posFreeDllHeapData": ["posInstantiateObject", "posDeleteDLLHeapData"],
}




def mark_names(text, parameters=(), own=""):
    """Returns the prose with functions and constants in bold and parameters in italics."""
    if "`" in text:
        return "`".join(part if at % 2 else mark_names(part, parameters, own)
                        for at, part in enumerate(text.split("`")))
    text = text.replace("*", r"\*").replace("<", r"\<")
    text = re.sub(r"\b(InitializePOS|TerminatePOS|pos[A-Z]\w+)\b",
                  lambda name: f"**{name[1]}**" + ("" if name[1] == own else "(3)"), text)
    text = re.sub(r"\b(POS_\w+)", lambda name: "**" + name[1].replace("_", r"\_") + "**", text)
    for parameter in parameters:
        # Other parameters have names that are words of the language as well.
        if re.search("[A-Z]", parameter):
            text = re.sub(rf"(?<![*\w]){parameter}\b(?!\*)", f"*{parameter}*", text)
    return text


def comment_lines(comment):
    return [line[3:] for line in comment.splitlines()]


def paragraphs(lines):
    """Joins the lines of each paragraph. A list's items become paragraphs of their own that begin with "- "."""
    found = [""]
    for line in lines:
        is_item = line.lstrip().startswith("- ")
        in_list = found[-1].startswith("- ")
        if not line.strip() or is_item or (in_list and not line.startswith(" ")):
            found.append("")
        found[-1] = f"{found[-1]} {line.strip()}".strip(" ")
    return [paragraph for paragraph in found if paragraph]


class Function:
    def __init__(self, comment, declaration, name, parameters):
        self.name = name
        self.declaration = re.sub(r"\s+", " ", declaration)
        self.parameters = re.findall(r"(\w+)(?:,|$)", parameters) if parameters != "void" else []
        lines = comment_lines(comment)
        first_tag = next(at for at, line in enumerate(lines) if line.startswith("@"))
        self.description = paragraphs(lines[:first_tag])
        self.tags = []
        for line in lines[first_tag:]:
            tag = re.match(r"@(param|retval)(?:\[(\w+)\])?\s+(\w+)\s+(.*)", line)
            if tag:
                self.tags.append([*tag.groups()])
            elif line.strip():
                self.tags[-1][3] += " " + line.strip()

    @property
    def summary(self):
        sentence = self.description[0].split(". ")[0].rstrip(".")
        return sentence[0].lower() + sentence[1:]

    def synopsis(self):
        one_line = self.declaration + ";"
        if len(one_line) <= 70:
            return one_line
        begin, rest = one_line.split("(", 1)
        return begin + "(\n        " + rest.replace(", ", ",\n        ")

    def tag_list(self, kind):
        direction = {"in": "", "out": " (output)", None: ""}
        return "\n\n".join(
            f"{'*' if kind == 'param' else '**'}{name}{'*' if kind == 'param' else '**'}{direction[way]}\n: "
            + mark_names(text, self.parameters, self.name) for tag, way, name, text in self.tags if tag == kind)

    def page(self, example):
        code = "".join(f"    {line}".rstrip() + "\n" for line in self.synopsis().splitlines())
        parts = [f"# NAME\n\n{self.name} - {self.summary}",
                 f"# SYNOPSIS\n\n    #include <dovrel/pos.h>\n\n{code}".rstrip(),
                 "# DESCRIPTION\n\n"
                 + "\n\n".join(mark_names(text, self.parameters, self.name) for text in self.description)]
        if self.tag_list("param"):
            parts.append("# PARAMETERS\n\n" + self.tag_list("param"))
        parts.append("# RETURN VALUE\n\n" + self.tag_list("retval")
                     + "\n\nRules for all functions are in **dovrel**(7): results and failures, pointers, sizes, "
                       "characters, threads.")
        if example:
            parts.append(example.strip())
        others = [f"**{name}**(3)" for name in SEE_ALSO[self.name]]
        parts.append("# SEE ALSO\n\n" + ", ".join([*others, "**dovrel**(7)"]))
        return "\n\n".join(parts) + "\n"


class Header:
    def __init__(self, text):
        self.functions = [Function(*found.groups()) for found in FUNCTION.finditer(text)]
        lines = comment_lines(re.match(r"/\*\n((?: \*.*\n)+?) \*/", text)[1])
        self.terms = re.findall(r"^  (\w+) +(.*(?:\n {12,}.*)*)", "\n".join(lines), re.MULTILINE)
        text = "\n".join(lines)
        self.contract = dict(re.findall(r"(?:^|\n\n)([A-Z][\w' ]+)\. (.*?)(?=\n\n|$)", text, re.DOTALL))
        # Two paragraphs without a title.
        self.contract["Without a session"] = re.search(r"\n\n(Without a session.*)$", text, re.DOTALL)[1]

    def terms_list(self):
        return "\n\n".join(f"*{term}*\n: {mark_names(re.sub(chr(92) + 's+', ' ', text))}" for term, text in self.terms)

    def paragraph(self, title):
        return "\n\n".join(mark_names(text) for text in paragraphs(self.contract[title].splitlines()))
