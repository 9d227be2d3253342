#!/usr/bin/env python3
"""Measures what a host pays to begin, with a server that already runs and with one that has to be launched.

    start.py BUNDLE FOLDER [ROUNDS]

BUNDLE is the bundle below a system root, in the environment of scripts/in-root. FOLDER contains the built programs
startHost, startPeer and startPeerCpp. Each round starts each of them once. Prints medians over the rounds.
"""
import glob
import os
import socket
import statistics
import subprocess
import sys
import tempfile
import threading
import time

STEPS = ("exec to main", "dlopen", "InitializePOS", "registration", "first call")


def echo(listener):
    while True:
        connection, _ = listener.accept()
        with connection:
            while packet := connection.recv(4096):
                connection.send(packet)


def numbers(*command):
    """Runs a program to its end. Returns the numbers that it wrote."""
    return [float(word) for word in subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout.split()]


def differences(times):
    return [later - earlier for earlier, later in zip([0, *times], times)]


def server_runs():
    """Returns whether a program below the system root runs."""
    for link in glob.glob("/proc/[0-9]*/exe"):
        try:
            if os.readlink(link).startswith(os.environ["POS_SYSTEM_ROOT"] + "/"):
                return True
        except OSError:
            pass  # the process has ended, or belongs to another user
    return False


def launch(host, bundle):
    """Returns what a host wrote that had to launch the server. The server ends with its last client."""
    while server_runs():
        time.sleep(0.01)
    return numbers(host, bundle)


def measure(bundle, folder, rounds):
    """Returns for each round what the host, the peer and the peer with the C++ library wrote, and what hosts wrote that
    launched the server."""
    host, peer, cpp_peer = (os.path.join(folder, name) for name in ("startHost", "startPeer", "startPeerCpp"))
    with tempfile.TemporaryDirectory() as place, socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET) as listener:
        address = os.path.join(place, "socket")
        listener.bind(address)
        listener.listen()
        threading.Thread(target=echo, args=(listener,), daemon=True).start()
        with subprocess.Popen([host, bundle, "stay"], stdin=subprocess.PIPE, stdout=subprocess.PIPE) as first:
            first.stdout.readline()  # from now on the server runs
            results = [(numbers(host, bundle), numbers(peer, address), numbers(cpp_peer, address)) for _ in range(rounds)]
            first.stdin.close()
    return results, [launch(host, bundle) for _ in range(rounds)]


def print_steps(results, launches):
    print("| step of the host | processor time, µs |\n|---|--:|")
    for name, times in zip(STEPS, zip(*(differences(host[:len(STEPS)]) for host, _, _ in results))):
        print(f"| {name} | {statistics.median(times):.0f} |")
    registrations = [run[3] - run[2] for run in launches]
    print(f"| registration that launches the server | {statistics.median(registrations):.0f} |")


def print_ratios(results):
    print("\n| exec to the first reply | processor time, µs | ratio | memory, KiB | ratio | files |\n|---|--:|--:|--:|--:|--:|")
    for name, runs in zip(("host", "bare program", "bare program with the C++ library"), zip(*results)):
        time, memory, files = (statistics.median(run[index] for run in runs) for index in (-3, -2, -1))
        slower, larger = (statistics.median(run[index] / peer[index] for run, (_, peer, _) in zip(runs, results))
                          for index in (-3, -2))
        print(f"| {name} | {time:.0f} | {slower:.1f} | {memory:.0f} | {larger:.1f} | {files:.0f} |")


def main():
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    results, launches = measure(*sys.argv[1:3], int(sys.argv[3]) if len(sys.argv) == 4 else 41)
    print_steps(results, launches)
    print_ratios(results)


if __name__ == "__main__":
    main()
