"""What is measured of each row: the cases."""
from dataclasses import dataclass

KINDS = ("calls", "threads", "hosts", "first", "start")
MODES = {
    "one": "one CPU",
    "two": "two CPUs",
    "free": "not pinned",
    "idle": "not pinned, 1 ms idle before each call",
}
IDLE_MICROSECONDS = 1000
SHARING_SIZES = (64, 65536)  # bytes; the sizes at which several threads and hosts are measured
UNITS = {"": 1, "B": 1, "KIB": 1 << 10, "K": 1 << 10, "MIB": 1 << 20, "M": 1 << 20}


@dataclass(frozen=True, order=True)
class Case:
    kind: str  # calls, first, start
    mode: str
    size: int  # bytes
    threads: int = 1
    hosts: int = 1

    def title(self):
        words = [{"calls": "", "first": "first call, ", "start": "start, "}[self.kind] + size_text(self.size), MODES[self.mode]]
        if self.threads > 1:
            words.append(f"{self.threads} threads")
        if self.hosts > 1:
            words.append(f"{self.hosts} hosts")
        return ", ".join(words)

    def arguments(self, processors, seconds):
        """Those of the row's program. `processors`: the one of the hosts, then the one of the server."""
        client, server = processors[0], processors[-1] if self.mode == "two" else processors[0]
        result = ["--kind", self.kind, "--size", self.size, "--threads", self.threads, "--hosts", self.hosts,
                  "--seconds", seconds]
        if self.mode in ("one", "two"):
            result += ["--client-cpu", client, "--server-cpu", server]
        if self.mode == "idle":
            result += ["--pause", IDLE_MICROSECONDS]
        return [str(argument) for argument in result]


def cases(kinds, modes, sizes, threads, hosts, processors):
    """In the order in which they are measured, each once. `processors`: how many there are to pin to, 1 or 2."""
    modes = [mode for mode in modes if mode != "two" or processors > 1]
    pinned = "two" if processors > 1 else "one"
    shared = [size for size in sizes if size in SHARING_SIZES] or sizes[:1]
    found = []
    if "calls" in kinds:
        found += [Case("calls", mode, size) for mode in modes for size in sizes]
    if "threads" in kinds:
        found += [Case("calls", "free", size, threads=count) for size in shared for count in threads]
    if "hosts" in kinds:
        found += [Case("calls", "free", size, hosts=count) for size in shared for count in hosts]
    if "first" in kinds:
        found.append(Case("first", pinned, sizes[0]))
    if "start" in kinds:
        found.append(Case("start", pinned, sizes[0]))
    return list(dict.fromkeys(found))


def heading(title):
    return title[0].upper() + title[1:]


def size_text(size):
    for unit, factor in (("MiB", 1 << 20), ("KiB", 1 << 10)):
        if size % factor == 0:
            return f"{size // factor} {unit}"
    return f"{size} B"


def parse_size(text):
    """Bytes of "64", "4KiB", "4K", "1MiB", "1M". Raises ValueError."""
    digits = text.rstrip("BKMibkm")
    factor = UNITS.get(text[len(digits):].strip().upper())
    size = int(digits) * factor if factor else 0
    if not 1 <= size <= 1 << 30:
        raise ValueError(text)
    return size
