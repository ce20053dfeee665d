// Refusal.h: why a sound file can't be prepared.
#pragma once

#include <stdexcept>

namespace prepare {

/// English, for the user, to be shown behind the file's name.
class Refusal : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace prepare
