"""Writes preset bundles, good and hostile, into a folder: make_bundles.py FOLDER"""
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
    "good": bundle(sound()),
    "stored": bundle(sound(), method=zipfile.ZIP_STORED),
    "other-chime": bundle(sound(data=wav(pitch=700))),
    "newer": archive(("preset.plist", preset(more="<key>glow</key><real>0.5</real>"
                                             "<key>protected</key><true/>")),
                     ("cover.png", b"\x89PNG"), ("extras/", b""), ("extras/notes.txt", b"hello"),
                     sound()),
    "no-sound": bundle(),
    "shipped": archive(("preset.plist", preset("generated/sine"))),
    "shadow": archive(("preset.plist", preset("internal/Sine Wave.wav")), sound("Sine Wave.wav")),
    "repairs": archive(("preset.plist", preset(more="<key>grainMotion</key><integer>9</integer>")),
                       sound()),
    "parent": bundle(sound("../Chime.wav")),
    "inner-parent": bundle(sound("a/../../Chime.wav")),
    "absolute": bundle(sound("/tmp/Chime.wav")),
    "backslash": bundle(sound("..\\Chime.wav")),
    "control": bundle(sound("Chi\nme.wav")),
    "long-name": bundle(sound("x" * 300 + ".wav")),
    "link": bundle((special("Chime.wav", 0o120777), b"/etc/passwd")),
    "device": bundle((special("Chime.wav", 0o020666), b"")),
    "folder": bundle(("Chime.wav/", b"")),
    "encrypted": encrypted(),
    "twice": bundle(sound(), sound()),
    "twice-preset": bundle(("preset.plist", preset("other.wav")), sound()),
    "no-preset": archive(sound()),
    "nested": archive(("Chime/preset.plist", preset()), sound("Chime/Chime.wav")),
    "empty": archive(),
    "not-a-sound": bundle(sound(data=b"MZ" + bytes(200))),
    "half-sound": bundle(sound(data=wav()[:30])),
    "wrong-sum": wrong_sum(),
    "lzma": bundle(sound(), method=zipfile.ZIP_LZMA),
    "overlapping": overlapping(),
    "big-list": archive(("preset.plist", preset(more="<!--" + " " * (5 << 20) + "-->")), sound()),
    "claims-little": claiming(100),
    "claims-much": claiming(0xFFFFFFF0),
    "many": many(10000),
    "cut": bundle(sound())[:-60],
    "cut-in-sound": bundle(sound())[:400],
    "garbage": b"PK\3\4" + bytes(range(256)),
    "outside": archive(("preset.plist", preset("../../Chime.wav")), sound("../../Chime.wav")),
    "our-own": archive(("preset.plist", preset("presets.plist")), sound("presets.plist")),
    "hidden": archive(("preset.plist", preset(".running.marker")), sound(".running.marker")),
    "deep": archive(("preset.plist", deep(40))),
    "entities": archive(("preset.plist", ENTITIES)),
    "no-dictionary": archive(("preset.plist", b"<plist><string>Chime</string></plist>")),
}

if __name__ == "__main__":
    folder = Path(sys.argv[1])
    for name, data in BUNDLES.items():
        (folder / (name + ".ombrix")).write_bytes(data)
