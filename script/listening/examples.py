"""examples.py BUILD OUT: the README's examples of what the machine plays, pictures and sounds."""
import re
import subprocess
import sys
import tempfile
from pathlib import Path

import matplotlib
import numpy as np
from PIL import Image
from scipy import ndimage, signal
from scipy.io import wavfile

from music import SOUNDFONT, midi

matplotlib.use("Agg")
from matplotlib import pyplot  # after the choice of what draws

BUILD, OUT = Path(sys.argv[1]), Path(sys.argv[2])
FACTOR = 1.0763  # of the README, for 11025 Hz
LOUDNESS = -20  # LUFS; loud speech has peaks 18 dB above
RATE = 10000    # Hz, of what is drawn
STEP = 25       # samples of that from column to column
RANGE = 32      # dB from white to black
STEADIER = 4    # dB: so much less than that of speech the loudest of a square wave stands out

SPOKEN = "/usr/share/pocketsphinx/test/data/librivox/sense_and_sensibility_01_austen_64kb-0880.wav"
SPOKEN_FROM, SPOKEN_LENGTH = "0.26", "2.4"  # of the recording, seconds
LINE = "Good day. I am a pocket computer, and you hear me by a square wave. Can you make out what I say?"

# Beats a minute; MIDI notes and their beats; the chord of each four beats.
SONG = 132, [(74, 1), (77, 0.5), (76, 0.5), (74, 1), (69, 1), (70, 1), (74, 0.5), (72, 0.5), (70, 1), (65, 1),
             (72, 0.5), (76, 0.5), (79, 1), (76, 0.5), (74, 0.5), (72, 1), (74, 1.5), (69, 0.5), (74, 2)]
CHORDS = [(50, 53, 57), (46, 50, 53), (48, 52, 55), (50, 53, 57)]
TUNE = 120, [(67, 1), (71, 0.5), (74, 0.5), (72, 1), (69, 1), (71, 0.5), (74, 0.5), (79, 1), (78, 0.5), (76, 0.5),
             (74, 1), (72, 0.5), (71, 0.5), (69, 1), (66, 1), (67, 2)]
GUITAR, PIANO, BASS, FLUTE = 24, 4, 33, 73  # programs of General MIDI
KICK, SNARE, HAT = 36, 38, 42               # its drums


def run(*command):
    return subprocess.run([str(part) for part in command], check=True, capture_output=True, text=True)


def melody(program, notes):
    starts = np.cumsum([0] + [beats for _, beats in notes])
    return 0, program, [(start, beats, note, 100) for start, (note, beats) in zip(starts, notes)]


def band():
    chords = [(4 * bar + beat, 0.9, note + 12, 60) for bar, chord in enumerate(CHORDS) for beat in range(4)
              for note in chord]
    bass = [(4 * bar + half / 2, 0.45, chord[0] - 12, 85) for bar, chord in enumerate(CHORDS) for half in range(8)]
    drums = [(beat, 0.2, SNARE if beat % 2 else KICK, 90) for beat in range(16)]
    drums += [(half / 2, 0.1, HAT, 60) for half in range(32)]
    return [(1, PIANO, chords), (2, BASS, bass), (9, 0, drums)]


def synthesised(path, tempo, tracks):
    score = path.with_suffix(".mid")
    score.write_bytes(midi(tempo, tracks))
    rendered = path.with_suffix(".rendered.wav")
    run("fluidsynth", "-ni", "-q", "-r", "44100", "-g", "0.5", "-F", rendered, SOUNDFONT, score)
    trimmed(rendered, path)


def trimmed(recording, path):
    """Without the silence at either end; mono."""
    run("sox", "-D", recording, path, "remix", "-", *["silence", 1, 0.01, "0.5%", "reverse"] * 2)


def prepared(recording, purpose):
    """What the machine plays of it, as a Wave file, and run bytes."""
    file, heard = recording.with_suffix(".bin"), recording.with_suffix(".heard.wav")
    told = run(BUILD / "src/prepare/tonfloss-prepare", "--for", purpose, "-o", file, recording).stdout
    run(BUILD / "src/preview/tonfloss-preview", file, "-o", heard)
    return heard, int(re.search("run bytes: (.*)", told)[1])


def by_sox(recording):
    """The same by the README's line for SoX."""
    ready, heard = recording.with_suffix(".sox.wav"), recording.with_suffix(".sox-heard.wav")
    ends = ["silence", 1, 0.05, "1%", "reverse"] * 2
    run("sox", "-D", recording, "-b", 8, "-e", "unsigned-integer", ready, "remix", "-", "speed", FACTOR, "rate", 11025,
        "highpass", -1, 350, "norm", -1, "compand", "0,0.002", "-inf,-32.1,-inf,-32,-32", *ends)
    return heard, int(run(BUILD / "bench/machine_sound", ready, heard).stdout.split()[0])


def encoded(recording, name):
    """An Ogg file of it in OUT/sounds, as loud as the others."""
    said = run("ffmpeg", "-nostats", "-i", recording, "-af", "ebur128", "-f", "null", "-").stderr
    gain = LOUDNESS - float(re.findall(r"I: +(\S+) LUFS", said)[-1])
    run("ffmpeg", "-v", "error", "-y", "-i", recording, "-af", f"volume={gain}dB", "-ac", 1, "-ar", 32000,
        "-c:a", "libvorbis", "-q:a", 2, "-map_metadata", -1, "-fflags", "+bitexact", "-flags", "+bitexact",
        OUT / "sounds" / name)


def samples(path):
    """At RATE, from the first sound on, without the level that the port rests at."""
    rate, sound = wavfile.read(path)
    sound = sound / np.abs(sound).max()
    sound = sound[np.flatnonzero(np.abs(sound) > 0.01)[0] :]
    rest = signal.butter(2, 100, "highpass", fs=RATE, output="sos")
    return signal.sosfilt(rest, signal.resample_poly(sound, RATE, rate))


def picture(name, rows, seconds, window, mean, lift, scale, ticks):
    """Spectrograms of the rows, one below the other: title, sound, and by how many dB white lies above the loudest.
    `window` and `mean` are samples and what is averaged of them; tones above `lift` Hz are raised by 6 dB an octave."""
    figure = pyplot.figure(figsize=(9, 0.6 + 1.75 * len(rows)), dpi=100)
    axes = figure.subplots(len(rows), 1, sharex=True)
    for axis, (title, path, above) in zip(axes, rows):
        hertz, times, lines = signal.stft(samples(path), RATE, "hann", window, window - STEP, 2048)
        powers = np.abs(lines) ** 2 * (1 + (hertz[:, None] / lift) ** 2)
        levels = 10 * np.log10(ndimage.uniform_filter1d(powers, mean // STEP) + 1e-12)
        white = np.quantile(levels[:, times < seconds], 0.9995) + above
        axis.pcolormesh(times, hertz, levels, cmap="inferno", vmin=white - RANGE, vmax=white)
        axis.set(title=title, ylabel="Hz", yscale=scale, xlim=(0, seconds), ylim=(ticks[0], ticks[-1]))
        axis.set_yticks(ticks, map(str, ticks))
        axis.minorticks_off()
    axes[-1].set_xlabel("seconds")
    figure.tight_layout()
    figure.canvas.draw()
    Image.fromarray(np.asarray(figure.canvas.buffer_rgba())).convert("RGB").quantize(64, dither=0).save(
        OUT / "pictures" / name, optimize=True)


def main():
    with tempfile.TemporaryDirectory() as folder:
        song, tune, line, voice = [Path(folder) / f"{name}.wav" for name in ("song", "tune", "line", "voice")]
        synthesised(song, SONG[0], [melody(FLUTE, SONG[1]), *band()])
        synthesised(tune, TUNE[0], [melody(GUITAR, TUNE[1])])
        run("espeak-ng", "-v", "en-gb", "-s", "150", "-w", line.with_suffix(".spoken.wav"), LINE)
        trimmed(line.with_suffix(".spoken.wav"), line)
        run("sox", SPOKEN, voice, "trim", SPOKEN_FROM, SPOKEN_LENGTH)

        played = {sound: prepared(sound, purpose)
                  for sound, purpose in ((song, "music"), (tune, "music"), (line, "speech"), (voice, "speech"))}
        for sound in (song, tune, line):
            encoded(sound, f"{sound.stem}.ogg")
            encoded(played[sound][0], f"{sound.stem}-machine.ogg")

        heard, size = by_sox(voice)
        machine = "As the machine plays it, {}: {} run bytes"
        picture("prepared.png", [("The recording: he was not an ill-disposed young man", voice, 0),
                                 (machine.format("by the line for SoX", size), heard, STEADIER),
                                 (machine.format("prepared", played[voice][1]), played[voice][0], STEADIER)],
                2.1, 200, 175, 1000, "linear", range(0, 5001, 1000))
        picture("song.png", [("The song: a flute, chords, a bass and drums", song, 0),
                             (machine.format("prepared", played[song][1]), played[song][0], 0)],
                7.3, 1024, STEP, 500, "log", [100, 200, 500, 1000, 2000, 4000])


if __name__ == "__main__":
    main()
