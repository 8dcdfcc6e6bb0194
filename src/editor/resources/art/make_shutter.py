#!/usr/bin/env python3
"""Makes camera.wav, the sound of a shutter: the mirror's slap, the curtain, the mirror falling back.

Needs only Python's standard library:  python3 make_shutter.py
Writes one folder up: 22050 samples a second, 16 bits, one channel.
"""

import math
import pathlib
import random
import wave

RATE = 22050
SECONDS = 0.28

# start in seconds, loudness, decay in 1/s, frequencies of what rings in Hz, share of noise
EVENTS = [
    (0.005, 0.85, 90.0, (410.0, 1130.0, 2740.0), 0.75),
    (0.048, 0.35, 160.0, (1900.0, 3600.0), 0.9),
    (0.085, 0.30, 140.0, (1700.0, 3300.0), 0.9),
    (0.120, 0.60, 75.0, (330.0, 870.0, 2100.0), 0.7),
]


def main():
    noise = random.Random(4)  # the same sound every time
    samples = [0.0] * int(RATE * SECONDS)
    for start, loudness, decay, ringing, noisy in EVENTS:
        smooth = 0.0
        for i in range(int(start * RATE), len(samples)):
            t = i / RATE - start
            level = loudness * math.exp(-decay * t)
            tone = sum(math.sin(2 * math.pi * f * t) for f in ringing) / len(ringing)
            smooth += 0.55 * (noise.uniform(-1, 1) - smooth)
            samples[i] += level * (noisy * smooth + (1 - noisy) * tone)
    peak = max(map(abs, samples))
    fade = int(0.02 * RATE)
    data = bytearray()
    for i, value in enumerate(samples):
        value *= min(1.0, (len(samples) - i) / fade) * 0.8 / peak
        data += int(value * 32767).to_bytes(2, "little", signed=True)
    with wave.open(str(pathlib.Path(__file__).parent.parent / "camera.wav"), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(bytes(data))


if __name__ == "__main__":
    main()
