// 100,000 waiting tasks against 100: finding one, pausing and resuming one, and starting the next.

#include "RatioMain.h"

#include "Engine/EngineRig.h"

#include <QtCore/QCoreApplication>

#include <benchmark/benchmark.h>

#include <cstddef>

using namespace KXDownLoadList;

namespace {

// An engine with that many device tasks, of which the first two run. They are met in their order, as a list is paused,
// resumed or worked off.
class Filled
{
public:
    explicit Filled(int iCount)
    {
        rig.Engine().disconnect(); // the rig's own recorders
        QList<DownloadRecordInfoPtr> list;
        for (int i = 0; i < iCount; ++i) {
            const QByteArray id = "device-" + QByteArray::number(i);
            list.append(std::make_shared<DownloadDeviceRecordInfo>(rig.Device(id.constData())));
        }
        rig.Engine().StartRecordDownloads(list);
        m_tasks = list.toVector();
        Forget();
    }

    DownloadRecordInfoPtr Next()
    {
        m_iNext = m_iNext + 1 < m_tasks.size() ? m_iNext + 1 : 0;
        return m_tasks.at(m_iNext);
    }
    // Away with what the fake host remembers.
    void Forget()
    {
        rig.Calls().Clear();
        rig.World().Log().Clear();
        rig.World().Bus().Clear();
    }

    EngineRig rig;

private:
    QVector<DownloadRecordInfoPtr> m_tasks;
    int m_iNext = -1;
};

void Find(benchmark::State& state)
{
    Filled filled(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(filled.rig.Engine().StateOf(filled.Next()));
}

// Out of its place and to the end. The two that run have their turn after all others, and are stopped.
void PauseAndResume(benchmark::State& state)
{
    Filled filled(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const QList<DownloadRecordInfoPtr> list{filled.Next()};
        filled.rig.Engine().PauseRecordDownloads(list);
        filled.rig.Engine().StartRecordDownloads(list);
        filled.Forget();
    }
}

// A running one fails, the next starts, and the failed one is tried again at the end.
void StartNext(benchmark::State& state)
{
    Filled filled(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const DownloadRecordInfoPtr pTask = filled.Next();
        filled.rig.RaiseState(Source::Device, qPrintable(pTask->strRecordId), 0);
        filled.rig.Engine().StartRecordDownloads({pTask});
        filled.Forget();
    }
}

BENCHMARK(Find)->Arg(100)->Arg(100000);
BENCHMARK(PauseAndResume)->Arg(100)->Arg(100000);
BENCHMARK(StartNext)->Arg(100)->Arg(100000);

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    return RunRatios(argc, argv,
                     {{"Find/100000", "Find/100", 4},
                      {"PauseAndResume/100000", "PauseAndResume/100", 4},
                      {"StartNext/100000", "StartNext/100", 4}});
}
