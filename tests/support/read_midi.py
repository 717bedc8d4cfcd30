"""Reads a standard MIDI file of format 0 and writes down its notes: "SECONDS on|off KEY VELOCITY" and,
at the end, "SECONDS end". Nothing may be left over.   read_midi.py FILE TEXT
"""
import struct
import sys


def quantity(data, at):
    value = 0
    while True:
        value = value << 7 | data[at] & 0x7F
        at += 1
        if data[at - 1] < 0x80:
            return value, at


def main(text):
    file = open(sys.argv[1], "rb").read()
    magic, size, form, tracks, division = struct.unpack(">4sIHHH", file[:14])
    assert (magic, size, form, tracks) == (b"MThd", 6, 0, 1) and division < 0x8000
    magic, size = struct.unpack(">4sI", file[14:22])
    data = file[22:]
    assert magic == b"MTrk" and size == len(data)
    at, seconds, tempo = 0, 0.0, 500000
    while at < len(data):
        ticks, at = quantity(data, at)
        seconds += ticks * tempo / 1e6 / division
        if data[at] == 0xFF:
            kind, length = data[at + 1:at + 3]
            body = data[at + 3:at + 3 + length]
            at += 3 + length
            if kind == 0x51:
                tempo = int.from_bytes(body, "big")
            elif kind == 0x2F:
                assert at == len(data)
                print(f"{seconds:.4f} end", file=text)
        else:
            status, key, velocity = data[at:at + 3]
            at += 3
            assert status in (0x80, 0x90) and key < 128 and velocity < 128
            print(f"{seconds:.4f}", "on" if status == 0x90 else "off", key, velocity, file=text)


with open(sys.argv[2], "w") as written:
    main(written)
