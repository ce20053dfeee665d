"""speech.py BUILD: how well speech is understood through the machine. Prints a table."""
import glob
import multiprocessing
import subprocess
import sys
import tempfile
from functools import partial
from pathlib import Path

import numpy as np
from scipy import signal
from scipy.io import wavfile

from estoi import RATE, estoi, log_mel_likeness, stoi

BUILD = Path(sys.argv[1])
WORDS = "/usr/share/asterisk/sounds/en_US_f_Allison/"  # of one speaker
NAMES = "/usr/share/tuxpaint/stamps/animals/"          # spoken by others
SENTENCES = "/usr/share/pocketsphinx/test/data/librivox/"

FACTOR = 1.0763   # of the README, for 11025 Hz
FILE_BYTES = 134  # of a file for the PC-1600, beside its run bytes

SOX = ["sox", "-D", "{in}", "-b", "8", "-e", "unsigned-integer", "{out}", "remix", "-"]
TRIM = ["silence", "1", "0.05", "1%", "reverse", "silence", "1", "0.05", "1%", "reverse"]
GATE = ["compand", "0,0.002", "-inf,-32.1,-inf,-32,-32"]


def sox(*effects):
    return SOX + list(effects)


def gated(*filters):
    return sox("speed", str(FACTOR), "rate", "11025", *filters, "norm", "-1", *GATE, *TRIM)


def prepare(*options):
    return [BUILD / "src/prepare/tonfloss-prepare", "--force", "-o", "{out}", *options, "{in}"]


OLD = sox("rate", "11025", "highpass", "20", "norm", "-1", *TRIM)
NEW = prepare()


def recordings():
    """Mono at 22050 Hz, cut to the speech, with 0.25 s of silence at either end."""
    paths = sorted(glob.glob(WORDS + "digits/*.g722"))[::4] + sorted(glob.glob(WORDS + "phonetic/*.g722"))[::4]
    paths += sorted(glob.glob(NAMES + "**/*_desc.ogg", recursive=True))[::3] + sorted(glob.glob(SENTENCES + "*.wav"))
    for path in paths:
        kind = ["-f", "g722"] if path.endswith(".g722") else []
        samples = subprocess.run(["ffmpeg", "-v", "error", *kind, "-i", path, "-f", "f32le", "-ac", "1", "-ar", "22050",
                                  "-"], check=True, capture_output=True).stdout
        sound = np.frombuffer(samples, np.float32).astype(float)
        loud = np.flatnonzero(np.abs(sound) > 0.01 * np.abs(sound).max())
        sound = sound[loud[0] : loud[-1] + 1]
        yield np.pad(sound / np.abs(sound).max() * 0.7, 5512)


def with_noise(noise, decibels, sound):
    return sound + noise / noise.std() * sound[5512:-5512].std() * 10 ** (-decibels / 20)


def white(decibels, sound, random):
    return with_noise(random.standard_normal(len(sound)), decibels, sound)


def hum(decibels, sound, _):
    seconds = np.arange(len(sound)) / 22050
    return with_noise(np.sin(2 * np.pi * 50 * seconds) + 0.7 * np.sin(2 * np.pi * 100 * seconds), decibels, sound)


def heard_through(way, sound, folder):
    """What the machine plays, at 10 kHz; its run bytes; and where in the recording each moment of it lies."""
    path = {"in": folder / "in.wav", "out": folder / "ready.wav", "heard": folder / "heard.wav"}
    if "{recipe}" in way or "{half}" in way:
        size = heard_through(OLD, sound, folder)[1]
        path |= {"recipe": FILE_BYTES + size, "half": FILE_BYTES + size // 2}
    wavfile.write(path["in"], 22050, np.int16(np.clip(sound, -1, 1) * 32767))
    command = [str(part).format(**path) for part in way]
    done = subprocess.run(command, capture_output=True, text=True)
    if done.returncode != 0:
        return None
    told = subprocess.run([BUILD / "bench/machine_sound", path["out"], path["heard"]], check=True, capture_output=True,
                          text=True).stdout.split("\n", 1)
    times = np.array(told[1].split(), float).reshape(-1, 2)
    if command[0] != "sox":
        times[:, 0] = times[:, 1]  # a prepared recording is right on the machine
    elif "speed" in command:
        times[:, 0] *= FACTOR
    return wavfile.read(path["heard"])[1].astype(float), int(told[0]), times


def stretched(recording, times, offset, length):
    """The recording, at 10 kHz, in the time in which the machine plays it."""
    moments = np.interp(np.arange(length) / RATE, times[:, 1], times[:, 0]) + offset
    return np.interp(moments * RATE, np.arange(len(recording)), recording, 0, 0)


def understood(sound, heard, times):
    """The measures where the two fit best by ESTOI: what is cut off in front isn't told."""
    recording = signal.resample_poly(sound, RATE, 22050)
    longest = max(0.0, len(sound) / 22050 - times[-1, 0]) + 0.02
    margin = np.pad(heard, RATE // 4)
    times = np.concatenate([[[-0.25, 0]], times + [0, 0.25], [times[-1] + [0.25, 0.5]]])

    def at(offset, measure=estoi):
        return measure(stretched(recording, times, offset, len(margin)), margin)

    best = max(np.arange(-0.02, longest, 0.02), key=at)
    best = max(best + np.arange(-0.012, 0.013, 0.004), key=at)
    return [at(best, measure) for measure in (estoi, stoi, log_mel_likeness)]


def measured(way, disturb, number):
    """The measures and run bytes of one recording; 0 where nothing is left of it."""
    sound = MATERIAL[number]
    if disturb is not None:
        sound = disturb(sound, np.random.default_rng(number))
    with tempfile.TemporaryDirectory() as folder:
        result = heard_through(way, sound, Path(folder))
    if result is None:
        return [0, 0, 0], 0
    heard, size, times = result
    return understood(MATERIAL[number], heard, times), size


def seconds(material):
    return sum(len(sound) / 22050 - 0.5 for sound in material)


def measure(way, disturb=None, every=1):
    """ESTOI, STOI, log-mel likeness and run bytes a second of every so manyth recording."""
    with multiprocessing.Pool(2) as pool:
        results = pool.starmap(measured, [(way, disturb, number) for number in range(0, len(MATERIAL), every)], 1)
    size = sum(result[1] for result in results)
    return *np.mean([result[0] for result in results], axis=0), size / seconds(MATERIAL[::every])


MATERIAL = list(recordings())
ROWS = [
    ("SoX recipe, no gate", OLD),
    ("SoX recipe with factor and gate", gated("highpass", "20")),
    ("the same, one pole at 350 Hz", gated("highpass", "-1", "350")),
    ("the same, one pole at 1000 Hz, below 3400 Hz", gated("highpass", "-1", "1000", "sinc", "-3400")),
    ("prepared", NEW),
    ("prepared, in as many bytes as the first row", prepare("--size", "{recipe}")),
    ("prepared, in half as many", prepare("--size", "{half}")),
    ("prepared, 8000 Hz", prepare("--rate", "8000")),
    ("prepared, 6000 Hz", prepare("--rate", "6000")),
]
NOISES = [("white noise 20 dB below", partial(white, 20)), ("white noise 10 dB below", partial(white, 10)),
          ("hum 10 dB below", partial(hum, 10))]


def main():
    print(f"{len(MATERIAL)} recordings, {seconds(MATERIAL):.0f} s of speech")
    print("| way | ESTOI | STOI | log-mel likeness | run bytes a second |\n|---|---|---|---|---|")
    for name, way in ROWS:
        print("| {} | {:.3f} | {:.3f} | {:.3f} | {:.0f} |".format(name, *measure(way)), flush=True)
    for noise, disturb in NOISES:
        for name, way in (("SoX recipe", OLD), ("prepared", NEW)):
            print("| {}, {} | {:.3f} | {:.3f} | {:.3f} | {:.0f} |".format(noise, name, *measure(way, disturb)),
                  flush=True)


if __name__ == "__main__":
    main()
