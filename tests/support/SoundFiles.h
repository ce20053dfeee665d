// SoundFiles.h: sound files of each kind, made by libsndfile.
#pragma once

#include <sndfile.h>

#include <cmath>
#include <filesystem>
#include <numbers>
#include <utility>
#include <vector>

inline constexpr int kMp3 = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
inline const std::vector<std::pair<const char*, int>> kFormats{
    {"8.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_U8},
    {"24.wav", SF_FORMAT_WAVEX | SF_FORMAT_PCM_24},
    {"float.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT},
    {"adpcm.wav", SF_FORMAT_WAV | SF_FORMAT_IMA_ADPCM},
    {"aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16},
    {"au", SF_FORMAT_AU | SF_FORMAT_ULAW},
    {"caf", SF_FORMAT_CAF | SF_FORMAT_ALAC_16},
    {"flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
    {"vorbis", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
    {"opus", SF_FORMAT_OGG | SF_FORMAT_OPUS},
    {"mp3", kMp3},
};

struct ToneOfSound {
    int rate = 48000; // which Opus knows, too
    int channels = 1;
    double seconds = 1;
    double overtone = 0; // how loud 2640 Hz go along
    int on = 0;          // the only channel that isn't silent
};

/// 440 Hz in the first second and 880 Hz behind it, at half of full scale. Gives `file` back.
inline std::filesystem::path WriteTone(const std::filesystem::path& file, int format, const ToneOfSound& tone)
{
    SF_INFO info{.frames = 0,
                 .samplerate = tone.rate,
                 .channels = tone.channels,
                 .format = format,
                 .sections = 0,
                 .seekable = 0};
    auto* const sound = sf_open(file.c_str(), SFM_WRITE, &info);
    std::vector<float> frame(static_cast<std::size_t>(tone.channels));
    for (int k = 0; k < static_cast<int>(tone.seconds * tone.rate); ++k) {
        const double pitch = k < tone.rate ? 440 : 880;
        const double turns = 2 * std::numbers::pi * k / tone.rate;
        frame[static_cast<std::size_t>(tone.on)] =
            static_cast<float>(std::sin(pitch * turns) / 2 + std::sin(2640 * turns) * tone.overtone);
        sf_writef_float(sound, frame.data(), 1);
    }
    sf_close(sound);
    return file;
}
