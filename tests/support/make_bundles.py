"""Writes preset bundles, good and hostile, into a folder: make_bundles.py FOLDER [NAME...]"""
import io
import math
import struct
import sys
import warnings
import zipfile
from pathlib import Path

warnings.simplefilter("ignore")  # zipfile dislikes names that stand there twice


def plist(inside):
    return ('<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0"><dict>' + inside
            + "</dict></plist>\n").encode()


def preset(wave="Chime.wav", more=""):
    return plist("<key>name</key><string>Chime</string><key>preamp</key><real>0.5</real>"
                 f"<key>wave</key><string>{wave}</string>{more}")


def wav(frames=200, pitch=440):
    data = b"".join(struct.pack("<h", int(9000 * math.sin(i * 2 * math.pi * pitch / 44100)))
                    for i in range(frames))
    return (b"RIFF" + struct.pack("<I", 36 + len(data)) + b"WAVEfmt "
            + struct.pack("<IHHIIHH", 16, 1, 1, 44100, 88200, 2, 16) + b"data"
            + struct.pack("<I", len(data)) + data)


def archive(*entries, method=zipfile.ZIP_DEFLATED):
    """Entries are (name or ZipInfo, bytes)."""
    out = io.BytesIO()
    with zipfile.ZipFile(out, "w", method) as file:
        for name, data in entries:
            file.writestr(name, data, compress_type=method)
    return out.getvalue()


def bundle(*more, **options):
    return archive(("preset.plist", preset()), *more, **options)


def sound(name="Chime.wav", data=None):
    return (name, wav() if data is None else data)


def named(name, prefix=""):
    return archive(("preset.plist", preset(prefix + name)), sound(name))


def saying(more):
    return archive(("preset.plist", preset(more=more)), sound())


def special(name, mode):
    info = zipfile.ZipInfo(name)
    info.create_system = 3
    info.external_attr = mode << 16
    return info


def changed(data, local_at, central_at, value):
    """Overwrites a field in both headers of the last entry."""
    data = bytearray(data)
    for signature, at in ((b"PK\3\4", local_at), (b"PK\1\2", central_at)):
        at += data.rfind(signature)
        data[at:at + len(value)] = value
    return bytes(data)


def encrypted():
    return changed(bundle(sound()), 6, 8, b"\1\0")


def claiming(size):
    return changed(archive(("preset.plist", b" " * (5 << 20))), 22, 24, struct.pack("<I", size))


def wrong_sum():
    data = bytearray(bundle(sound(), method=zipfile.ZIP_STORED))
    data[data.find(b"data") + 50] ^= 255
    return bytes(data)


def overlapping():
    """The sound's entry points to the preset's bytes."""
    data = bytearray(bundle(sound()))
    last = data.rfind(b"PK\1\2")
    data[last + 42:last + 46] = struct.pack("<I", 0)
    return bytes(data)


def many(count):
    return archive(("preset.plist", preset()), *((f"{i:04x}", b"") for i in range(count)),
                   method=zipfile.ZIP_STORED)


def deep(depth):
    return plist("<key>a</key>" + "<array>" * depth + "</array>" * depth)


ENTITIES = (b'<?xml version="1.0"?><!DOCTYPE plist [<!ENTITY a "aaaaaaaa"><!ENTITY b "&a;&a;&a;">]>'
            b"<plist><dict><key>name</key><string>&b;</string></dict></plist>")

BUNDLES = {
    "good": lambda: bundle(sound()),
    "stored": lambda: bundle(sound(), method=zipfile.ZIP_STORED),
    "other-chime": lambda: bundle(sound(data=wav(pitch=700))),
    "newer": lambda: archive(("preset.plist", preset(more="<key>glow</key><real>0.5</real>"
                                             "<key>protected</key><true/>")),
                     ("cover.png", b"\x89PNG"), ("extras/", b""), ("extras/notes.txt", b"hello"),
                     sound()),
    "no-sound": lambda: bundle(),
    "shipped": lambda: archive(("preset.plist", preset("generated/sine"))),
    "shadow": lambda: named("Sine Wave.wav", "internal/"),
    "repairs": lambda: saying("<key>grainMotion</key><integer>9</integer>"),
    "parent": lambda: bundle(sound("../Chime.wav")),
    "inner-parent": lambda: bundle(sound("a/../../Chime.wav")),
    "absolute": lambda: bundle(sound("/tmp/Chime.wav")),
    "backslash": lambda: bundle(sound("..\\Chime.wav")),
    "control": lambda: bundle(sound("Chi\nme.wav")),
    "long-name": lambda: bundle(sound("x" * 300 + ".wav")),
    "link": lambda: bundle((special("Chime.wav", 0o120777), b"/etc/passwd")),
    "device": lambda: bundle((special("Chime.wav", 0o020666), b"")),
    "folder": lambda: bundle(("Chime.wav/", b"")),
    "encrypted": lambda: encrypted(),
    "twice": lambda: bundle(sound(), sound()),
    "twice-preset": lambda: bundle(("preset.plist", preset("other.wav")), sound()),
    "no-preset": lambda: archive(sound()),
    "nested": lambda: archive(("Chime/preset.plist", preset()), sound("Chime/Chime.wav")),
    "empty": lambda: archive(),
    "not-a-sound": lambda: bundle(sound(data=b"MZ" + bytes(200))),
    "half-sound": lambda: bundle(sound(data=wav()[:30])),
    "wrong-sum": lambda: wrong_sum(),
    "lzma": lambda: bundle(sound(), method=zipfile.ZIP_LZMA),
    "overlapping": lambda: overlapping(),
    "big-list": lambda: saying("<!--" + " " * (5 << 20) + "-->"),
    "claims-little": lambda: claiming(100),
    "claims-much": lambda: claiming(0xFFFFFFF0),
    "many": lambda: many(10000),
    "cut": lambda: bundle(sound())[:-60],
    "cut-in-sound": lambda: bundle(sound())[:400],
    "garbage": lambda: b"PK\3\4" + bytes(range(256)),
    "outside": lambda: named("../../Chime.wav"),
    "our-own": lambda: named("presets.plist"),
    "hidden": lambda: named(".running.marker"),
    "deep": lambda: archive(("preset.plist", deep(40))),
    "no-keys": lambda: archive(("preset.plist", plist("<key>glow</key><true/>"))),
    "entities": lambda: archive(("preset.plist", ENTITIES)),
    "no-dictionary": lambda: archive(("preset.plist", b"<plist><string>Chime</string></plist>")),
}

if __name__ == "__main__":
    folder = Path(sys.argv[1])
    for name in sys.argv[2:] or BUNDLES:
        (folder / (name + ".ombrix")).write_bytes(BUNDLES[name]())
