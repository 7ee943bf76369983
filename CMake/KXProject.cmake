# What everything in this tree is compiled with: one interface target, linked by each target of ours and by nothing else.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
if(WIN32)
    # A library has one name there, whichever compiler made it.
    set(CMAKE_SHARED_LIBRARY_PREFIX "")
    set(CMAKE_SHARED_MODULE_PREFIX "")
endif()
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)

find_program(KX_CCACHE ccache)
if(KX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Paths below the source folder do not count, so that a fresh clone finds what another one compiled. What is compiled
    # with a precompiled header is kept only with these words: the header counts by its content.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros "${KX_CCACHE}")
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-fpch-preprocess)
    endif()
endif()

add_library(KXWarnings INTERFACE)
if(MSVC)
    target_compile_options(KXWarnings INTERFACE /W4 /WX /permissive- /utf-8 /we4062)
else()
    target_compile_options(KXWarnings INTERFACE
        -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wundef
        -Wcast-align -Wswitch -Wold-style-cast)
endif()
target_compile_definitions(KXWarnings INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_STRICT_ITERATORS QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DEPRECATED_WARNINGS QT_NO_URL_CAST_FROM_STRING QT_USE_QSTRINGBUILDER)

if(KX_SANITIZE)
    add_compile_options(-fsanitize=${KX_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${KX_SANITIZE})
    if(KX_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
endif()
