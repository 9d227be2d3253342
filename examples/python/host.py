#!/usr/bin/env python3
"""host.py FILE: a host in Python. It does the same as host/host.c: it registers with the server, uses a Digest object
there to compute the MD5 of a file, and unregisters. On the way it also uses the other operations.

The digest is printed on a line of its own that begins with "digest: ".
"""
import sys
from pathlib import Path

import dovrel


def use_server(data):
    with dovrel.Session() as session, session.register("Dovrel example host", ["Digest"]) as application:
        print("interface version:", session.interface_version())
        print("server:", application.run("version").decode())
        with application.create("Digest") as digest:
            print("digest:", digest.call("md5", data).decode())


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: host.py FILE")
    try:
        use_server(Path(sys.argv[1]).read_bytes())
    except OSError as error:
        sys.exit(f"host.py: {error}")
    except dovrel.Failure as failure:
        sys.exit(f"host.py: {failure}; the alert, or the message above, says why")


if __name__ == "__main__":
    main()
