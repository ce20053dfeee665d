// Keys.h: keys as the program takes them.
#pragma once

#include <QCoreApplication>

namespace platform {

/// A Return that is held down counts once from now on: its repetitions would answer each box that it opens. So does a
/// Paste whose repetitions the toolkit doesn't know for such.
void IgnoreRepeatedKeys(QCoreApplication& application);

} // namespace platform
