#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The interface sounds: short, soft WAV files, and the table of their names for the C++ sources."""
import math
import os
import struct
import sys
import wave

RATE = 48000

# The only table of the sounds. The sound "move" answers FEEDBACK_PATTERN_MOVE and is in move.wav.
# Name: notes of (start in seconds, frequency in Hz, length in seconds, loudness from 0 to 1).
SOUNDS = {
    "move": [(0.00, 880.0, 0.05, 0.16)],
    "select": [(0.00, 659.3, 0.06, 0.18), (0.05, 987.8, 0.10, 0.18)],
    "back": [(0.00, 740.0, 0.06, 0.18), (0.05, 493.9, 0.10, 0.18)],
    "blocked": [(0.00, 196.0, 0.09, 0.24)],
    "popup": [(0.00, 523.3, 0.12, 0.16), (0.06, 784.0, 0.20, 0.16)],
}


def shape(age, length):
    """Rises for 4 ms, so that nothing clicks, and dies away."""
    return min(1.0, age / 0.004) * math.exp(-4.0 * age / length)


def sample(notes, moment):
    value = 0.0
    for start, frequency, length, loudness in notes:
        age = moment - start
        if 0.0 <= age < length * 1.5:
            tone = math.sin(2 * math.pi * frequency * age)
            tone += 0.2 * math.sin(4 * math.pi * frequency * age)
            value += loudness * shape(age, length) * tone
    return value


def write(path, notes):
    total = max(start + length * 1.5 for start, _, length, _ in notes)
    count = int(total * RATE)
    fade = int(0.005 * RATE)
    frames = bytearray()
    for index in range(count):
        value = sample(notes, index / RATE) * min(1.0, (count - index) / fade)
        frames += struct.pack("<h", int(max(-1.0, min(1.0, value)) * 32767))
    with wave.open(path, "wb") as out:
        out.setnchannels(1)
        out.setsampwidth(2)
        out.setframerate(RATE)
        out.writeframes(bytes(frames))


def table():
    """The rows of a C++ array of patterns and names."""
    return "".join(f'{{FEEDBACK_PATTERN_{name.upper()}, "{name}"}},\n' for name in SOUNDS)


def main():
    match sys.argv[1:]:
        case ["--names"]:
            print(";".join(SOUNDS))
        case ["--table"]:
            print(table(), end="")
        case [folder]:
            os.makedirs(folder, exist_ok=True)
            for name, notes in SOUNDS.items():
                write(os.path.join(folder, name + ".wav"), notes)
        case _:
            sys.exit("usage: make-sounds.py FOLDER | --names | --table")


if __name__ == "__main__":
    main()
