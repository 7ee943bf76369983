#include "Host/Client/CommandLine.h"
#include "Host/Client/Commands.h"
#include "Host/Client/Console.h"
#include "Host/Client/ExitStatus.h"
#include "Host/Client/Platform.h"
#include "Host/Site/Site.h"

#include <QtCore/QEventLoop>

namespace KXClient {

namespace {

QString Purpose()
{
    return QStringLiteral(
               "Runs the embedded site on the loopback address until it is interrupted.\n\nFaults (--fault):") +
           QStringLiteral("\n  ") + KXHost::Site::FaultHelp().join(QStringLiteral("\n  "));
}

void AddOptions(CommandLine& line)
{
    line.Add(QStringLiteral("port"), QStringLiteral("P"),
             QStringLiteral("Port to listen on; without it any free one."));
    line.Add(QStringLiteral("data"), QStringLiteral("DIR"),
             QStringLiteral("Serve the MP4 files of this folder instead of the built-in recordings."));
    line.Add(QStringLiteral("fault"), QStringLiteral("NAME[=VALUE]"),
             QStringLiteral("Misbehave in this way; may be given several times."), true);
    line.AddFlag(QStringLiteral("difficult"),
                 QStringLiteral("Offer also the recordings that need recovery or must fail."));
}

// Nothing when a value is wrong, which is said then.
std::optional<KXHost::Site::Options> ReadOptions(const CommandLine& line)
{
    KXHost::Site::Options options;
    if (line.IsSet(QStringLiteral("port"))) {
        const std::optional<int> iPort = line.Number(QStringLiteral("port"), 1, 65535);
        if (!iPort)
            return std::nullopt;
        options.iPort = *iPort;
    }
    options.strDataDir = line.Value(QStringLiteral("data"));
    if (line.IsSet(QStringLiteral("difficult")))
        options.cases = KXHost::Site::Cases::All;
    options.faults = line.Values(QStringLiteral("fault"));
    return options;
}

} // namespace

int RunServe(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("serve"), Purpose());
    AddOptions(line);
    if (const std::optional<int> iStatus = line.Parse(arguments))
        return *iStatus;
    const std::optional<KXHost::Site::Options> options = ReadOptions(line);
    if (!options)
        return InputError;

    StopSignal stop;
    QEventLoop loop;
    QObject::connect(&stop, &StopSignal::SignalStop, &loop, &QEventLoop::quit);
    KXHost::Site site;
    QString strError;
    if (!site.Start(*options, &strError)) {
        PrintError(strError);
        return InputError;
    }
    PrintLine(QStringLiteral("serving on %1").arg(site.BaseUrl()));
    PrintLine(QStringLiteral("configuration for --config: %1/config.json").arg(site.BaseUrl()));
    PrintLine(QStringLiteral("records for --records: %1/catalogue.json").arg(site.BaseUrl()));
    loop.exec();
    site.Stop();
    return AllWhole;
}

} // namespace KXClient
