#pragma once

#include <QtCore/QString>

namespace KXHost {

// Whose names a file may have. Windows takes "CON.mp4" for the console and "a:b" for a hidden stream of the file "a":
// what is written there would be lost without any error.
enum class FileNames { Any, Windows };

#ifdef Q_OS_WIN
constexpr FileNames OwnFileNames = FileNames::Windows;
#else
constexpr FileNames OwnFileNames = FileNames::Any;
#endif

// Why a recording cannot be written to that path; empty when nothing speaks against it. Thread: any.
QString TargetProblem(const QString& strPath, FileNames names = OwnFileNames);

} // namespace KXHost
