#pragma once

#include "ktl/TPrintLog.h"

#include <QtCore/QString>

// A failure line of this library; `pszFunction` is "Class::Method".
inline void LogFailure(const char* pszFile, int iLine, const char* pszFunction, const QString& strText)
{
    ktl::TPrintLog::instance()->Log(pszFile, iLine, pszFunction, "", 6, "%s", strText.toUtf8().constData());
}
