// PrepareSound.h: a sound prepared as the command does it, from a job to what has become of it.
#pragma once

#include "prepare/Prepare.h"

/// A player, and by default the machine that it is made for.
inline machine::Playback At(std::uint32_t hertz, machine::Machine machine = {})
{
    return {*machine::RateOfHertz(hertz), machine};
}

/// `sound` is what lies 10 s behind a file's beginning.
inline std::variant<prepare::Prepared, prepare::Refusal> PrepareSound(prepare::Kind kind, const sound::Samples& sound,
                                                                      const machine::Playback& playback,
                                                                      std::size_t most,
                                                                      prepare::Noise noise = prepare::Noise::TakenOut)
{
    const prepare::Job job{.recording = {.rate = 48000, .channels = 1, .seconds = {}, .from = 10, .samples = sound},
                           .kind = kind,
                           .noise = noise,
                           .limits = {.playback = playback, .runBytes = most}};
    return prepare::Prepare(job, core::Progress([](double /*done*/) { return true; }));
}

/// None where it is refused.
inline machine::RunBytes RunBytesFor(prepare::Kind kind, const sound::Samples& sound, const machine::Playback& playback,
                                     std::size_t most = 28000, prepare::Noise noise = prepare::Noise::TakenOut)
{
    auto answer = PrepareSound(kind, sound, playback, most, noise);
    auto* const prepared = std::get_if<prepare::Prepared>(&answer);
    return prepared == nullptr ? machine::RunBytes() : std::move(prepared->runBytes);
}
