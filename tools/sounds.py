#!/usr/bin/env python3
"""Listens by numbers to what the instrument ships with: renders examples/first-steps.mid and five
short phrases with every preset, measures them and every wave, and writes the tables of
docs/sounds.md. Ends with 1 if a preset clips, is silent, or is far from the others on any phrase.
Needs a release build with the target soundcheck.

    tools/sounds.py              measures and writes the tables
    tools/sounds.py --balance    sets the preamps in assets/presets/presets.txt first
"""

import argparse
import pathlib
import plistlib
import re
import statistics
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/release"
SONG = ROOT / "examples/first-steps.mid"
sys.dont_write_bytecode = True
sys.path.append(str(SONG.parent))
import compose  # writes the example songs

TABLE = ROOT / "assets/presets/presets.txt"
PAGE = ROOT / "docs/sounds.md"
MODES = ("Static", "Linear", "Bounce", "Chaos", "Drunken", "Scrambly", "Split Linear")
# What every preset plays besides the song: beat, beats, keys, velocity; two beats a second.
PHRASES = {
    "one note": [(0, 4, (69,), 100)],
    "chord": [(0, 4, (60, 64, 67), 100)],
    "scale": [(beat, 1, (key,), 100) for beat, key in enumerate((60, 62, 64, 65, 67, 69, 71, 72))],
    "low and high": [(0, 3, (36,), 100), (3, 3, (84,), 100)],
    "fortissimo": [(0, 4, (48, 60, 64, 67, 72), 127)],
}
LOUDNESS = -24.4  # LUFS, mean of the song and the phrases; near the loudest at which none clips
# dB from that: the first that anyone hears, and one whose low chords would clip.
TRIM = {"Default Sound": 0.8, "Robot Carillon": -0.8}
CEILING = 0.88  # of the peaks here: other chords have higher ones
BUFFERS = (64, 512, 1024)  # frames: the automatic gain takes hold a buffer late
SONG_SPREAD = 3  # dB between any two, on the song
PHRASE_SPREAD = 3  # dB either way from the middle, on a phrase


def run(*words):
    return subprocess.run([str(word) for word in words], check=True, capture_output=True,
                          text=True).stdout


def measures(paths):
    keys = ("seconds", "peak", "loudness", "centroid", "clips", "gap")
    lines = run(BUILD / "bin/soundcheck", *paths).splitlines()
    return [dict(zip(keys, map(float, line.split("\t")))) for line in lines]


def shipped_presets():
    """As the table stands now, by name, in its order, each with what it tells."""
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "presets.plist"
        run(BUILD / "bin/presetmaker", TABLE, path)
        presets = plistlib.loads(path.read_bytes())
    tells = re.findall(r"^\[(.*)\]\ntells = (.*)$", TABLE.read_text(), re.MULTILINE)
    return {name: presets[name.lower()] | {"tells": tell} for name, tell in tells}


def write_phrases(folder):
    """The songs to render, by name."""
    songs = {"song": SONG}
    for name, strikes in PHRASES.items():
        track = compose.Track(name)
        for strike in strikes:
            track.notes(*strike)
        songs[name] = pathlib.Path(folder) / f"{name}.mid"
        compose.save(songs[name], [track])
    return songs


def render(presets, song, frames):
    """The measures of a song with each preset."""
    with tempfile.TemporaryDirectory() as folder:
        paths = []
        for number, preset in enumerate(presets.values()):
            plist, wav = (pathlib.Path(folder) / f"{number}.{kind}" for kind in ("plist", "wav"))
            content = {key: value for key, value in preset.items() if key != "tells"}
            plist.write_bytes(plistlib.dumps(content))
            run(BUILD / "bin/ombrix", "render", song, "--preset", plist, "--output", wav,
                "--buffer-frames", frames)
            paths.append(wav)
        return dict(zip(presets, measures(paths)))


def listen(presets, frames=512):
    """Of each song, the measures with each preset."""
    with tempfile.TemporaryDirectory() as folder:
        songs = write_phrases(folder)
        return {name: render(presets, song, frames) for name, song in songs.items()}


def set_preamp(name, preamp):
    text = TABLE.read_text()
    start = text.index(f"[{name}]\n")
    end = text.find("\n\n", start)
    block = text[start:end if end > 0 else len(text)].rstrip("\n")
    block = re.sub(r"\npreamp = .*", "", block)
    block = re.sub(r"(\nwave = .*)", rf"\1\npreamp = {preamp:.3g}", block)
    TABLE.write_text(text[:start] + block + (text[end:] if end > 0 else "\n"))


def balance(rounds=4):
    for _ in range(rounds):
        presets = shipped_presets()
        found = listen(presets)
        for name, preset in presets.items():
            heard = [song[name] for song in found.values()]
            wanted = LOUDNESS + TRIM.get(name, 0)
            short = wanted - statistics.mean(m["loudness"] for m in heard)
            change = 10 ** (short / 25)  # the automatic gain pushes back
            change = min(change, CEILING / max(m["peak"] for m in heard))
            if abs(change - 1) > 0.025:
                set_preamp(name, min(max(preset["preamp"] * change, 0.01), 1.25))


def wave_rows():
    rows = ["| Wave | Seconds | Pitch | At its end | Loudness, LUFS | Centroid | What it is |",
            "|---|--:|--:|---|--:|--:|---|"]
    for line in run(BUILD / "bin/soundmaker", "--list").splitlines():
        name, hertz, end = line.split("\t")
        source = (ROOT / "tools/soundmaker/waves" / (name.replace(" ", "") + ".cpp")).read_text()
        comment = re.findall(r"((?:^/// .*\n)+)Sound \w+\(\) {", source, re.MULTILINE)[0]
        what = " ".join(part[4:] for part in comment.splitlines())
        (found,) = measures([BUILD / f"Ombrix.app/{name}.wav"])
        pitch = "none" if hertz == "0" else f"{hertz} Hz"
        rows.append(f"| {name} | {found['seconds']:.1f} | {pitch} | {end} | "
                    f"{found['loudness']:.1f} | {found['centroid']:.0f} Hz | {what} |")
    return rows


def preset_rows(presets, found):
    rows = ["| Preset | Wave | Grains | Peak | Loudness, LUFS | Centroid | Clips | What one hears |",
            "|---|---|---|--:|--:|--:|--:|---|"]
    for name, preset in presets.items():
        m = found[name]
        wave = preset["wave"].removeprefix("internal/").removesuffix(".wav")
        rows.append(f"| {name} | {wave} | {MODES[preset['grainMotion']]} | {m['peak']:.2f} | "
                    f"{m['loudness']:.1f} | {m['centroid']:.0f} Hz | {m['clips']:.0f} | "
                    f"{preset['tells']} |")
    return rows


def write_page(name, rows):
    text = PAGE.read_text()
    begin, end = f"<!-- {name}: written by tools/sounds.py -->\n", f"<!-- end of {name} -->"
    head, rest = text.split(begin)
    PAGE.write_text(head + begin + "\n".join(rows) + "\n" + end + rest.split(end)[1])


def faults(song, found):
    loud = {name: m["loudness"] for name, m in found.items()}
    quietest, loudest = min(loud, key=loud.get), max(loud, key=loud.get)
    middle = statistics.median(loud.values())
    print(f"{song}: {loud[quietest]:.1f} LUFS ({quietest}) to {loud[loudest]:.1f} ({loudest}), "
          f"middle {middle:.1f}")
    if song == "song" and loud[loudest] - loud[quietest] > SONG_SPREAD:
        yield f"{loudest} is more than {SONG_SPREAD} dB louder than {quietest}"
    for name, m in found.items():
        if abs(m["loudness"] - middle) > PHRASE_SPREAD:
            yield f"{name} is {m['loudness'] - middle:+.1f} dB from the others in the {song}"
        if m["loudness"] < -40 or m["gap"] > 1:
            yield f"{name} is silent in the {song}, at least for {m['gap']:.1f} s"


def clips(frames, found):
    for song, presets_found in found.items():
        for name, m in presets_found.items():
            if m["clips"]:
                yield f"{name} clips {m['clips']:.0f} times in the {song}, {frames} frames a buffer"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--balance", action="store_true")
    if parser.parse_args().balance:
        balance()
    presets = shipped_presets()
    found = {frames: listen(presets, frames) for frames in BUFFERS}
    write_page("waves", wave_rows())
    write_page("presets", preset_rows(presets, found[512]["song"]))
    wrong = [line for frames, heard in found.items() for line in clips(frames, heard)]
    for song, heard in found[512].items():
        wrong += faults(song, heard)
    print("\n".join(wrong))
    raise SystemExit(1 if wrong else 0)


if __name__ == "__main__":
    main()
