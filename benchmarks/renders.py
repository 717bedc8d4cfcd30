#!/usr/bin/env python3
"""Measures whole runs of `ombrix render`: CPU seconds and peak memory, as medians of alternating
pairs, each beside what it may cost at most. Needs the ffmpeg program and a release build.

    benchmarks/renders.py [--program build/release/bin/ombrix] [--pairs 5]
"""

import argparse
import array
import math
import os
import pathlib
import statistics
import struct
import tempfile

RATE = 44100
MEBIBYTE = 1 << 20


def run(words):
    """CPU seconds and peak memory in bytes of one run."""
    child = os.posix_spawnp(words[0], words, os.environ, file_actions=[
        (os.POSIX_SPAWN_OPEN, 1, "/dev/null", os.O_WRONLY, 0)])
    _, status, usage = os.wait4(child, 0)
    if status != 0:
        raise SystemExit(f"failed: {' '.join(words)}")
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024


def cpu(words):
    return run(words)[0]


def pairs(count, one, other):
    """Medians of both and of their ratios, taken in turn."""
    rows = [(one(), other()) for _ in range(count)]
    return (statistics.median(a for a, _ in rows), statistics.median(b for _, b in rows),
            statistics.median(a / b for a, b in rows))


def quantity(number):
    digits = [number & 127]
    while number := number >> 7:
        digits.insert(0, number & 127 | 128)
    return bytes(digits)


def write_song(path, seconds):
    """Chords of twelve keys, one every second."""
    track = b""
    for chord in range(seconds):
        keys = [36 + (chord * 5 + k * 7) % 60 for k in range(12)]
        track += b"".join(b"\0" + bytes([0x90, key, 80]) for key in keys)
        track += quantity(900) + bytes([0x80, keys[0], 0])
        track += b"".join(b"\0" + bytes([0x80, key, 0]) for key in keys[1:])
        track += quantity(60) + bytes([0xb0, 7, 100])
    track += b"\0\xff\x2f\0"
    path.write_bytes(b"MThd" + struct.pack(">IHHH", 6, 0, 1, 480) +
                     b"MTrk" + struct.pack(">I", len(track)) + track)


def write_wav(path, seconds, rate=RATE, channels=1):
    period = array.array("h", (round(20000 * math.sin(i * 0.0427) * math.sin(i * 0.0031))
                               for i in range(rate * channels)))
    data = period.tobytes() * seconds
    header = struct.pack("<4sI8sIHHIIHH4sI", b"RIFF", 36 + len(data), b"WAVEfmt ", 16, 1, channels,
                         rate, rate * 2 * channels, 2 * channels, 16, b"data", len(data))
    path.write_bytes(header + data)


class Report:
    def row(self, what, value, at_most, unit=""):
        mark = "" if value <= at_most else "  <-- too much"
        print(f"{what:<58} {value:10.3f} {at_most:10.3f} {unit}{mark}")


def measure(program, count, folder):
    report = Report()
    print(f"{'':<58} {'measured':>10} {'at most':>10}")
    songs = {seconds: folder / f"{seconds}.mid" for seconds in (1, 60, 600)}
    for seconds, path in songs.items():
        write_song(path, seconds)
    sounds = {seconds: folder / f"{seconds}.wav" for seconds in (2, 600)}
    for seconds, path in sounds.items():
        write_wav(path, seconds)
    out = ["--output", str(folder / "out.wav"), "--force"]
    effects = [word for setting in ("ringModDepth=0.7", "filterResonance=0.5", "distortion=0.3",
                                    "echoDelay=0.3", "echoFeedback=0.4") for word in ("--set", setting)]

    def render(song, *options):
        return [program, "render", str(song), *out, *map(str, options)]

    def rendering_only(sound):
        words = render(songs[60], "--sound", sound, "--seconds", 60)
        return cpu(words) - cpu(words[:-1] + ["0"])

    report.row("one second of a PCM sound, start to end",
               1000 * statistics.median(cpu(render(songs[1], "--sound", sounds[2], "--seconds", 1))
                                        for _ in range(count)), 60, "ms of CPU")
    _, _, ratio = pairs(count, lambda: cpu(render(songs[600], *effects, "--seconds", 600)),
                        lambda: cpu(render(songs[60], *effects, "--seconds", 60)))
    report.row("rendering 600 s against 60 s, all effects on", ratio, 11)
    long_peak, short_peak, _ = pairs(
        1, lambda: run(render(songs[600], "--seconds", 600))[1],
        lambda: run(render(songs[60], "--seconds", 60))[1])
    report.row("  peak memory of the one above that of the other",
               (long_peak - short_peak) / MEBIBYTE, 1, "MiB")
    _, _, ratio = pairs(count, lambda: rendering_only(sounds[600]),
                        lambda: rendering_only(sounds[2]))
    report.row("a sound of 10 minutes against one of 2 s, rendering only", ratio, 1.5)

    empty = run([program, "--version"])[1]
    for channels, bytes_per_frame in ((1, 4.5), (2, 13)):
        path = folder / f"memory{channels}.wav"
        write_wav(path, 600, channels=channels)
        peak = run(render(songs[1], "--sound", path, "--seconds", 1))[1] - empty
        report.row(f"memory while loading 10 minutes of {channels} channels, a frame",
                   (peak - 12 * MEBIBYTE) / (600 * RATE), bytes_per_frame, "bytes above 12 MiB")

    write_wav(folder / "48.wav", 600, rate=48000, channels=2)
    for name, codec, at_most in (("wav", "copy", 1.1), ("aiff", "pcm_s16be", 1.1),
                                 ("m4a", "aac", 1.3)):
        path = folder / f"loading.{name}"
        cpu(["ffmpeg", "-v", "error", "-y", "-i", str(folder / "48.wav"), "-c:a", codec, str(path)])
        ours, theirs, ratio = pairs(
            count, lambda: cpu(render(songs[1], "--sound", path, "--seconds", 0)),
            lambda: cpu(["ffmpeg", "-v", "error", "-y", "-threads", "1", "-i", str(path), "-ac",
                         "1", "-ar", str(RATE), "-f", "f32le", "/dev/null"]))
        report.row(f"loading 10 minutes of 48 kHz stereo {name} against ffmpeg", ratio, at_most,
                   f"({ours:.2f} s / {theirs:.2f} s)")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    root = pathlib.Path(__file__).resolve().parent.parent
    parser.add_argument("--program", default=str(root / "build/release/bin/ombrix"))
    parser.add_argument("--pairs", type=int, default=5)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        measure(arguments.program, arguments.pairs, pathlib.Path(folder))


if __name__ == "__main__":
    main()
