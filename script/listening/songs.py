"""songs.py BUILD: what of real music can be recognised in what the machine plays. Prints a table."""
import multiprocessing
import subprocess
import sys
import tempfile
from pathlib import Path

import aubio
import numpy as np
from scipy import ndimage, signal
from scipy.io import wavfile

import pieces

HEARD_RATE = 10000  # of what machine_sound writes
FACTOR = 1.0763     # of the README, for 11025 Hz
SHORT = 4           # seconds by which a piece and a place are told, beside a whole excerpt
NEAR = 1.5          # seconds within which a place is right
ONSET = 0.050       # seconds within which an onset is right
SILENCE = 0.0115    # seconds: a period of 11 ms has a pitch that is heard, a 254 takes twice as long

HOP = 500           # samples between frames of chroma and of landmarks
LINES = 2048        # samples of their window
LOWEST, HIGHEST = 100, 4000  # Hz


# --- what is played ---------------------------------------------------------------------------------------------------

SOX = ["sox", "-D", "{in}", "-b", "8", "-e", "unsigned-integer", "{out}", "remix", "-", "speed", str(FACTOR),
       "rate", "11025", "highpass", "20", "sinc", "-800", "norm", "-1", "compand", "0,0.002", "-inf,-32.1,-inf,-32,-32"]


def prepare(build, *options):
    return [Path(build) / "src/prepare/tonfloss-prepare", "--force", "-o", "{out}", *options, "{in}"]


def ways(build):
    return [("SoX recipe for tunes", SOX),
            ("prepared, `--for melody`", prepare(build, "--for", "melody")),
            ("prepared, `--for music`", prepare(build, "--for", "music")),
            ("prepared, `--for sound`", prepare(build, "--for", "sound"))]


def played(build, way, sound):
    """What the machine plays at HEARD_RATE, as long as the sound; run bytes; each period's end in seconds."""
    with tempfile.TemporaryDirectory() as folder:
        path = {"in": Path(folder) / "in.wav", "out": Path(folder) / "ready.wav", "heard": Path(folder) / "heard.wav"}
        wavfile.write(path["in"], pieces.RATE, np.int16(sound * 32767))
        subprocess.run([str(part).format(**path) for part in way], check=True, capture_output=True)
        told = subprocess.run([Path(build) / "bench/machine_sound", path["out"], path["heard"]], check=True,
                              capture_output=True, text=True).stdout.split("\n", 1)
        heard = wavfile.read(path["heard"])[1] / 32768
    length = pieces.LENGTH * HEARD_RATE
    heard = np.pad(heard, (0, max(0, length - len(heard))))[:length]
    return heard, int(told[0]), np.array(told[1].split(), float)[1::2]


# --- what is compared -------------------------------------------------------------------------------------------------

def spectra(sound):
    """Magnitudes, a row for every HOP samples."""
    padded = np.pad(sound, LINES // 2)
    frames = np.lib.stride_tricks.sliding_window_view(padded, LINES)[::HOP]
    return np.abs(np.fft.rfft(frames * np.hanning(LINES), axis=1))


def chroma(magnitudes):
    """The strength of each of the twelve notes in each frame, octaves together."""
    hertz = np.fft.rfftfreq(LINES, 1 / HEARD_RATE)
    lines = np.flatnonzero((hertz >= LOWEST) & (hertz <= HIGHEST))
    note = np.rint(12 * np.log2(hertz[lines] / 440)).astype(int) % 12
    return magnitudes[:, lines] @ np.eye(12)[note]


def correlation(ours, theirs):
    """That of the two in each frame, in the mean over all frames; 0 where one is silent."""
    ours, theirs = (unit(rows - rows.mean(1, keepdims=True)) for rows in (ours, theirs))
    return np.mean(np.sum(ours * theirs, 1))


def unit(rows):
    return rows / np.maximum(np.linalg.norm(rows, axis=1, keepdims=True), 1e-12)


def log_chroma(strengths):
    """Decibels within 40 of the frame's loudest note, without the frame's mean."""
    loudest = np.maximum(strengths.max(1, keepdims=True), 1e-12)
    decibels = 20 * np.log10(np.maximum(strengths / loudest, 1e-2))
    return decibels - decibels.mean(1, keepdims=True)


def onsets(sound):
    """The seconds at which something begins, as a detector finds them."""
    detector = aubio.onset("specflux", 512, 100, HEARD_RATE)
    detector.set_threshold(0.6)
    found = [detector.get_last_s() for hop in np.pad(sound, (0, 512))[: len(sound) // 100 * 100].reshape(-1, 100)
             .astype(np.float32) if detector(hop)[0]]
    return np.array(found)


def f_measure(ours, theirs):
    """Onsets paired one by one in their order, each with the first that is near."""
    if len(ours) == 0 or len(theirs) == 0:
        return 0.0
    hits = i = k = 0
    while i < len(ours) and k < len(theirs):
        if abs(ours[i] - theirs[k]) <= ONSET:
            hits, i, k = hits + 1, i + 1, k + 1
        elif ours[i] < theirs[k]:
            i += 1
        else:
            k += 1
    return 2 * hits / (len(ours) + len(theirs))


def f_by_chance(ours, theirs):
    """The same with one of the two moved round the excerpt, in the mean over moves by 1 to 11 s."""
    return np.mean([f_measure(ours, np.sort((theirs + moved) % pieces.LENGTH)) for moved in np.arange(1, 11.5, 0.5)])


# --- what is recognised -----------------------------------------------------------------------------------------------

PEAK_REACH = 10, 12   # frames and lines within which a landmark is the strongest
PAIRED = 8            # landmarks behind each that it is paired with
FARTHEST = 40         # frames between the two


def landmarks(magnitudes):
    """Pairs of peaks as one number each (the line of either and the frames between), and the frame of the first."""
    strengths = np.log(magnitudes[:, : HIGHEST * LINES // HEARD_RATE] + 1e-6)
    strengths -= ndimage.uniform_filter1d(strengths, 41, axis=1)
    reach = tuple(2 * reach + 1 for reach in PEAK_REACH)
    peaks = (strengths == ndimage.maximum_filter(strengths, reach)) & (strengths > 1)
    peaks[:, : LOWEST * LINES // HEARD_RATE] = False
    frames, lines = np.nonzero(peaks)
    pairs = []
    for behind in range(1, PAIRED + 1):
        apart = frames[behind:] - frames[:-behind]
        near = (apart > 0) & (apart <= FARTHEST)
        keys = (lines[:-behind] // 2 * 1024 + lines[behind:] // 2) * 64 + apart
        pairs.append(np.stack([keys[near], frames[:-behind][near]]))
    pairs = np.concatenate(pairs, axis=1)
    return pairs[:, np.argsort(pairs[0])]


def by_landmarks(piece, query):
    """How many pairs agree at the best place of a piece, one frame either way, and that place in frames."""
    first, last = (np.searchsorted(piece[0], query[0], side) for side in ("left", "right"))
    counts = last - first
    theirs = np.repeat(first - np.cumsum(counts) + counts, counts) + np.arange(counts.sum())
    offsets = piece[1][theirs] - np.repeat(query[1], counts)
    votes = np.convolve(np.bincount(offsets[offsets >= 0], minlength=3), [1, 1, 1], "same")
    return votes.max(), votes.argmax()


def by_chroma(piece, query):
    """The greatest correlation of log chroma at any place of a piece, and that place in frames."""
    product = np.sum(signal.oaconvolve(piece, query[::-1], "valid", axes=0), axis=1)
    power = np.convolve(np.sum(piece ** 2, 1), np.ones(len(query)), "valid")
    likeness = product / np.sqrt(np.maximum(power * np.sum(query ** 2), 1e-9))
    return likeness.max(), likeness.argmax()


def told(found, number, place):
    """Whether the piece of that number is told by what was found in each, and whether the place in it is, too."""
    best = max(range(len(found)), key=lambda other: found[other][0])
    return best == number, best == number and abs(found[best][1] * HOP / HEARD_RATE - place) <= NEAR


# --- measured ---------------------------------------------------------------------------------------------------------

COLUMNS = ["12 s", "4 s", "place", "4 s by chroma", "chroma", "log chroma", "onsets, F", "by chance", "silent",
           "most silent", "run bytes a second"]


def features(sound):
    """What a piece is recognised by."""
    magnitudes = spectra(signal.resample_poly(sound, HEARD_RATE, pieces.RATE))
    return landmarks(magnitudes), log_chroma(chroma(magnitudes))


def measured(build, way, number, place):
    """The figures of COLUMNS of one excerpt."""
    sound = pieces.excerpt(MATERIAL[number], place)
    heard, size, ends = played(build, way, sound)
    original = signal.resample_poly(sound, HEARD_RATE, pieces.RATE)
    magnitudes = spectra(heard)
    ours, theirs = chroma(spectra(original)), chroma(magnitudes)
    begin = (pieces.LENGTH - SHORT) // 2
    short = slice(begin * HEARD_RATE // HOP, (begin + SHORT) * HEARD_RATE // HOP)
    whole = told([by_landmarks(base, landmarks(magnitudes)) for base, _ in BASE], number, place)
    part = told([by_landmarks(base, landmarks(magnitudes[short])) for base, _ in BASE], number, place + begin)
    plain = told([by_chroma(base, log_chroma(theirs)[short]) for _, base in BASE], number, place + begin)
    begun = onsets(original), onsets(heard)
    times = np.diff(np.append(ends, max(ends[-1], pieces.LENGTH)), prepend=0)
    silent = times[times > SILENCE].sum() / pieces.LENGTH
    return [whole[0], *part, plain[0], correlation(ours, theirs), correlation(log_chroma(ours), log_chroma(theirs)),
            f_measure(*begun), f_by_chance(*begun), silent, silent, size / pieces.LENGTH]


def use(material):
    """Sets what excerpts are taken from and recognised among: sounds at the pieces' rate."""
    global MATERIAL, BASE
    MATERIAL = material
    with multiprocessing.Pool(2) as pool:
        BASE = pool.map(features, material)


def measure(build, way, numbers):
    """The figures of COLUMNS, in the mean over both excerpts of the pieces of these numbers; of the most silent one."""
    excerpts = [(build, way, number, place) for number in numbers for place in pieces.places(MATERIAL[number])]
    with multiprocessing.Pool(2) as pool:
        rows = np.array(pool.starmap(measured, excerpts, 1), float)
    figures = rows.mean(0)
    figures[COLUMNS.index("most silent")] = rows[:, COLUMNS.index("most silent")].max()
    return figures


def row(figures):
    formats = ["{:.2f}"] * 4 + ["{:.3f}"] * 2 + ["{:.2f} ({:.2f})"] + ["{:.2f}"] * 2 + ["{:.0f}"]
    return " | ".join(formats).format(*figures)


def main(build, folder):
    pieces.extract(sorted(pieces.TUNED | pieces.SET_ASIDE), folder)
    paths = pieces.paths(pieces.TUNED, folder) + pieces.paths(pieces.SET_ASIDE, folder)
    with multiprocessing.Pool(2) as pool:
        use(pool.map(pieces.decoded, paths, 1))
    tuned = sum(map(len, pieces.TUNED.values()))
    print("| way | pieces | 12 s | 4 s | place | 4 s by chroma | chroma | log chroma | onsets, F | silent "
          "| most silent | run bytes a second |\n|" + "---|" * 12)
    for name, way in ways(build):
        for kind, numbers in (("tuned on", range(tuned)), ("set aside", range(tuned, len(paths)))):
            print(f"| {name} | {kind} | {row(measure(build, way, numbers))} |", flush=True)


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as packages:
        main(Path(sys.argv[1]), Path(packages))
