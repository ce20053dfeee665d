"""music.py BUILD: how many notes of known tunes the machine plays right, alone and in a band. Prints a table."""
import multiprocessing
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

import aubio
import numpy as np
from scipy.io import wavfile

BUILD = Path(sys.argv[1])
SOUNDFONT = "/usr/share/sounds/sf2/TimGM6mb.sf2"
INSTRUMENTS = {"piano": 0, "guitar": 24, "violin": 40, "choir": 53, "trumpet": 56, "flute": 73}

# Beats a minute; MIDI notes and their beats; the root of a chord for every two beats of what goes with it.
TUNES = [
    (120, [(64, 1), (64, 1), (65, 1), (67, 1), (67, 1), (65, 1), (64, 1), (62, 1), (60, 1), (60, 1), (62, 1), (64, 1),
           (64, 1.5), (62, 0.5), (62, 2)], [48, 48, 48, 43, 48, 48, 48, 43]),
    (150, [(69, 1), (72, 2), (74, 1), (76, 1.5), (77, 0.5), (76, 1), (74, 2), (71, 1), (67, 1.5), (69, 0.5), (71, 1),
           (72, 2), (69, 1), (69, 1.5), (68, 0.5), (69, 1), (71, 2), (68, 1), (64, 2)],
     [45, 45, 45, 45, 43, 43, 43, 45, 45, 45, 45, 40, 40, 40]),
    (125, [(74, 1), (67, 0.5), (69, 0.5), (71, 0.5), (72, 0.5), (74, 1), (67, 1), (67, 1), (76, 1), (72, 0.5),
           (74, 0.5), (76, 0.5), (78, 0.5), (79, 1), (67, 1), (67, 1)], [43, 43, 43, 48, 48, 43, 43]),
]
SCALE = [(56 + step, 0.3) for step in range(26)]  # 208 to 880 Hz, seconds

SILENCE = 0.0115  # seconds: a 254 takes twice as long, and no note of the tunes has so long a period

SOX = ["sox", "-D", "{in}", "-b", "8", "-e", "unsigned-integer", "{out}", "remix", "-"]
END = ["rate", "11025", "highpass", "20", "norm", "-1"]


def prepare(rate, kind="melody"):
    return [BUILD / "src/prepare/tonfloss-prepare", "--force", "--for", kind, "--rate", rate, "-o", "{out}", "{in}"]


WAYS = [("SoX recipe", SOX + END), ("SoX recipe with factor", SOX + ["speed", "1.0763"] + END),
        ("the same, below 800 Hz", SOX + ["speed", "1.0763", "sinc", "-800"] + END),
        ("prepared", prepare("11025")), ("prepared, 8000 Hz", prepare("8000")), ("prepared, 6000 Hz", prepare("6000")),
        ("prepared, `--for music`", prepare("11025", "music"))]


def variable_length(number):
    return bytes([number >> 14 & 127 | 128, number >> 7 & 127 | 128, number & 127])


def midi(tempo, tracks):
    """A MIDI file. Each track: channel, program, and notes as start and length in beats, number, velocity."""
    events = [(0, 0, b"\xff\x51\x03" + struct.pack(">I", 60_000_000 // tempo)[1:])]
    for channel, program, notes in tracks:
        events.append((0, 0, bytes([0xC0 | channel, program])))
        for start, length, note, velocity in notes:
            events.append((int(start * 480), 2, bytes([0x90 | channel, note, velocity])))
            events.append((int((start + length * 0.95) * 480), 1, bytes([0x80 | channel, note, 0])))
    body, now = b"", 0
    for time, _, event in sorted(events):
        body += variable_length(time - now) + event
        now = time
    body += variable_length(480) + b"\xff\x2f\x00"
    return b"MThd" + struct.pack(">IHHH", 6, 0, 1, 480) + b"MTrk" + struct.pack(">I", len(body)) + body


def band(beats, roots, program):
    """Chords in the middle of every beat's range, a bass below and drums."""
    root = [roots[min(beat // 2, len(roots) - 1)] for beat in range(beats)]
    chords = [(beat, 0.9, root[beat] + step + (12 if root[beat] + step < 48 else 0), 62)
              for beat in range(beats) for step in (0, 4, 7)]
    bass = [(beat, 0.9, root[beat] - 12, 75) for beat in range(beats)]
    drums = [(beat, 0.2, 36 + beat % 2 * 2, 70) for beat in range(beats)]
    drums += [(beat / 2, 0.1, 42, 55 - beat % 2 * 5) for beat in range(2 * beats)]
    return [(1, 48 if program == 0 else 0, chords), (2, 32, bass), (9, 0, drums)]


def make(folder):
    """The recordings: their kind, path, and notes as start and length in seconds and MIDI number."""
    for number, (tempo, tune, roots) in enumerate(TUNES):
        starts = np.cumsum([0] + [beats for _, beats in tune])
        notes = [(start * 60 / tempo, beats * 60 / tempo, note) for start, (note, beats) in zip(starts, tune)]
        for name, program in INSTRUMENTS.items():
            melody = (0, program, [(start, beats, note, 100) for start, (note, beats) in zip(starts, tune)])
            for kind, others in (("alone", []), ("in a band", band(int(starts[-1]), roots, program))):
                path = folder / f"{number} {name} {kind}"
                path.write_bytes(midi(tempo, [melody, *others]))
                wave = path.with_suffix(".wav")
                subprocess.run(["fluidsynth", "-ni", "-q", "-r", "44100", "-g", "0.5", "-F", wave, SOUNDFONT, path],
                               check=True, capture_output=True)
                yield kind, wave, notes
    for name, tune in [("scale", SCALE)] + [(str(i), [(note, beats * 60 / tempo) for note, beats in tune])
                                            for i, (tempo, tune, _) in enumerate(TUNES)]:
        path = folder / f"plucked {name}.wav"
        plucks = [["|sox -n -r 44100 -p synth {} pluck {}".format(seconds, hertz(note))] for note, seconds in tune]
        subprocess.run(["sox", *sum(plucks, []), "-b", "16", path], check=True)
        starts = np.cumsum([0] + [seconds for _, seconds in tune])
        yield "plucked", path, [(start, seconds, note) for start, (note, seconds) in zip(starts, tune)]


def hertz(note):
    return 440 * 2 ** ((note - 69) / 12)


def pitches(sound, rate):
    """The pitch every 5 ms that a detector finds in the middle of windows of 51 ms."""
    detector = aubio.pitch("yinfft", 512, 50, rate)
    padded = np.pad(sound, 256).astype(np.float32) / 40000
    return np.array([detector(padded[i : i + 50])[0] for i in range(0, len(padded) - 50, 50)])[512 // 50 :]


def cents_off(sound, rate, reference):
    """By how much the strongest line of the whole note within a semitone of the right one lies above it."""
    size = 1 << 17
    lines = np.arange(int(reference / 1.06 * size / rate), int(reference * 1.06 * size / rate))
    strengths = np.abs(np.fft.rfft(sound * np.hanning(len(sound)), size))[lines]
    return 1200 * np.log2(lines[np.argmax(strengths)] * rate / size / reference)


def struck_anew(notes, played):
    """How many notes follow one of the same pitch after a silence, and how many silences there are within notes."""
    ends = np.flatnonzero(np.diff(played) > SILENCE) + 1
    ends = played[ends[np.append(np.diff(ends) > 1, True)[: len(ends)]]]  # several bytes are one silence
    starts = np.array([start for start, _, _ in notes])
    repeated = starts[1:][np.diff([note for _, _, note in notes]) == 0]
    struck = sum(np.any(np.abs(ends - start) < 0.08) for start in repeated)
    return struck, len(repeated), sum(np.min(np.abs(end - starts)) >= 0.08 for end in ends)


def measured(way, recording):
    """How many notes are right, by how many cents each is off, run bytes, seconds, and which notes are struck anew."""
    _, wave, notes = recording
    with tempfile.TemporaryDirectory() as folder:
        path = {"in": wave, "out": Path(folder) / "ready.wav", "heard": Path(folder) / "heard.wav"}
        subprocess.run([str(part).format(**path) for part in way], check=True, capture_output=True)
        told = subprocess.run([BUILD / "bench/machine_sound", path["out"], path["heard"]], check=True,
                              capture_output=True, text=True).stdout.split("\n", 1)
        rate, sound = wavfile.read(path["heard"])
    recorded, played = np.array(told[1].split(), float).reshape(-1, 2).T
    found = pitches(sound, rate)
    if way[0] != "sox":
        recorded = played  # a prepared recording is right on the machine
    elif "speed" in way:
        recorded = recorded * 1.0763
    right, off = 0, []
    for start, length, note in notes:
        first, last = np.interp([start + 0.2 * length, start + 0.8 * length], recorded, played)
        within = found[int(first * 200) : int(last * 200)]
        if len(within) == 0 or abs(np.median(1200 * np.log2(np.maximum(within, 1) / hertz(note)))) >= 50:
            continue
        right += 1
        off.append(cents_off(sound[int(first * rate) : int(last * rate)], rate, hertz(note)))
    return right, off, int(told[0]), notes[-1][0] + notes[-1][1], struck_anew(notes, played)


def measure(way, recordings):
    """The share of notes that are right, by how many cents these are off in the median and 95 of 100 at most, run bytes
    a second; the share of repeated notes that are struck anew, and silences within a note."""
    with multiprocessing.Pool(2) as pool:
        right, off, size, seconds, strikes = zip(*pool.starmap(measured, [(way, r) for r in recordings], 1))
    off = np.array(sum(off, []))
    median, within = (np.median(off), np.quantile(np.abs(off), 0.95)) if len(off) else (np.nan, np.nan)
    notes = sum(len(notes) for _, _, notes in recordings)
    struck, repeated, within_notes = np.sum(strikes, 0)
    return sum(right) / notes, median, within, sum(size) / sum(seconds), struck / repeated, within_notes / notes


def main():
    print("| way | kind | notes right | cents off, median | 95 percent within | run bytes a second |")
    print("|---|---|---|---|---|---|")
    with tempfile.TemporaryDirectory() as folder:
        recordings = list(make(Path(folder)))
        for name, way in WAYS:
            for kind in ("plucked", "alone", "in a band"):
                figures = measure(way, [recording for recording in recordings if recording[0] == kind])[:4]
                print("| {} | {} | {:.3f} | {:.1f} | {:.1f} | {:.0f} |".format(name, kind, *figures), flush=True)


if __name__ == "__main__":
    main()
