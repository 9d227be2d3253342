"""Makes the page of the command-line tool from its own help."""
import re
import subprocess

BEGIN = """# NAME

dovrel - command-line tool of the Dovrel library

# SYNOPSIS

**dovrel** *subcommand* [*options*]

# DESCRIPTION

"""
END = """
# SEE ALSO

**dovrel**(7), **dovrel-properties**(5), **dovrel-recording**(5), **merrowd.conf**(5)
"""


LIST = re.compile(r"^(\w+):\n((?:  .*\n|\n(?=  ))+)", re.MULTILINE)
VARIABLE = re.compile(r"\b[A-Z]+_[A-Z_]+\b")


class Help:
    """The help of a subcommand: what it does, its usage, its lists, its notes, and what follows the exit status."""

    def __init__(self, tool, words):
        text = subprocess.run([tool, *words, "--help"], capture_output=True, text=True, check=True).stdout
        self.words = words
        about, rest = text.split("\nUsage: ", 1)
        self.about = " ".join(about.split())
        self.usage, rest = rest.split("\n", 1)
        self.lists = dict(LIST.findall(rest))
        rest, self.end = rest.split("\nExit status: ", 1)
        self.notes = [" ".join(note.split()) for note in LIST.sub("", rest).split("\n\n") if note.strip()]

    def items(self, title):
        """Returns the pairs of a list: the name, and what is said about it."""
        found = []
        for line in self.lists.get(title, "").splitlines():
            entry = re.match(r"  (\S.*?)(?: {2,}(.*))?$", line)
            if entry:
                found.append([entry[1], entry[2] or ""])
            else:
                found[-1][1] = f"{found[-1][1]} {line.strip()}".strip()
        return found

    def subcommands(self):
        return [name for name, _ in self.items("Subcommands")]


def tidy_name(name):
    """Removes what the parser of arguments adds for itself."""
    name = re.sub(r" (Excludes|Needs): .*| REQUIRED| TEXT\b|\{false\}|:\w+ in \[.*?\]|:\{.*?\}", "", name)
    options, *value = name.split(" ", 1)
    return f"**{options.replace(',', ', ')}**" + "".join(f" *{word}*" for word in value)


def escape(text):
    return re.sub(r"([*_<>\\])", r"\\\1", text)


def section(about):
    usage = escape(about.usage.replace("[OPTIONS] ", "").replace(" [OPTIONS]", ""))
    parts = [f"## {usage}", escape(about.about) + ("" if about.about.endswith(".") else ".")]
    for title in ("Positionals", "Options"):
        for name, text in about.items(title):
            if not name.startswith("-h,"):
                parts.append(f"{tidy_name(name)}\n: {escape(text)}")
    parts += [escape(note) for note in about.notes]
    if "Examples" in about.lists:
        parts.append("Examples:\n\n" + re.sub("(?m)^  ", "    ", about.lists["Examples"]).rstrip())
    return "\n\n".join(parts) + "\n"


def with_subcommands(tool, about):
    """Returns the help, if it is not the tool's own one, and those of all subcommands below it."""
    below = [found for name in about.subcommands() for found in with_subcommands(tool, Help(tool, [*about.words, name]))]
    return [about, *below] if about.words else below


def make_page(tool):
    main = Help(tool, [])
    status, *rest = main.end.strip().splitlines()
    sections = "\n".join(section(about) for about in with_subcommands(tool, main))
    environment = "\n\n".join(escape(line) for line in rest if VARIABLE.search(line))
    others = " ".join(escape(line) for line in rest if not VARIABLE.search(line))
    return (f"{BEGIN}{escape(main.about)} {others}\n\n"
            f"# SUBCOMMANDS\n\n{sections}\n# EXIT STATUS\n\n{status}\n\n# ENVIRONMENT\n\n{environment}\n{END}")
