#pragma once

#include <QtCore/QtGlobal>

#include <vector>

// A promise of the kind "this takes at most `dLimit` times what that takes"; names as Google Benchmark prints them.
struct Ratio
{
    const char* pszMeasured;
    const char* pszBaseline;
    double dLimit;
};

// Runs the registered benchmarks, five times each, and prints the ratio of the medians for each promise: of processor
// time, which a busy machine disturbs less, or of real time for benchmarks that use several threads. 0 when all are
// kept, 1 when one is broken, 2 when one could not be measured.
int RunRatios(int iArgc, char** ppszArgv, const std::vector<Ratio>& ratios);

// A message handler: the offscreen platform says of each window what it cannot do.
void KeepQtQuiet(QtMsgType type, const QMessageLogContext& context, const QString& strText);
