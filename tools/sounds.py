#!/usr/bin/env python3
"""Listens by numbers to what the instrument ships with: renders examples/first-steps.mid with every
preset, measures that and every wave, and writes the tables of docs/sounds.md. Ends with 1 if a
preset clips, is silent, or is more than 3 dB from another. Needs a release build with the target
soundcheck.

    tools/sounds.py              measures and writes the tables
    tools/sounds.py --balance    sets the preamps in assets/presets/presets.txt first
"""

import argparse
import pathlib
import plistlib
import re
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/release"
SONG = ROOT / "examples/first-steps.mid"
TABLE = ROOT / "assets/presets/presets.txt"
PAGE = ROOT / "docs/sounds.md"
MODES = ("Static", "Linear", "Bounce", "Chaos", "Drunken", "Scrambly", "Split Linear")
LOUDNESS = -24  # LUFS: there, a chord of five keys struck as hard as can be hardly ever clips
SPREAD = 3  # dB


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


def render(presets, *options):
    """The measures of the song with each preset."""
    with tempfile.TemporaryDirectory() as folder:
        paths = []
        for number, preset in enumerate(presets.values()):
            plist, wav = (pathlib.Path(folder) / f"{number}.{kind}" for kind in ("plist", "wav"))
            content = {key: value for key, value in preset.items() if key != "tells"}
            plist.write_bytes(plistlib.dumps(content))
            run(BUILD / "bin/ombrix", "render", SONG, "--preset", plist, "--output", wav, *options)
            paths.append(wav)
        return dict(zip(presets, measures(paths)))


def set_preamp(name, preamp):
    text = TABLE.read_text()
    start = text.index(f"[{name}]\n")
    end = text.find("\n\n", start)
    block = text[start:end if end > 0 else len(text)].rstrip("\n")
    block = re.sub(r"\npreamp = .*", "", block)
    block = re.sub(r"(\nwave = .*)", rf"\1\npreamp = {preamp:.3g}", block)
    TABLE.write_text(text[:start] + block + (text[end:] if end > 0 else "\n"))


def balance(rounds=6):
    for _ in range(rounds):
        presets = shipped_presets()
        for name, found in render(presets).items():
            change = 10 ** ((LOUDNESS - found["loudness"]) / 25)  # the automatic gain pushes back
            if abs(LOUDNESS - found["loudness"]) > 0.25:
                set_preamp(name, min(max(presets[name]["preamp"] * change, 0.01), 1.25))


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


def faults(found):
    loud = {name: m["loudness"] for name, m in found.items()}
    quietest, loudest = min(loud, key=loud.get), max(loud, key=loud.get)
    print(f"{len(found)} presets, {loud[quietest]:.1f} LUFS ({quietest}) to {loud[loudest]:.1f} "
          f"({loudest})")
    if loud[loudest] - loud[quietest] > SPREAD:
        yield f"{loudest} is more than {SPREAD} dB louder than {quietest}"
    for name, m in found.items():
        if m["clips"]:
            yield f"{name} clips {m['clips']:.0f} times"
        if m["loudness"] < -40 or m["gap"] > 1:
            yield f"{name} is silent, at least for {m['gap']:.1f} s"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--balance", action="store_true")
    if parser.parse_args().balance:
        balance()
    presets = shipped_presets()
    found = render(presets)
    write_page("waves", wave_rows())
    write_page("presets", preset_rows(presets, found))
    wrong = list(faults(found))
    print("\n".join(wrong))
    raise SystemExit(1 if wrong else 0)


if __name__ == "__main__":
    main()
