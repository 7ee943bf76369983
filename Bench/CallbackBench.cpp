// A burst of data callbacks from four threads to the emitted signal, against bare queued calls by name.

#include "RatioMain.h"

#include "Engine/EngineRig.h"

#include <QtCore/QCoreApplication>

#include <benchmark/benchmark.h>

#include <thread>

namespace {

constexpr int Threads = 4;
constexpr int CallsPerThread = 250000;

// The least that takes the same values to a signal on another thread.
class BareReceiver : public QObject
{
    Q_OBJECT

public:
    static int Callback(qint64 iRecordID, int iLength, void* pUser)
    {
        const int64_t lRecordId = iRecordID;
        return QMetaObject::invokeMethod(static_cast<BareReceiver*>(pUser), "OnData", Qt::QueuedConnection,
                                         Q_ARG(int64_t, lRecordId), Q_ARG(int, iLength));
    }

signals:
    void Data(QString strRecordId, int iLength);

public slots:
    void OnData(int64_t iRecordId, int iLength) { emit Data(QString::number(iRecordId), iLength); }
};

// Raises the burst and turns the event loop until all of it has come through to the signal.
void RunBurst(benchmark::State& state, KXLogic::CloudDataCallback pCallback, void* pUser, const int& iReceived)
{
    for (auto _ : state) {
        const int iTarget = iReceived + Threads * CallsPerThread;
        std::vector<std::thread> threads;
        for (int iThread = 0; iThread < Threads; ++iThread)
            threads.emplace_back([pCallback, pUser, iThread] {
                for (int i = 0; i < CallsPerThread; ++i)
                    pCallback(iThread + 1, 4096, pUser);
            });
        while (iReceived < iTarget)
            QCoreApplication::processEvents();
        for (std::thread& thread : threads)
            thread.join();
    }
    state.SetItemsProcessed(state.iterations() * Threads * CallsPerThread);
}

void BareInvoke(benchmark::State& state)
{
    BareReceiver receiver;
    int iReceived = 0;
    QObject::connect(&receiver, &BareReceiver::Data, [&iReceived] { ++iReceived; });
    RunBurst(state, BareReceiver::Callback, &receiver, iReceived);
}

void DataCallback(benchmark::State& state)
{
    EngineRig rig;
    rig.Engine().disconnect(); // the rig's own recorders
    int iReceived = 0;
    QObject::connect(&rig.Engine(), &RecordDownloadModule::SignalDownloadRecordData, [&iReceived] { ++iReceived; });
    void* pUser = nullptr;
    const KXLogic::CloudDataCallback pCallback = rig.World().Downloads().CloudDataCallbackOf(pUser);
    RunBurst(state, pCallback, pUser, iReceived);
}

BENCHMARK(BareInvoke)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(DataCallback)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    qRegisterMetaType<int64_t>("int64_t");
    return RunRatios(argc, argv, {{"DataCallback", "BareInvoke", 1.5}});
}

#include "CallbackBench.moc"
