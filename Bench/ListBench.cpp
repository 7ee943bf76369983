// One event with many records, against a bare loop that only reads them into objects.

#include "RatioMain.h"

#include "Engine/EngineRig.h"
#include "KXBase/GKXObserver.h"

#include <QtCore/QCoreApplication>

#include <benchmark/benchmark.h>

using namespace KXDownLoadList;

namespace {

QByteArray RecordStream(const QString& strFolder, int iCount)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (int i = 0; i < iCount; ++i) {
        DownloadDeviceRecordInfo record;
        record.iRecordType = DeviceRecord;
        record.strRecordId = QStringLiteral("device-%1").arg(i);
        record.strText1 = QStringLiteral("account-17");
        record.strDeviceId = QStringLiteral("SN20231107%1").arg(i % 16);
        record.strDownloadPath = QStringLiteral("%1/Front door %2.mp4").arg(strFolder).arg(i);
        record.strStartTime = QStringLiteral("20230131T081500");
        record.strEndTime = QStringLiteral("20230131T081630");
        record.lFileSize = 12345678;
        record.strText4 = QStringLiteral("Front door");
        record.Serialize(stream);
    }
    return bytes;
}

void BareLoop(benchmark::State& state)
{
    const QByteArray bytes = RecordStream(QStringLiteral("/downloads"), static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::vector<DownloadRecordInfoPtr> records;
        QDataStream stream(bytes);
        while (!stream.atEnd()) {
            records.push_back(std::make_shared<DownloadDeviceRecordInfo>());
            records.back()->Deserialize(stream);
        }
        benchmark::DoNotOptimize(records.data());
        state.PauseTiming();
        records.clear();
        state.ResumeTiming();
    }
}

void ReceiveList(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        {
            EngineRig rig;
            const QByteArray bytes = RecordStream(rig.World().Folder(), static_cast<int>(state.range(0)));
            const QVariantList payload{bytes, DeviceRecord};
            rig.Engine().disconnect(); // the rig's own recorders
            state.ResumeTiming();
            GKXObserver::notify("EventNotifyDownloadRecordList", payload);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

BENCHMARK(BareLoop)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReceiveList)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    return RunRatios(argc, argv, {{"ReceiveList/100000", "BareLoop/100000", 2.5}});
}
