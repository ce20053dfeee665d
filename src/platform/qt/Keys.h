// Keys.h: keys as the program takes them.
#pragma once

#include <QCoreApplication>

namespace platform {

/// A Return that is held down counts once from now on: its repetitions would answer each box that it opens.
void IgnoreRepeatedReturns(QCoreApplication& application);

} // namespace platform
