// 100,000 waiting tasks against 100: finding one, pausing and resuming one, and starting the next.

#include "RatioMain.h"

#include "Engine/EngineRig.h"

#include <QtCore/QCoreApplication>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <deque>
#include <memory>

using namespace KXDownLoadList;

namespace {

// An engine with that many device tasks, of which the first two run.
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
        m_order.assign(list.begin(), list.end());
        Forget();
    }
    // The last one made, when it is of that size.
    static Filled& With(int iCount)
    {
        static std::unique_ptr<Filled> s_pMade;
        if (!s_pMade || s_pMade->m_order.size() != static_cast<std::size_t>(iCount)) {
            s_pMade.reset(); // there is one world at a time
            s_pMade = std::make_unique<Filled>(iCount);
        }
        return *s_pMade;
    }

    // One after the other.
    const DownloadRecordInfoPtr& Next() { return m_order[m_uNext++ % m_order.size()]; }
    // The task at that place, which goes to the end.
    DownloadRecordInfoPtr ToTheEnd(int iPlace)
    {
        const DownloadRecordInfoPtr pTask = m_order[static_cast<std::size_t>(iPlace)];
        m_order.erase(m_order.begin() + iPlace);
        m_order.push_back(pTask);
        return pTask;
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
    std::deque<DownloadRecordInfoPtr> m_order; // as the engine has them
    std::size_t m_uNext = 0;
};

void Find(benchmark::State& state)
{
    Filled& filled = Filled::With(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(filled.rig.Engine().StateOf(filled.Next()));
}

// The first that waits.
void PauseAndResume(benchmark::State& state)
{
    Filled& filled = Filled::With(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const QList<DownloadRecordInfoPtr> list{filled.ToTheEnd(2)};
        filled.rig.Engine().PauseRecordDownloads(list);
        filled.rig.Engine().StartRecordDownloads(list);
        filled.Forget();
    }
}

// A running one fails, the next starts, and the failed one is tried again at the end.
void StartNext(benchmark::State& state)
{
    Filled& filled = Filled::With(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const DownloadRecordInfoPtr pTask = filled.ToTheEnd(0);
        filled.rig.RaiseState(Source::Device, qPrintable(pTask->strRecordId), 0);
        if (filled.rig.Calls().Count("StartDeviceRecordDownload") != 1)
            return state.SkipWithError("no other one was started");
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
