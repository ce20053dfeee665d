// FileTypes1.h: the kinds of file that the program writes.
#pragma once

#include "platform/Dialogs.h"

namespace FileTypes1 {

inline constexpr platform::FileType Binary{.Name = "Untitled",
                                           .Extensions = ".bin",
                                           .MacType = "BIN",
                                           .MacCreator = "",
                                           .MimeType = "",
                                           .Imported = false,
                                           .ConformsTo = "",
                                           .UTI = "org.tonfloss.pc1600-sound"};

} // namespace FileTypes1
