#include "RatioMain.h"

#include <QtCore/QString>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>

namespace {

class MedianReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.aggregate_name != "median")
                continue;
            const bool bRealTime = !run.run_name.time_type.empty();
            m_medians[run.run_name.function_name + Arguments(run)] =
                bRealTime ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
        }
    }

    // 0 when that benchmark did not run.
    double Median(const std::string& strName) const
    {
        const auto median = m_medians.find(strName);
        return median == m_medians.end() ? 0 : median->second;
    }

private:
    static std::string Arguments(const Run& run)
    {
        return run.run_name.args.empty() ? std::string() : "/" + run.run_name.args;
    }

    std::map<std::string, double> m_medians;
};

// 0 kept, 1 broken, 2 not measured.
int Judge(const Ratio& ratio, const MedianReporter& reporter)
{
    const double dMeasured = reporter.Median(ratio.pszMeasured);
    const double dBaseline = reporter.Median(ratio.pszBaseline);
    if (dMeasured <= 0 || dBaseline <= 0) {
        std::printf("%s : %s was not measured\n", ratio.pszMeasured, ratio.pszBaseline);
        return 2;
    }
    const bool bKept = dMeasured / dBaseline <= ratio.dLimit;
    std::printf("%s : %s = %.2f (at most %.2f) %s\n", ratio.pszMeasured, ratio.pszBaseline, dMeasured / dBaseline,
                ratio.dLimit, bKept ? "kept" : "BROKEN");
    return bKept ? 0 : 1;
}

} // namespace

int RunRatios(int iArgc, char** ppszArgv, const std::vector<Ratio>& ratios)
{
    std::vector<char*> arguments(ppszArgv, ppszArgv + iArgc);
    char szRepetitions[] = "--benchmark_repetitions=5";
    char szAggregates[] = "--benchmark_report_aggregates_only=true";
    char szInterleaving[] = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, {szRepetitions, szAggregates, szInterleaving});
    int iCount = static_cast<int>(arguments.size());
    benchmark::Initialize(&iCount, arguments.data());
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    int iStatus = 0;
    for (const Ratio& ratio : ratios)
        iStatus = std::max(iStatus, Judge(ratio, reporter));
    return iStatus;
}

void KeepQtQuiet(QtMsgType type, const QMessageLogContext&, const QString& strText)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(strText));
}
