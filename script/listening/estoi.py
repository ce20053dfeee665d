"""How well speech is understood, each 1 for the recording itself; both sounds at 10 kHz. From the papers:
ESTOI   J. Jensen and C. H. Taal, An Algorithm for Predicting the Intelligibility of Speech Masked by Modulated Noise
        Maskers, 2016
STOI    C. H. Taal and others, An Algorithm for Intelligibility Prediction of Time-Frequency Weighted Noisy Speech, 2011
And log-mel likeness: the correlation of log-mel spectra, each frame's level and each band's mean left out."""
import numpy as np

RATE = 10000
FRAME, HOP, TRANSFORM = 256, 128, 512
BANDS, LOWEST = 15, 150    # third octaves, Hz
SEGMENT = 30               # frames, 384 ms
SILENT = 40                # dB below the loudest frame of the recording
CLIPPED = 15               # dB above it: STOI takes no more for noise
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


def audible_levels(recording, heard):
    """Of both, frame by frame, where the recording isn't silent; and the frames of a segment."""
    length = min(len(recording), len(heard))
    clean, processed = frames(recording[:length]), frames(heard[:length])
    loudness = 20 * np.log10(np.linalg.norm(clean, axis=1) + 1e-9)
    kept = loudness > loudness.max() - SILENT
    clean, processed = levels(added(clean[kept])), levels(added(processed[kept]))
    return clean, processed, min(SEGMENT, clean.shape[1])


def estoi(recording, heard):
    clean, processed, segment = audible_levels(recording, heard)
    return np.mean([
        np.sum(normalised(clean[:, end - segment : end]) * normalised(processed[:, end - segment : end])) / segment
        for end in range(segment, clean.shape[1] + 1)])


def stoi(recording, heard):
    clean, processed, segment = audible_levels(recording, heard)
    correlations = []
    for end in range(segment, clean.shape[1] + 1):
        x, y = clean[:, end - segment : end], processed[:, end - segment : end]
        y = y * np.linalg.norm(x, axis=1, keepdims=True) / (np.linalg.norm(y, axis=1, keepdims=True) + 1e-12)
        y = np.minimum(y, x * (1 + 10 ** (CLIPPED / 20)))
        x, y = x - x.mean(1, keepdims=True), y - y.mean(1, keepdims=True)
        correlations.append((x * y).sum(1) / (np.linalg.norm(x, axis=1) * np.linalg.norm(y, axis=1) + 1e-12))
    return np.mean(correlations)


def mel_bands():
    """Triangles, equally wide on the mel scale."""
    def mel(hertz):
        return np.log(1 + hertz / 700)
    at = mel(np.linspace(0, RATE / 2, TRANSFORM // 2 + 1))
    edges = np.linspace(mel(120), mel(RATE / 2), 30)[:, None]
    return np.maximum(0, np.minimum((at - edges[:-2]) / (edges[1:-1] - edges[:-2]),
                                    (edges[2:] - at) / (edges[2:] - edges[1:-1])))


MEL_BANDS = mel_bands()


def log_mel_likeness(recording, heard):
    length = min(len(recording), len(heard))
    powers = [np.abs(np.fft.rfft(frames(sound[:length]), TRANSFORM)) ** 2 @ MEL_BANDS.T for sound in (recording, heard)]
    loudness = powers[0].sum(1)
    kept = loudness > 1e-3 * np.quantile(loudness, 0.95)
    logs = []
    for power in powers:
        power = power[kept] + 1e-6 * power[kept].sum(1).mean()
        log = np.log(power / power.sum(1, keepdims=True) + 1e-4)
        log = log - log.mean(1, keepdims=True)
        logs.append(log - log.mean(0))
    return np.sum(logs[0] * logs[1]) / (np.linalg.norm(logs[0]) * np.linalg.norm(logs[1]))
