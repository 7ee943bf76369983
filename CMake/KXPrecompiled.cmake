# Precompiled headers: most of the time of a build goes into reading Qt's headers and the standard library's. Each source
# file still includes what it uses: the tidy preset compiles without them.
# More of them than most files use would cost more than it saves.
set(KX_PRECOMPILED
    <algorithm> <array> <atomic> <chrono> <functional> <map> <memory> <mutex> <optional> <string> <thread> <vector>
    <QtCore/QDataStream> <QtCore/QDateTime> <QtCore/QDir> <QtCore/QFile> <QtCore/QFileInfo> <QtCore/QHash> <QtCore/QMap>
    <QtCore/QMutex> <QtCore/QObject> <QtCore/QPointer> <QtCore/QSet> <QtCore/QStringList> <QtCore/QThread>
    <QtCore/QTimer> <QtCore/QUrl> <QtCore/QVariant> <QtCore/QVector>
    <QtGui/QImage> <QtGui/QPainter> <QtWidgets/QWidget>)

# For what is built on the host contract. A compiler takes one only with the flags and the macros that it was made with.
file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/KXPrecompiled.cpp" CONTENT "")
add_library(KXPrecompiled OBJECT "${CMAKE_BINARY_DIR}/KXPrecompiled.cpp")
target_link_libraries(KXPrecompiled PRIVATE KXWarnings Qt5::Widgets)
target_precompile_headers(KXPrecompiled PRIVATE ${KX_PRECOMPILED})
set_target_properties(KXPrecompiled PROPERTIES AUTOMOC OFF AUTORCC OFF)

# kx_precompile(TARGET [OWNER]): what OWNER precompiled serves TARGET, too.
function(kx_precompile target)
    set(owner ${ARGN})
    if(NOT owner)
        set(owner KXPrecompiled)
    endif()
    target_precompile_headers(${target} REUSE_FROM ${owner})
endfunction()
