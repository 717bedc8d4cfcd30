#!/usr/bin/env python3
"""Writes the example songs into this folder, the same bytes every time.

Each piece is a few tables: chords, a tune, a pattern. A key is a MIDI note number (60 is the C in
the middle of the keyboard), a time is counted in beats.
"""

import pathlib
import struct

TICKS = 480  # a beat


def quantity(value):
    """A number as MIDI files write it: seven bits a byte, the top bit set on all but the last."""
    parts = [value & 0x7F]
    while value := value >> 7:
        parts.insert(0, 0x80 | value & 0x7F)
    return bytes(parts)


def chunk(kind, content):
    return kind + struct.pack(">I", len(content)) + content


class Track:
    def __init__(self, name, channel=0):
        self.channel = channel
        self.strikes = []
        self.events = [(0, 0, b"\xff\x03" + quantity(len(name)) + name.encode())]

    def tempo(self, beat, beats_a_minute):
        microseconds = round(60_000_000 / beats_a_minute)
        self.add(beat, 1, b"\xff\x51\x03" + microseconds.to_bytes(3, "big"))

    def note(self, beat, beats, key, velocity):
        assert 21 <= key <= 108 and 1 <= velocity <= 127
        self.strikes.append((beat, beat + beats * 0.96, key))
        self.add(beat, 3, bytes([0x90 | self.channel, key, velocity]))
        # Notes end a moment early, so that a repeated key is struck again.
        self.add(beat + beats * 0.96, 2, bytes([0x80 | self.channel, key, 64]))

    def notes(self, beat, beats, keys, velocity):
        for key in keys:
            self.note(beat, beats, key, velocity)

    def add(self, beat, order, message):
        self.events.append((round(beat * TICKS), order, message))

    def bytes(self):
        result, now = b"", 0
        for tick, _, message in sorted(self.events, key=lambda event: event[:2]):
            result += quantity(tick - now) + message
            now = tick
        return chunk(b"MTrk", result + quantity(TICKS) + b"\xff\x2f\x00")


def check(tracks):
    """A key sounds only once at a time, and the instrument has twelve voices."""
    strikes = [strike for track in tracks for strike in track.strikes]
    for start, _, key in strikes:
        sounding = [other for first, last, other in strikes if first <= start < last]
        assert sounding.count(key) == 1 and len(sounding) <= 12, (start, sounding)


def save(name, tracks):
    check(tracks)
    header = struct.pack(">HHH", 0 if len(tracks) == 1 else 1, len(tracks), TICKS)
    content = chunk(b"MThd", header) + b"".join(track.bytes() for track in tracks)
    (pathlib.Path(__file__).parent / name).write_bytes(content)


def attic_waltz():
    """A waltz in A minor: bass and two soft chords a bar, and a tune above them."""
    chords = {
        "Am": (45, (57, 60, 64)), "F": (41, (57, 60, 65)), "C": (48, (55, 60, 64)),
        "G": (43, (55, 59, 62)), "Dm": (50, (57, 62, 65)), "E7": (40, (56, 59, 62)),
        "Em": (40, (55, 59, 64)),
    }
    bars = [
        ("Am", [(2, 76), (1, 74)]), ("F", [(1.5, 72), (0.5, 69), (1, 72)]),
        ("C", [(2, 67), (1, 72)]), ("G", [(1, 74), (2, 71)]),
        ("Am", [(1, 72), (1, 76), (1, 81)]), ("Dm", [(2, 77), (1, 76)]),
        ("E7", [(1, 74), (1, 71), (1, 68)]), ("Am", [(3, 69)]),
        ("F", [(1.5, 81), (0.5, 79), (1, 77)]), ("G", [(1.5, 79), (0.5, 77), (1, 74)]),
        ("Em", [(2, 76), (1, 79)]), ("Am", [(1, 76), (1, 72), (1, 69)]),
        ("Dm", [(1.5, 74), (0.5, 76), (1, 77)]), ("G", [(1, 71), (1, 74), (1, 79)]),
        ("C", [(2, 76), (1, 72)]), ("E7", [(1, 71), (1, 74), (1, 68)]),
        ("Am", [(2, 76), (1, 74)]), ("Dm", [(0.5, 72), (0.5, 74), (1, 77), (1, 69)]),
        ("E7", [(1.5, 71), (0.5, 69), (1, 68)]),
    ]
    time, tune, hand = Track("time"), Track("tune", 0), Track("left hand", 1)
    time.tempo(0, 104)
    for number, (name, melody) in enumerate(bars):
        start = 3 * number
        bass, chord = chords[name]
        hand.note(start, 2.5, bass, 74)
        hand.notes(start + 1, 0.7, chord, 44)
        hand.notes(start + 2, 0.7, chord, 40)
        for beats, key in melody:
            tune.note(start, beats, key, 96 if start == 3 * number else 84)
            start += beats
    end = 3 * len(bars)
    for step, speed in enumerate((96, 86, 74)):  # the last bar but one slows down
        time.tempo(end - 3 + step, speed)
    hand.notes(end, 4, (33, 45, 57, 60, 64), 60)
    tune.notes(end, 4, (69, 81), 80)
    save("attic-waltz.mid", [time, tune, hand])


def slow_lanterns():
    """Wide, slow chords in D, with small lights going on and off above them."""
    chords = [
        (38, (54, 57, 61, 64)), (35, (54, 57, 62, 64)), (43, (50, 57, 59, 66)),
        (45, (52, 59, 62, 64)), (42, (52, 57, 61, 64)), (35, (50, 57, 62, 66)),
        (40, (50, 55, 59, 66)), (45, (50, 55, 59, 64)), (38, (50, 57, 64, 66)),
    ]
    lights = [  # (beat within the chord, step of the chord, octaves up, velocity)
        (0.5, 3, 1, 52), (1, 2, 2, 40), (4 / 3, 1, 2, 44), (5 / 3, 3, 1, 38),
        (2.5, 0, 2, 48), (3, 3, 2, 34), (3.5, 1, 2, 36),
    ]
    time, pad, bells = Track("time"), Track("chords", 0), Track("lights", 1)
    time.tempo(0, 58)
    for number, (bass, chord) in enumerate(chords):
        start, last = 4 * number, number == len(chords) - 1
        pad.note(start, 6 if last else 4, bass, 70)
        pad.notes(start, 6 if last else 4, chord, 52)
        # Every other chord the lights come in the opposite order of height.
        for beat, step, octaves, velocity in lights:
            key = chord[step if number % 2 == 0 else 3 - step] + 12 * octaves
            key += 12 if key in chord else 0
            bells.note(start + beat, 0.8, key, velocity)
    time.tempo(4 * len(chords) - 3, 52)
    time.tempo(4 * len(chords) - 1, 46)
    save("slow-lanterns.mid", [time, pad, bells])


def clockwork_garden():
    """A running figure in D dorian over an offbeat bass, all in one track."""
    chords = [
        (38, (62, 65, 69, 72)), (43, (62, 65, 67, 71)), (36, (60, 64, 67, 71)),
        (41, (60, 65, 67, 69)), (38, (62, 65, 69, 76)), (33, (60, 64, 67, 69)),
        (43, (59, 62, 67, 74)), (45, (61, 64, 67, 70)),
    ]
    figure = (0, 2, 1, 3, 2, 1, 3, 2, 0, 3, 1, 2, 3, 1, 2, 1)
    tune = [
        (0, 2.5, 81), (3, 1, 79), (4, 3, 77), (8, 2, 76), (10, 1, 74), (11, 1, 76), (12, 3, 72),
        (16, 2.5, 81), (19, 1, 84), (20, 3, 83), (24, 2, 79), (26, 2, 77), (28, 3, 76),
    ]
    song = Track("clockwork garden")
    song.tempo(0, 126)
    for verse in range(2):
        for number, (bass, chord) in enumerate(chords):
            start = 32 * verse + 4 * number
            for beat, key in ((0, bass), (1.5, bass + 12), (2.5, bass), (3.5, bass + 7)):
                song.note(start + beat, 0.45, key, 88 if beat == 0 else 66)
            for step, part in enumerate(figure):
                velocity = 62 if step % 4 == 0 else 46
                song.note(start + step / 4, 0.22, chord[part], velocity + 8 * verse)
        if verse == 1:
            for beat, beats, key in tune:
                song.note(32 * verse + beat, beats, key, 86)
    song.notes(64, 4, (26, 38, 57, 62, 65, 69, 74), 74)
    save("clockwork-garden.mid", [song])


def first_steps():
    """A few bars that ask everything of a preset: single notes, a low key, a high one, a chord."""
    song = Track("first steps")
    song.tempo(0, 92)
    for beat, beats, key, velocity in (
            (0, 1, 69, 88), (1, 0.5, 73, 76), (1.5, 0.5, 76, 80), (2, 1, 81, 90), (3, 1, 45, 92),
            (3.5, 0.5, 57, 70), (4, 0.25, 69, 84), (4.25, 0.25, 71, 72), (4.5, 0.25, 73, 76),
            (4.75, 0.25, 76, 80), (5, 1, 93, 70), (5.5, 1, 33, 96)):
        song.note(beat, beats, key, velocity)
    song.notes(7, 3, (45, 57, 64, 69, 73), 82)
    save("first-steps.mid", [song])


if __name__ == "__main__":
    first_steps()
    attic_waltz()
    slow_lanterns()
    clockwork_garden()
