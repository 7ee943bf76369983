# Tests. A test class is a file of its name; the classes of a room share one program, for a program of its own costs a link
# and a run of moc under every preset. CTest runs each class by itself, in a process and a scratch folder of its own, so
# that they share nothing but the code.
#
#     kx_add_tests(ROOM CLASSES class ... [SOURCES file ...] [LIBRARIES target ...])
#         The program ROOM with CLASS.cpp of each class, and files that they share. A class is a test of its name:
#             ctest --preset dev -R ListTest        or, by hand        build/dev/bin/EngineTests ListTest
#     kx_add_test(CLASS [SOURCES file ...] [LIBRARIES target ...])
#         A program with one class, for what the others of its room must not link.
#
# To add a test: write CLASS.cpp (its last lines as Tests/TestMain.h says) and its name into the CLASSES of its room.
#
# A test runs without a display of its own: offscreen on Linux; a Windows program that was built elsewhere runs under Wine
# with the platform that it ships with, on a display that is there for the tests. Its temporary files stay in its scratch
# folder until CheckCanaries has looked through them.
add_library(KXTestMain STATIC TestMain.cpp TestMain.h)
target_include_directories(KXTestMain PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
# More libraries than some tests need, so that one precompiled header serves them all.
target_link_libraries(KXTestMain PUBLIC Qt5::Test Qt5::Widgets Qt5::Network PRIVATE KXWarnings)
target_precompile_headers(KXTestMain PRIVATE ${KX_PRECOMPILED} <QtTest/QtTest>)
# A test's own code is fast enough as it stands, and optimising it takes half the time of its compilation.
if(NOT MSVC)
    target_compile_options(KXTestMain PUBLIC -O0)
endif()

if(MINGW AND CMAKE_CROSSCOMPILING)
    set(KX_WINE_FOLDER "${CMAKE_BINARY_DIR}/wine")
    set(KX_WINE "${CMAKE_SOURCE_DIR}/Tools/windows/wine.sh" "${KX_WINE_FOLDER}")
    set(desktop "${CMAKE_SOURCE_DIR}/Tools/windows/desktop.sh")
    add_test(NAME WineDesktopUp COMMAND "${desktop}" up "${KX_WINE_FOLDER}")
    add_test(NAME WineDesktopDown COMMAND "${desktop}" down "${KX_WINE_FOLDER}")
    set_tests_properties(WineDesktopUp PROPERTIES FIXTURES_SETUP WineDesktop)
    set_tests_properties(WineDesktopDown PROPERTIES FIXTURES_CLEANUP WineDesktop)
endif()

function(kx_add_tests room)
    cmake_parse_arguments(ARG "" "" "CLASSES;SOURCES;LIBRARIES" ${ARGN})
    list(TRANSFORM ARG_CLASSES APPEND ".cpp" OUTPUT_VARIABLE files)
    add_executable(${room} ${files} ${ARG_SOURCES})
    target_link_libraries(${room} PRIVATE KXWarnings KXTestMain ${ARG_LIBRARIES})
    target_precompile_headers(${room} REUSE_FROM KXTestMain)
    foreach(class ${ARG_CLASSES})
        kx_run_class(${room} ${class})
    endforeach()
endfunction()

function(kx_add_test class)
    kx_add_tests(${class} CLASSES ${class} ${ARGN})
endfunction()

function(kx_run_class program class)
    set(scratch "${PROJECT_BINARY_DIR}/scratch/${class}")
    file(MAKE_DIRECTORY "${scratch}")
    set(environment "KX_KEEP_SCRATCH=1")
    set(fixtures Scratch)
    if(KX_WINE)
        add_test(NAME ${class} COMMAND ${KX_WINE} --test "$<TARGET_FILE:${program}>" ${class})
        list(APPEND environment "KX_TEMP=Z:${scratch}")
        list(APPEND fixtures WineDesktop)
    else()
        add_test(NAME ${class} COMMAND ${program} ${class})
        list(APPEND environment "QT_QPA_PLATFORM=offscreen" "TMPDIR=${scratch}")
    endif()
    if(KX_SANITIZE MATCHES "address")
        list(APPEND environment "LSAN_OPTIONS=print_suppressions=0:suppressions=${PROJECT_SOURCE_DIR}/Tests/leaks.supp")
    endif()
    set_tests_properties(${class} PROPERTIES ENVIRONMENT "${environment}" WORKING_DIRECTORY "${scratch}"
                         FIXTURES_REQUIRED "${fixtures}")
endfunction()

# A volume of their own for tests that want one: kx_add_small_volume() once, then kx_needs_small_volume(NAME) for each, which
# finds its folder (on Windows the drive) in KX_SMALL_VOLUME.
function(kx_add_small_volume)
    set(script "${CMAKE_SOURCE_DIR}/Tests/small-volume.sh")
    set(folder "${CMAKE_BINARY_DIR}/small-volume")
    add_test(NAME SmallVolumeUp COMMAND "${script}" up "${folder}" ${KX_WINE_FOLDER})
    add_test(NAME SmallVolumeDown COMMAND "${script}" down "${folder}" ${KX_WINE_FOLDER})
    set_tests_properties(SmallVolumeUp PROPERTIES FIXTURES_SETUP SmallVolume)
    set_tests_properties(SmallVolumeDown PROPERTIES FIXTURES_CLEANUP SmallVolume)
    if(KX_WINE)
        set_tests_properties(SmallVolumeUp SmallVolumeDown PROPERTIES FIXTURES_REQUIRED WineDesktop)
    endif()
endfunction()

function(kx_needs_small_volume name)
    if(KX_WINE)
        set(volume V:)
    else()
        set(volume "${CMAKE_BINARY_DIR}/small-volume")
    endif()
    set_property(TEST ${name} APPEND PROPERTY FIXTURES_REQUIRED SmallVolume)
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT "KX_SMALL_VOLUME=${volume}")
endfunction()

# Tests that show windows, by their names or, without names, all tests of the folder so far: where they share a screen they
# run one at a time, for a window that becomes active closes the popups of another.
function(kx_shows_windows)
    set(names ${ARGN})
    if(NOT names)
        get_property(names DIRECTORY PROPERTY TESTS)
    endif()
    if(KX_WINE)
        set_tests_properties(${names} PROPERTIES RESOURCE_LOCK Screen)
    endif()
endfunction()
