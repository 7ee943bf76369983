# Programs of the build folder find on Windows only the DLLs beside them, and Qt's plug-ins by a file there.
set(KX_RUNTIME_DLLS "")
foreach(name libgcc_s_seh-1.dll libstdc++-6.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${name} OUTPUT_VARIABLE dll
                    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    list(APPEND KX_RUNTIME_DLLS "${dll}")
endforeach()
list(APPEND KX_RUNTIME_DLLS "/usr/${KX_MINGW}/lib/libwinpthread-1.dll" "/usr/${KX_MINGW}/lib/zlib1.dll"
     "/usr/${KX_MINGW}/bin/libgcrypt-20.dll" "/usr/${KX_MINGW}/bin/libgpg-error-0.dll")
file(GLOB qt_dlls "${KX_WINDOWS_PREFIX}/bin/*.dll")

file(MAKE_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
foreach(dll ${KX_RUNTIME_DLLS} ${qt_dlls})
    get_filename_component(name "${dll}" NAME)
    file(CREATE_LINK "${dll}" "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}" SYMBOLIC)
endforeach()
file(CONFIGURE OUTPUT "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/qt.conf" @ONLY
     CONTENT "[Paths]\nPrefix=Z:@KX_WINDOWS_PREFIX@\nPlugins=plugins\n")
