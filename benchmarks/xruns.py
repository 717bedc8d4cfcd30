#!/usr/bin/env python3
"""Counts lost periods: ours beside a client that only writes silence, in alternating turns on a JACK
server with the dummy driver. Ours is `ombrix play`, or with --storm `ombrix live`, which another
program plays so many messages a second, beside the silence too. Needs jackd, a release build and,
for the storm, the benchmarks.

    benchmarks/xruns.py [--pairs 5] [--seconds 60] [--frames 256] [--storm 100000]
"""

import argparse
import math
import os
import pathlib
import subprocess
import tempfile
import time

from renders import write_song

ROOT = pathlib.Path(__file__).resolve().parent.parent
BIN = ROOT / "build/release/bin"
SERVER = "ombrix-xruns"
SETTLED = 3  # seconds until a program has all the memory that it starts with


class Program:
    """A program beside the server, which ends with the block."""

    def __init__(self, words, **more):
        self.process = subprocess.Popen(words, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL, **more)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def resident_kilobytes(self):
        for line in open(f"/proc/{self.process.pid}/status"):
            if line.startswith("VmRSS"):
                return int(line.split()[1])
        return 0


def turn(client, storm, seconds, frames):
    """Lost periods, and kilobytes that the client has grown by."""
    with tempfile.TemporaryFile("w+") as log, tempfile.TemporaryDirectory() as home:
        environment = dict(os.environ, JACK_NO_START_SERVER="1", JACK_DEFAULT_SERVER=SERVER,
                           XDG_CONFIG_HOME=home, OMBRIX_DATA=home)
        server = subprocess.Popen(["jackd", "-r", "--no-mlock", "-n", SERVER, "-d", "dummy", "-r",
                                   "44100", "-p", str(frames)], stdout=log, stderr=log)
        try:
            subprocess.run(["jack_wait", "-w", "-t", "5", "-s", SERVER], env=environment,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
            with Program(storm, env=environment), Program(client, env=environment) as heard:
                time.sleep(min(SETTLED, seconds / 2))
                before = heard.resident_kilobytes()
                time.sleep(seconds - min(SETTLED, seconds / 2))
                growth = heard.resident_kilobytes() - before
        finally:
            server.terminate()
            server.wait()
        log.seek(0)
        return sum("XRun" in line for line in log), growth


def measure(arguments, ours, storm):
    turns = []
    for _ in range(arguments.pairs):
        (silence, _), (ombrix, growth) = (
            turn(client, storm, arguments.seconds, arguments.frames)
            for client in (["jack_thru"], ours))
        turns.append([silence, ombrix])
        print(f"silence {silence}, ombrix {ombrix}, {growth:+} kB", flush=True)
    silence, ombrix = (sum(column) for column in zip(*turns))
    allowed = silence + 3 * math.sqrt(silence) + 3
    print(f"in all: silence {silence}, ombrix {ombrix}, at most {allowed:.1f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--pairs", type=int, default=5)
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--frames", type=int, default=256)
    parser.add_argument("--storm", type=float, metavar="MESSAGES", help="a second")
    arguments = parser.parse_args()
    sound = ["--device", "jack", "--set", "ringModDepth=0.5", "--set", "echoDelay=0.4", "--set",
             "echoFeedback=0.5", "--set", "distortion=0.3"]
    if arguments.storm:
        return measure(arguments, [str(BIN / "ombrix"), "live"] + sound,
                       [str(BIN / "midi_port_cost"), "storm", str(arguments.storm)])
    with tempfile.TemporaryDirectory() as folder:
        song = pathlib.Path(folder) / "chords.mid"
        write_song(song, int(arguments.seconds) + 5)
        return measure(arguments, [str(BIN / "ombrix"), "play", str(song)] + sound,
                       ["sleep", "infinity"])


if __name__ == "__main__":
    main()
