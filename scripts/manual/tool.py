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


class Help:
    """The help of a subcommand: what it does, its usage, its lists, and what follows them."""

    def __init__(self, tool, words):
        text = subprocess.run([tool, *words, "--help"], capture_output=True, text=True, check=True).stdout
        self.words = words
        about, rest = text.split("\nUsage: ", 1)
        self.about = " ".join(about.split())
        self.usage, rest = rest.split("\n", 1)
        self.lists = {title: body for title, body in re.findall(r"^(\w+):\n((?:  .*\n|\n(?=  ))+)", rest, re.MULTILINE)}
        self.end = rest.split("\nExit status: ", 1)[1]

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
    if "Examples" in about.lists:
        parts.append("Examples:\n\n" + re.sub("(?m)^  ", "    ", about.lists["Examples"]).rstrip())
    return "\n\n".join(parts) + "\n"


def leaves(tool, words):
    about = Help(tool, words)
    return [leaf for name in about.subcommands() for leaf in leaves(tool, [*words, name])] or [about]


def make_page(tool):
    main = Help(tool, [])
    status, *rest = main.end.strip().splitlines()
    sections = "\n".join(section(leaf) for leaf in leaves(tool, []))
    environment = "\n\n".join(escape(line) for line in rest)
    return (f"{BEGIN}{escape(main.about)} The option **--help** of a subcommand shows the same as this page.\n\n"
            f"# SUBCOMMANDS\n\n{sections}\n# EXIT STATUS\n\n{status}\n\n# ENVIRONMENT\n\n{environment}\n{END}")
