"""ESTOI, from the paper: J. Jensen and C. H. Taal, An Algorithm for Predicting the Intelligibility of Speech Masked by
Modulated Noise Maskers, 2016. 1 is the recording itself; both sounds at 10 kHz."""
import numpy as np

RATE = 10000
FRAME, HOP, TRANSFORM = 256, 128, 512
BANDS, LOWEST = 15, 150    # third octaves, Hz
SEGMENT = 30               # frames, 384 ms
SILENT = 40                # dB below the loudest frame of the recording
WINDOW = np.hanning(FRAME + 2)[1:-1]


def third_octaves():
    hertz = np.linspace(0, RATE / 2, TRANSFORM // 2 + 1)
    bands = np.zeros((BANDS, len(hertz)))
    for band, centre in enumerate(LOWEST * 2.0 ** (np.arange(BANDS) / 3)):
        low, high = (np.argmin((hertz - centre * 2 ** (side / 6)) ** 2) for side in (-1, 1))
        bands[band, low:high] = 1
    return bands


THIRD_OCTAVES = third_octaves()


def frames(sound):
    starts = np.arange(0, len(sound) - FRAME + 1, HOP)
    return sound[starts[:, None] + np.arange(FRAME)] * WINDOW


def added(parts):
    sound = np.zeros(HOP * (len(parts) - 1) + FRAME)
    for i, part in enumerate(parts):
        sound[HOP * i : HOP * i + FRAME] += part
    return sound


def levels(sound):
    return np.sqrt(np.abs(np.fft.rfft(frames(sound), TRANSFORM)) ** 2 @ THIRD_OCTAVES.T).T


def normalised(segment):
    for axis in (1, 0):
        segment = segment - segment.mean(axis, keepdims=True)
        segment = segment / (np.linalg.norm(segment, axis=axis, keepdims=True) + 1e-12)
    return segment


def estoi(recording, heard):
    length = min(len(recording), len(heard))
    clean, processed = frames(recording[:length]), frames(heard[:length])
    loudness = 20 * np.log10(np.linalg.norm(clean, axis=1) + 1e-9)
    kept = loudness > loudness.max() - SILENT
    clean, processed = levels(added(clean[kept])), levels(added(processed[kept]))
    segment = min(SEGMENT, clean.shape[1])
    return np.mean([
        np.sum(normalised(clean[:, end - segment : end]) * normalised(processed[:, end - segment : end])) / segment
        for end in range(segment, clean.shape[1] + 1)])
