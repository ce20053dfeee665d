# How the toolkit is configured for Windows: its own copies of what Windows doesn't have, and nothing that the program
# doesn't use.
set(CMAKE_BUILD_TYPE Release CACHE STRING "")
set(BUILD_SHARED_LIBS ON CACHE BOOL "")
set(QT_BUILD_TESTS OFF CACHE BOOL "")
set(QT_BUILD_EXAMPLES OFF CACHE BOOL "")

foreach(library zlib png freetype harfbuzz pcre2)
    set(QT_FEATURE_system_${library} OFF CACHE BOOL "")
endforeach()

# tabletevent: Debian's source lacks the header that it needs. direct2d stays: the fonts of a scaled screen hang on it.
foreach(feature concurrent dbus gif glib icu jpeg network printsupport sql tabletevent testlib vulkan xml)
    set(QT_FEATURE_${feature} OFF CACHE BOOL "")
endforeach()
set(INPUT_opengl no CACHE STRING "")
