# What every target of this project is compiled with: warnings, sanitizers, Qt's strict modes.
option(SYSINFO_WARNINGS_AS_ERRORS "Stop at the first compiler warning" OFF)
option(SYSINFO_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wcast-qual -Wformat=2 -Wundef
    "$<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor;-Woverloaded-virtual;-Wold-style-cast>")
if(SYSINFO_WARNINGS_AS_ERRORS)
    add_compile_options(-Werror)
endif()

if(SYSINFO_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

add_compile_definitions(
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH
    QT_NO_KEYWORDS
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00)

# Paths in this project's code are written from its root: #include "app/commandrunner.h".
include_directories("${PROJECT_SOURCE_DIR}")
