// A queue of 100,000 tasks against one of 100: finding, removing and popping.

#include "RatioMain.h"

#include "Module/RecordQueue.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <vector>

using namespace KXDownLoadList;

namespace {

constexpr int IdSize = 24;

// A queue of that many tasks, and their ids as the host gives them: narrow texts. Tasks are met in their order, as a
// list arrives, is paused, resumed or worked off.
struct Filled
{
    explicit Filled(int iCount)
        : ids(static_cast<std::size_t>(iCount) * IdSize)
    {
        for (int i = 0; i < iCount; ++i) {
            std::snprintf(IdOf(i), IdSize, "device-%d", i);
            const auto pTask = std::make_shared<DownloadDeviceRecordInfo>();
            pTask->strRecordId = QString::fromUtf8(IdOf(i));
            queue.Append(pTask);
        }
    }
    char* IdOf(int i) { return ids.data() + static_cast<std::size_t>(i) * IdSize; }
    QString NextId()
    {
        m_iNext = m_iNext + 1 < queue.Count() ? m_iNext + 1 : 0;
        return QString::fromUtf8(IdOf(m_iNext));
    }

    std::vector<char> ids;
    RecordQueue queue;

private:
    int m_iNext = 0;
};

void Find(benchmark::State& state)
{
    Filled filled(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(filled.queue.Find(filled.NextId()));
}

// Taken out and put back at the end, so that the queue keeps its length.
void RemoveAndAppend(benchmark::State& state)
{
    Filled filled(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const QString strId = filled.NextId();
        const DownloadRecordInfoPtr pTask = filled.queue.Find(strId);
        filled.queue.Remove(strId);
        filled.queue.Append(pTask);
    }
}

void PopAndAppend(benchmark::State& state)
{
    Filled filled(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const DownloadRecordInfoPtr pTask = filled.queue.First();
        filled.queue.RemoveTask(pTask);
        filled.queue.Append(pTask);
    }
}

BENCHMARK(Find)->Arg(100)->Arg(100000);
BENCHMARK(RemoveAndAppend)->Arg(100)->Arg(100000);
BENCHMARK(PopAndAppend)->Arg(100)->Arg(100000);

} // namespace

int main(int argc, char** argv)
{
    return RunRatios(argc, argv,
                     {{"Find/100000", "Find/100", 2},
                      {"RemoveAndAppend/100000", "RemoveAndAppend/100", 2},
                      {"PopAndAppend/100000", "PopAndAppend/100", 2}});
}
