"""pieces.py: real music from Debian packages, and excerpts of it."""
import subprocess
import tempfile
from pathlib import Path

import numpy as np

RATE = 22050
LENGTH = 12        # seconds of an excerpt
LONGEST = 150      # seconds of a piece
PLACES = 0.3, 0.8  # where excerpts begin, as shares of the piece without the length of one
SOUNDFONT = "/usr/share/sounds/sf2/TimGM6mb.sf2"

# Nothing is tuned on those that are set aside.
TUNED = {
    "pax-britannica-data": ["pax-britannica/audio/music.ogg"],  # orchestra
    "asc-music": ["games/asc/music/frontiers.mp3"],
    "wordwarvi-sound": ["wordwarvi/sounds/dtox3monomix.ogg", "wordwarvi/sounds/highscoremusic.ogg"],  # rock
    "fb-music-high": ["games/frozen-bubble/snd/frozen-mainzik-2p.xm"],
    "tecnoballz-data": ["games/tecnoballz/musics/area1-game.mod", "games/tecnoballz/musics/termigator_reg-zbb.mod"],
    "heroes-sound-tracks": ["games/heroes/mod/heroes01.xm", "games/heroes/mod/heroes04.xm"],
    "pekka-kana-2-data": ["games/pekka-kana-2/data/music/intro.xm", "games/pekka-kana-2/data/music/song02.xm",
                          "games/pekka-kana-2/data/music/song09.xm"],
    "rafkill-data": ["games/rafkill/music/song1.xm", "games/rafkill/music/song3.xm"],
    "seahorse-adventures": ["games/seahorse-adventures/data/music/title.ogg"],
    "titanion-data": ["games/titanion/sounds/musics/ttn1.ogg"],
    "openttd-openmsx": ["games/openttd/baseset/openmsx/boogi_marabi_redfarn.mid",
                        "games/openttd/baseset/openmsx/harp_harmony.mid"],
}
SET_ASIDE = {
    "gamine-data": ["games/gamine/sounds/BachJSBrandenburgConcertNo2inFMajorBWV1047mvmt1.ogg"],  # orchestra
    "asc-music": ["games/asc/music/time_to_strike.mp3", "games/asc/music/machine_wars.mp3"],
    "csmash-demosong": ["games/csmash/danslatristesse2-48.ogg"],  # a song
    "orbital-eunuchs-sniper-data": ["games/orbital_eunuchs_sniper/oes.ogg"],  # rap
    "wordwarvi-sound": ["wordwarvi/sounds/lucky13-steve-mono-mix.ogg",
                        "wordwarvi/sounds/lucky-holiday-cornbread-stuffing-mono.ogg"],  # rock
    "tecnoballz-data": ["games/tecnoballz/musics/area3-game.mod",
                        "games/tecnoballz/musics/fridge-in-space_from_reg-zbb.mod"],
    "heroes-sound-tracks": ["games/heroes/mod/heroes03.xm", "games/heroes/mod/heroes06.xm"],
    "pekka-kana-2-data": ["games/pekka-kana-2/data/music/song05.xm", "games/pekka-kana-2/data/music/song12.xm"],
    "rafkill-data": ["games/rafkill/music/song2.xm", "games/rafkill/music/song4.xm"],
    "seahorse-adventures": ["games/seahorse-adventures/data/music/3.ogg"],
    "titanion-data": ["games/titanion/sounds/musics/ttn3.ogg"],
    "openttd-openmsx": ["games/openttd/baseset/openmsx/midnight_snow_run.mid"],
}


def extract(packages, folder):
    """Fetches the packages, as apt does for whoever installs them, and lays their files out in `folder`."""
    with tempfile.TemporaryDirectory() as fetched:
        subprocess.run(["apt-get", "download", "-q", *packages], cwd=fetched, check=True, capture_output=True)
        for package in Path(fetched).glob("*.deb"):
            subprocess.run(["dpkg-deb", "-x", package, folder], check=True)


def paths(packages, folder):
    return [folder / "usr/share" / file for files in packages.values() for file in files]


def decoded(path):
    """The first LONGEST seconds, mono at RATE, as loud as goes."""
    with tempfile.TemporaryDirectory() as folder:
        if path.suffix == ".mid":
            wave = Path(folder) / "rendered.wav"
            subprocess.run(["fluidsynth", "-ni", "-q", "-r", "44100", "-g", "0.5", "-F", wave, SOUNDFONT, path],
                           check=True, capture_output=True)
            path = wave
        samples = subprocess.run(["ffmpeg", "-v", "error", "-i", path, "-t", str(LONGEST), "-f", "f32le", "-ac", "1",
                                  "-ar", str(RATE), "-"], check=True, capture_output=True).stdout
    sound = np.frombuffer(samples, np.float32)
    loud = np.flatnonzero(np.abs(sound) > 0.01 * np.abs(sound).max())
    sound = sound[loud[0] : loud[-1] + 1]
    return sound / np.abs(sound).max() * 0.9


def places(piece):
    """Where the excerpts of a piece begin, in seconds."""
    return [share * (len(piece) / RATE - LENGTH) for share in PLACES]


def excerpt(piece, place):
    return piece[int(place * RATE) : int(place * RATE) + LENGTH * RATE]
