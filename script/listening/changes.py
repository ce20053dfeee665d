"""changes.py BUILD FILE: what the numbers in src/prepare/FILE do, in all files where it is "". Changes one at a time in
this source tree, which is to be a copy, builds it in BUILD and measures what it prepares. Prints a table."""
import subprocess
import sys
import tempfile
from functools import partial
from pathlib import Path

import numpy as np

import music
import speech

BUILD, FILE = sys.argv[1:]
EVERY = 3  # of the recordings of speech


def spoken(*options, disturb=None):
    def told():
        understood, *_, size = speech.measure(speech.prepare(*options), disturb, EVERY)
        return f"{understood:.3f}, {size:.0f}"
    return told


def tunes(recordings):
    right, _, cents, _, struck, within_notes = music.measure(dict(music.WAYS)["prepared"], recordings)
    return "{:.3f}, {:.1f}, {:.2f}, {:.2f}".format(right, cents, struck, within_notes)


def pauses():
    """How much of the pauses between words is silence on a machine of 10 MHz, where a 254 lasts as a long period does."""
    words = speech.MATERIAL[:12]
    with tempfile.TemporaryDirectory() as folder:
        way = speech.prepare("--clock", "10000000")
        _, size, times = speech.heard_through(way, np.concatenate(words), Path(folder))
    periods = np.diff(times[:, 1])  # on the ordinary machine; one of 25 ms and more has a 254
    silence = np.sum(periods[periods > 0.025]) * 3.58 / 10
    return f"{silence / (0.5 * (len(words) - 1)):.2f}, {size / speech.seconds(words):.0f}"


MEASURES = {"speech": spoken(), "half": spoken("--size", "{half}"), "sound": spoken("--for", "sound"),
            "white": spoken(disturb=partial(speech.white, 10)), "hum": spoken(disturb=partial(speech.hum, 10)),
            "pauses": pauses}

# What it is, file, its text there, the texts to try instead, measure.
ROWS = [
    ("loud moments' share", "Levels.cpp", "kShare = 0.95", ["kShare = 0.8", "kShare = 1"], "speech"),
    ("silence in amplitudes", "Levels.cpp", "0.003F); // -50 dB", ["0.03F);"], "speech"),
    ("silence in powers", "Levels.cpp", "0.003F); // -25 dB", ["0.00003F);", "0.03F);"], "speech"),
    ("length of a moment, s", "Levels.h", "kMoment = 0.020", ["kMoment = 0.010", "kMoment = 0.040"], "speech"),
    ("window of spectra", "Spectra.h", "kWindow = 512", ["kWindow = 256", "kWindow = 1024"], "speech"),
    ("pauses' share", "Noise.cpp", "kPauses = 0.12", ["kPauses = 0.06", "kPauses = 0.24"], "white"),
    ("pauses' power", "Noise.cpp", "kSofter = 0.25F", ["kSofter = 0.1F", "kSofter = 0.5F"], "white"),
    ("steady, times", "Noise.cpp", "kSteady = 2.5F", ["kSteady = 1.5F", "kSteady = 10"], "speech"),
    ("reach of neighbours, bins", "Noise.cpp", "kReach = 12", ["kReach = 6", "kReach = 24"], "white"),
    ("gaps' share", "Noise.cpp", "kGaps = 0.3", ["kGaps = 0.15", "kGaps = 0.5"], "white"),
    ("noise's mean", "Noise.cpp", "kMean = 1.2F", ["kMean = 1", "kMean = 1.5F"], "white"),
    ("above hum, Hz", "Noise.cpp", "kAboveHum = 250", ["kAboveHum = 20"], "hum"),
    ("oversubtraction", "Noise.cpp", "kOver = 3", ["kOver = 1", "kOver = 6"], "white"),
    ("floor", "Noise.cpp", "kLeft = 0.1F", ["kLeft = 0.03F", "kLeft = 0.3F"], "white"),
    ("silent, dB", "Noise.cpp", "kSilent = -40", ["kSilent = -50", "kSilent = -30"], "speech"),
    ("noise, dB", "Noise.cpp", "kNoise = -3", ["kNoise = -9", "kNoise = 3"], "white"),
    ("lowest, Hz", "Likeness.h", "kLowest = 100", ["kLowest = 50", "kLowest = 200"], "speech"),
    ("highest, Hz", "Likeness.h", "kHighest = 5500", ["kHighest = 4000", "kHighest = 8000"], "speech"),
    ("levelled bands", "SpeechTarget.cpp", "bands(15,", ["bands(8,", "bands(30,"], "speech"),
    ("least price", "SpeechTarget.cpp", ".least = 0.07F", [".least = 0.035F", ".least = 0.14F"], "speech"),
    ("rounds", "SpeechTarget.cpp", "kRounds = 8", ["kRounds = 4", "kRounds = 12"], "speech"),
    ("first step", "SpeechTarget.cpp", "kFirstStep = 0.45", ["kFirstStep = 0.3", "kFirstStep = 0.7"], "speech"),
    ("next step", "SpeechTarget.cpp", "kNextStep = 0.8", ["kNextStep = 0.7", "kNextStep = 0.9"], "speech"),
    ("bytes wanted", "SpeechTarget.cpp", "kWanted = 0.99", ["kWanted = 0.97"], "half"),
    ("cheaper by", "SpeechTarget.cpp", "kCheaper = 0.85", ["kCheaper = 0.7"], "half"),
    ("dearer by", "SpeechTarget.cpp", "kDearer = 1.18", ["kDearer = 1.4"], "half"),
    ("rhythm's floor", "SpeechLikeness.cpp", "kFloor = 1e-7", ["kFloor = 1e-5"], "speech"),
    ("from segment to segment", "SpeechLikeness.cpp", "kHop = 4", ["kHop = 1", "kHop = 8"], "speech"),
    ("bands of colour", "SpeechLikeness.cpp", "MelBands(24,", ["MelBands(16,", "MelBands(32,"], "speech"),
    ("soft in a colour", "SpeechLikeness.cpp", "kSoft = 1e-3F", ["kSoft = 1e-2F", "kSoft = 1e-4F"], "speech"),
    ("silent frames", "SpeechLikeness.cpp", "kSilent = 1e-4", ["kSilent = 1e-2"], "speech"),
    ("frames without colour", "SpeechLikeness.cpp", "kColourless = 1e-3F", ["kColourless = 1e-2F",
     "kColourless = 1e-4F"], "speech"),
    ("least price of a sound", "SpeechTarget.cpp", ".least = 0.085F", [".least = 0.0425F", ".least = 0.17F"], "sound"),
    ("approaches", "Likeness.h", "kApproaches = 3", ["kApproaches = 1", "kApproaches = 6"], "sound"),
    ("its bands", "Likeness.cpp", "bands(20,", ["bands(10,", "bands(40,"], "sound"),
    ("its step", "Likeness.cpp", "kStep = 0.25F", ["kStep = 0", "kStep = 0.5F"], "sound"),
    ("its gain at most", "Likeness.cpp", "kMost = 2;", ["kMost = 1.4F;", "kMost = 4;"], "sound"),
    ("faintest, dB", "Likeness.cpp", "kFaintest = -40", ["kFaintest = -30"], "speech"),
    ("deep silence, s", "PeriodChoice.cpp", "kDeepSilence = 0.030", ["kDeepSilence = 0.015", "kDeepSilence = 0.060"],
     "pauses"),
    ("cost of silence", "PeriodChoice.cpp", "kSilenceCost = 0.1F", ["kSilenceCost = 0", "kSilenceCost = 0.3F"],
     "pauses"),
    ("places in a step", "PeriodChoice.h", "kPlaces = 4", ["kPlaces = 1", "kPlaces = 8"], "speech"),
    ("starts in two steps", "PeriodChoice.h", "kStarts = 2", ["kStarts = 1", "kStarts = 4"], "speech"),
    ("tries of a price", "PeriodChoice.cpp", "kTries = 7", ["kTries = 3"], "half"),
    ("full", "PeriodChoice.cpp", "kFull = 0.985", ["kFull = 0.95", "kFull = 0.995"], "half"),
    ("leap of pitch", "Melody.cpp", "kLeap = 1.04F", ["kLeap = 1.02F", "kLeap = 1.08F"], "tunes"),
    ("caught up with", "Melody.cpp", "kCatchUp = 0.3", ["kCatchUp = 0", "kCatchUp = 1"], "tunes"),
    ("dither, counts", "Melody.cpp", "kSpread = 1.5", ["kSpread = 0", "kSpread = 3"], "tunes"),
    ("window of peaks", "Peaks.cpp", "kWindow = 2048", ["kWindow = 1024", "kWindow = 4096"], "tunes"),
    ("neighbourhood, lines", "Peaks.cpp", "kNeighbours = 16", ["kNeighbours = 32"], "tunes"),
    ("highest peak, Hz", "Peaks.cpp", "5200 / kLineHertz", ["2600 / kLineHertz"], "tunes"),
    ("strength", "Peaks.cpp", "std::sqrt(here - mean)", ["here - mean"], "tunes"),
    ("partials", "PitchTrack.cpp", "kPartials = 10", ["kPartials = 5", "kPartials = 15"], "tunes"),
    ("weight of a partial", "PitchTrack.cpp", "kPartialWeight = 0.75F", ["kPartialWeight = 0.5F",
     "kPartialWeight = 0.9F"], "tunes"),
    ("low tones, Hz", "PitchTrack.cpp", "kLowTones = 200", ["kLowTones = 100", "kLowTones = 400"], "tunes"),
    ("reach of a peak", "PitchTrack.cpp", "kReach = 2.5F", ["kReach = 1.25F", "kReach = 5"], "tunes"),
    ("price of a step", "PitchTrack.cpp", "kStepPrice = 0.05F", ["kStepPrice = 0", "kStepPrice = 0.2F"], "tunes"),
    ("price of a jump", "PitchTrack.cpp", "kJumpPrice = 0.3F", ["kJumpPrice = 0.1F", "kJumpPrice = 1"], "tunes"),
    ("steps at a time", "PitchTrack.cpp", "kSteps = 3", ["kSteps = 1", "kSteps = 6"], "tunes"),
    ("true partials", "PitchTrack.cpp", "kTruePartials = 4", ["kTruePartials = 1", "kTruePartials = 8"], "tunes"),
    ("their reach", "PitchTrack.cpp", "kReach = 2;", ["kReach = 1;", "kReach = 4;"], "tunes"),
    ("softest, dB", "PitchTrack.cpp", "kSoftest = -35", ["kSoftest = -45", "kSoftest = -25"], "tunes"),
    ("its level, s", "PitchTrack.cpp", "kSteady = 0.060", ["kSteady = 0.030"], "tunes"),
    ("level of a strike, s", "PitchTrack.cpp", "LevelsOf(sound, kMoment)", ["LevelsOf(sound, 0.040)"], "tunes"),
    ("reach of a rise", "PitchTrack.cpp", "kReach = 3;", ["kReach = 1;"], "tunes"),
    ("rise of partials", "PitchTrack.cpp", "kPartialsRise = 1.3F", ["kPartialsRise = 1", "kPartialsRise = 1.6F"],
     "tunes"),
    ("rise of level", "PitchTrack.cpp", "kLevelRise = 1.75F", ["kLevelRise = 1.3F", "kLevelRise = 2.5F"], "tunes"),
    ("gap of a strike", "PitchTrack.h", "kPitchGap = 3;", ["kPitchGap = 2;"], "tunes"),
    ("the same pitch", "PitchTrack.cpp", "kSamePitch = 1.04F", ["kSamePitch = 1.08F"], "tunes"),
]


def source(file):
    return Path("src/prepare") / file


def changed(file, text, other, measure):
    """The measure where `file` says something else."""
    told = source(file).read_text()
    source(file).write_text(told.replace(text, other))
    subprocess.run(["cmake", "--build", BUILD, "--target", "tonfloss-prepare"], check=True, stdout=subprocess.DEVNULL)
    source(file).write_text(told)
    return f"`{other}` {measure()}"


def main():
    for name, file, text, *_ in ROWS:
        if source(file).read_text().count(text) != 1:
            sys.exit(f"{name}: {file} doesn't say \"{text}\" exactly once")
    rows = [row for row in ROWS if FILE in ("", row[1])] or sys.exit(f"No number of {FILE} is listed")
    with tempfile.TemporaryDirectory() as folder:
        MEASURES["tunes"] = partial(tunes, [made for made in music.make(Path(folder)) if made[0] != "alone"])
        as_it_is = {name: MEASURES[name]() for name in {row[-1] for row in rows}}
        print("| number | measure | as it is | changed |\n|---|---|---|---|")
        for name, file, text, others, measure in rows:
            figures = "; ".join(changed(file, text, other, MEASURES[measure]) for other in others)
            print(f"| {name}: `{text}` | {measure} | {as_it_is[measure]} | {figures} |", flush=True)


if __name__ == "__main__":
    main()
