#include "Host/ktl/LogMask.h"
#include "Host/ktl/LogSettings.h"
#include "ktl/TPrintLog.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <QtCore/QFile>

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>

namespace {

using Logger = std::unique_ptr<spdlog::logger>;

spdlog::level::level_enum NativeLevel(int iLevel)
{
    if (iLevel > 6)
        return spdlog::level::off;
    if (iLevel == 6)
        return spdlog::level::err;
    return iLevel >= 4 ? spdlog::level::warn : iLevel >= 2 ? spdlog::level::info : spdlog::level::debug;
}

spdlog::filename_t NativePath(const QString& strPath)
{
#ifdef SPDLOG_WCHAR_FILENAMES
    return strPath.toStdWString();
#else
    return QFile::encodeName(strPath).toStdString();
#endif
}

void SayOnStderr(const std::string& strText)
{
    std::fprintf(stderr, "log: %s\n", strText.c_str());
}

Q_ATTRIBUTE_FORMAT_PRINTF(1, 0) std::string Format(const char* pszFormat, va_list arguments)
{
    va_list measured;
    va_copy(measured, arguments);
    const int iLength = std::vsnprintf(nullptr, 0, pszFormat, measured);
    va_end(measured);
    if (iLength < 0)
        return std::string("(arguments not printable) ") + pszFormat;
    std::string strText(static_cast<std::size_t>(iLength) + 1, '\0');
    std::vsnprintf(&strText[0], strText.size(), pszFormat, arguments);
    strText.pop_back();
    return strText;
}

// One line stays one line, and no text can forge another or steer a terminal.
std::string EscapeControls(const std::string& strText)
{
    std::string strEscaped;
    strEscaped.reserve(strText.size());
    for (const char c : strText) {
        const auto uByte = static_cast<unsigned char>(c);
        if (c == '\n')
            strEscaped += "\\n";
        else if (c == '\r')
            strEscaped += "\\r";
        else if (uByte == 0x7F || (uByte < 0x20 && c != '\t'))
            strEscaped += fmt::format("\\x{:02x}", uByte);
        else
            strEscaped += c;
    }
    return strEscaped;
}

class PrintLog final : public ktl::TPrintLog
{
public:
    PrintLog() { Configure(KXHost::LogSettings()); }

    bool Configure(const KXHost::LogSettings& settings);
    bool AddSecret(const std::string& strSecret);
    Q_ATTRIBUTE_FORMAT_PRINTF(7, 8)
    void Log(const char* pszFile, int iLine, const char* pszFunction, const char* pszModule, int iLevel,
             const char* pszFormat, ...) override;

private:
    bool AddFileSink(const KXHost::LogSettings& settings);

    std::mutex m_mutex; // guards both below; the sinks have no lock of their own
    KXHost::LogMask m_mask;
    Logger m_pLogger;
};

bool PrintLog::AddFileSink(const KXHost::LogSettings& settings)
{
    try {
        m_pLogger->sinks().push_back(std::make_shared<spdlog::sinks::rotating_file_sink_st>(
            NativePath(settings.strFilePath), settings.uMaxFileBytes, settings.uMaxFiles));
        return true;
    } catch (const spdlog::spdlog_ex& error) {
        SayOnStderr(error.what());
        return false;
    }
}

bool PrintLog::Configure(const KXHost::LogSettings& settings)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto pConsole = std::make_shared<spdlog::sinks::stderr_sink_st>();
    pConsole->set_level(NativeLevel(settings.iConsoleLevel));
    m_pLogger = std::make_unique<spdlog::logger>("kx", pConsole);
    m_pLogger->set_error_handler([bSaid = false](const std::string& strError) mutable {
        if (!bSaid)
            SayOnStderr(strError);
        bSaid = true;
    });
    const bool bOpened = settings.strFilePath.isEmpty() || AddFileSink(settings);
    m_pLogger->set_level(spdlog::level::trace);
    m_pLogger->set_pattern("%Y-%m-%d %H:%M:%S.%e [%l] %v");
    m_pLogger->flush_on(spdlog::level::trace); // what a crash leaves behind is what it is kept for
    return bOpened;
}

bool PrintLog::AddSecret(const std::string& strSecret)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_mask.AddSecret(strSecret);
}

void PrintLog::Log(const char* pszFile, int iLine, const char* pszFunction, const char* pszModule, int iLevel,
                   const char* pszFormat, ...)
{
    va_list arguments;
    va_start(arguments, pszFormat);
    std::string strText = Format(pszFormat, arguments);
    va_end(arguments);
    if (*pszModule != '\0')
        strText = fmt::format("({}) {}", pszModule, strText);

    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::string strLine = fmt::format("{}:{} {} [{}] {}", pszFile, iLine, pszFunction,
                                            spdlog::details::os::thread_id(), m_mask.Mask(std::move(strText)));
    m_pLogger->log(NativeLevel(std::min(iLevel, 6)), spdlog::string_view_t(EscapeControls(strLine)));
}

// Never destroyed: other static objects may log while the process ends.
PrintLog& TheLog()
{
    static PrintLog* const s_pLog = new PrintLog;
    return *s_pLog;
}

} // namespace

ktl::TPrintLog* ktl::TPrintLog::instance()
{
    return &TheLog();
}

bool KXHost::SetLogSettings(const LogSettings& settings)
{
    return TheLog().Configure(settings);
}

bool KXHost::AddSecret(const std::string& strSecret)
{
    return TheLog().AddSecret(strSecret);
}
