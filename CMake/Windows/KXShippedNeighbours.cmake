# The foreign libraries that a Windows package needs beside ours, and the licences of all that is in it.
install(FILES ${KX_RUNTIME_DLLS} DESTINATION .)
install(FILES "${KX_WINDOWS_PREFIX}/bin/libcurl-4.dll" DESTINATION .)
foreach(name Core Gui Sql Svg Widgets)
    install(FILES "${KX_WINDOWS_PREFIX}/bin/Qt5${name}.dll" DESTINATION .)
endforeach()
foreach(plugin platforms/qwindows platforms/qoffscreen styles/qwindowsvistastyle sqldrivers/qsqlite
               imageformats/qjpeg imageformats/qsvg iconengines/qsvgicon)
    get_filename_component(folder "${plugin}" DIRECTORY)
    install(FILES "${KX_WINDOWS_PREFIX}/plugins/${plugin}.dll" DESTINATION "${folder}")
endforeach()

install(FILES "${KX_WINDOWS_PREFIX}/share/doc/curl/copyright" DESTINATION licences RENAME libcurl.txt)
# Debian keeps these texts with the package that a library comes from.
foreach(package qtbase5-dev libqt5svg5-dev libsqlite3-0 libgcrypt-mingw-w64-dev libgpg-error-mingw-w64-dev libz-mingw-w64
                gcc-mingw-w64-base mingw-w64-common libspdlog-dev libfmt-dev nlohmann-json3-dev libcpp-httplib-dev)
    install(FILES "/usr/share/doc/${package}/copyright" DESTINATION licences RENAME "${package}.txt")
endforeach()
foreach(name LGPL-2.1 LGPL-3 GPL-2 GPL-3)
    install(FILES "/usr/share/common-licenses/${name}" DESTINATION licences RENAME "${name}.txt")
endforeach()
