#!/usr/bin/env python3
"""Makes the program's sounds, assets/sounds/*.wav, and checks that the committed ones are what it makes.

    make_sounds.py            writes the files
    make_sounds.py --check    writes nothing; fails when a file is missing or differs

Only the four basic operations are used, no library sine or power: IEEE 754 fixes their results, so every
machine makes the same bytes.
"""

import argparse
import io
import pathlib
import sys
import wave

SOUNDS = pathlib.Path(__file__).resolve().parent.parent / "assets" / "sounds"
RATE = 44100  # samples per second
FULL_SCALE = 32767
PEAK = 0.7  # of full scale, about -3 dB: clear beside a receiver, far from clipping
ATTACK = 0.006  # seconds; shorter clicks
RELEASE = 0.040
PI = 3.141592653589793

# Strength of the partials 1, 2, 3, 4 of each voice.
WARM_HORN = (1.0, 0.45, 0.30, 0.12)
SOFT_BELL = (1.0, 0.28, 0.10, 0.05)

# Notes: start and length in seconds, pitch in hertz, halving time of the loudness in seconds.
# Alarm, the band has changed: high, low, high, so that it is told from every single beep of a station.
TORVO = ((0.00, 0.24, 880.00, 0.30), (0.22, 0.24, 659.26, 0.30), (0.44, 0.34, 880.00, 0.16))
# Memory updated: two quick rising notes, a nod.
MEMUP = ((0.00, 0.20, 783.99, 0.10), (0.11, 0.39, 1174.66, 0.09))


def sine_of_turn(turn):
    """Sine of a full turn's fraction, by its series around the nearest zero crossing (error below 1e-9)."""
    half_turns = 2.0 * (turn - int(turn))
    nearest = int(half_turns + 0.5)
    x = (half_turns - nearest) * PI
    term = x
    total = x
    for n in range(2, 16, 2):
        term = -term * x * x / (n * (n + 1))
        total += term
    return -total if nearest % 2 else total


def ramp(distance):
    """A smooth rise from 0 to 1 while `distance` goes from 0 to 1."""
    if distance >= 1.0:
        return 1.0
    return distance * distance * (3.0 - 2.0 * distance)


def halving_factor(seconds):
    """What the loudness is multiplied by at each sample so that it halves in this time: solved by bisection."""
    samples = int(seconds * RATE)
    low, high = 0.9, 1.0
    for _ in range(60):
        middle = (low + high) / 2.0
        product, base, exponent = 1.0, middle, samples
        while exponent:
            if exponent % 2:
                product *= base
            base *= base
            exponent //= 2
        if product < 0.5:
            low = middle
        else:
            high = middle
    return high


def render(notes, partials):
    """The notes as samples, the loudest at PEAK."""
    mix = [0.0] * int(max(start + length for start, length, _, _ in notes) * RATE)
    for start, length, pitch, halving in notes:
        first, count = int(start * RATE), int(length * RATE)
        fade = halving_factor(halving)
        loudness = 1.0
        for i in range(min(count, len(mix) - first)):
            envelope = loudness * ramp(i / (ATTACK * RATE)) * ramp((count - 1 - i) / (RELEASE * RATE))
            loudness *= fade
            tone = 0.0
            for n, strength in enumerate(partials, start=1):
                tone += strength * sine_of_turn(i * pitch * n / RATE)
            mix[first + i] += envelope * tone
    scale = PEAK * FULL_SCALE / max(abs(sample) for sample in mix)
    return [round(sample * scale) for sample in mix]


def wav_bytes(samples):
    """16-bit mono."""
    buffer = io.BytesIO()
    with wave.open(buffer, "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(b"".join(sample.to_bytes(2, "little", signed=True) for sample in samples))
    return buffer.getvalue()


def main():
    parser = argparse.ArgumentParser(description="Makes the program's sounds.")
    parser.add_argument("--check", action="store_true", help="compare with the committed files, write nothing")
    check = parser.parse_args().check
    differing = 0
    for name, notes, partials in (("torvo.wav", TORVO, WARM_HORN), ("memup.wav", MEMUP, SOFT_BELL)):
        made = wav_bytes(render(notes, partials))
        path = SOUNDS / name
        if not check:
            SOUNDS.mkdir(parents=True, exist_ok=True)
            path.write_bytes(made)
        elif not path.is_file() or path.read_bytes() != made:
            print(f"{path} is not what {pathlib.Path(__file__).name} makes", file=sys.stderr)
            differing += 1
    return 1 if differing else 0


if __name__ == "__main__":
    sys.exit(main())
