#!/usr/bin/env python3
"""Counts lost periods: `ombrix play` beside a client that only writes silence, in alternating turns
on a JACK server with the dummy driver. Needs jackd and a release build.

    benchmarks/xruns.py [--pairs 5] [--seconds 60] [--frames 256]
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
SERVER = "ombrix-xruns"


def lost_periods(client, seconds, frames):
    environment = dict(os.environ, JACK_NO_START_SERVER="1", JACK_DEFAULT_SERVER=SERVER)
    with tempfile.TemporaryFile("w+") as log:
        server = subprocess.Popen(["jackd", "-r", "--no-mlock", "-n", SERVER, "-d", "dummy", "-r",
                                   "44100", "-p", str(frames)], stdout=log, stderr=log)
        try:
            subprocess.run(["jack_wait", "-w", "-t", "5", "-s", SERVER], env=environment,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
            player = subprocess.Popen(client, env=environment, stdout=subprocess.DEVNULL,
                                      stderr=subprocess.DEVNULL)
            time.sleep(seconds)
            player.terminate()
            player.wait()
        finally:
            server.terminate()
            server.wait()
        log.seek(0)
        return sum("XRun" in line for line in log)


def measure(arguments, ours):
    turns = []
    for _ in range(arguments.pairs):
        turns.append([lost_periods(client, arguments.seconds, arguments.frames)
                      for client in (["jack_thru"], ours)])
        print("silence {}, ombrix {}".format(*turns[-1]), flush=True)
    silence, ombrix = (sum(column) for column in zip(*turns))
    allowed = silence + 3 * math.sqrt(silence) + 3
    print(f"in all: silence {silence}, ombrix {ombrix}, at most {allowed:.1f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--pairs", type=int, default=5)
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--frames", type=int, default=256)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        song = pathlib.Path(folder) / "chords.mid"
        write_song(song, int(arguments.seconds) + 5)
        measure(arguments, [str(ROOT / "build/release/bin/ombrix"), "play", str(song), "--device",
                            "jack", "--set", "ringModDepth=0.5", "--set", "echoDelay=0.4", "--set",
                            "echoFeedback=0.5", "--set", "distortion=0.3"])


if __name__ == "__main__":
    main()
