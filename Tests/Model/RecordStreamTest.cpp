#include "Model/CompareRecords.h"
#include "Model/FilledRecords.h"
#include "TestMain.h"

#include <QtCore/QDataStream>
#include <QtTest/QtTest>

#include <functional>
#include <utility>

using namespace KXDownLoadList;

namespace {

QByteArray Written(const DownloadRecordInfo& record)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    record.Serialize(stream);
    return bytes.toHex();
}

template <class Record>
Record Read(const QByteArray& hex, QDataStream::Status expected = QDataStream::Ok)
{
    QDataStream stream(QByteArray::fromHex(hex));
    Record record;
    record.Deserialize(stream);
    if (stream.status() != expected)
        qFatal("the stream ended in status %d", static_cast<int>(stream.status()));
    return record;
}

} // namespace

class RecordStreamTest : public QObject
{
    Q_OBJECT

private slots:
    void EachClassIsWrittenAsItsBytes_data();
    void EachClassIsWrittenAsItsBytes();
    void DefaultsAreWrittenAsOnesAndNulls_data();
    void DefaultsAreWrittenAsOnesAndNulls();
    void EachDeviceFlagIsWrittenAtItsPlace_data();
    void EachDeviceFlagIsWrittenAtItsPlace();
    void CloudRecordIsReadFromItsBytes();
    void DeviceRecordIsReadFromItsBytes();
    void BothLanTypesAreReadFromTheSameFields_data();
    void BothLanTypesAreReadFromTheSameFields();
    void ReceivedSizeStaysTheReaders();
    void EmptyTextStaysApartFromNoText();
    void RecordsLieBackToBack();
    void EmptyStreamIsAtItsEndAtOnce();
    void CutRecordIsFilledUpToTheCut_data();
    void CutRecordIsFilledUpToTheCut();
    void EveryCutIsSeenInTheStreamsStatus_data();
    void EveryCutIsSeenInTheStreamsStatus();
    void TextOfOddLengthIsCorrupt();
    void HugeTextLengthIsReadWithoutTakingTheMemory();
};

using RecordMaker = std::function<DownloadRecordInfoPtr()>;
Q_DECLARE_METATYPE(RecordMaker)

template <class Record>
RecordMaker Maker(Record record)
{
    return [record = std::move(record)] { return std::make_shared<Record>(record); };
}

void RecordStreamTest::EachClassIsWrittenAsItsBytes_data()
{
    QTest::addColumn<RecordMaker>("make");
    QTest::addColumn<QByteArray>("hex");
    using namespace FilledRecords;
    QTest::newRow("cloud: base part, then five cloud fields") << Maker(Cloud()) << Hex(0, CloudBytes);
    QTest::newRow("device: base part, then stream and five flags") << Maker(Device()) << Hex(1, DeviceBytes);
    QTest::newRow("IOT LAN: base part, then eight LAN fields") << Maker(Lan(2)) << Hex(2, LanBytes);
    QTest::newRow("LAN module: base part, then eight LAN fields") << Maker(Lan(3)) << Hex(3, LanBytes);
}

void RecordStreamTest::EachClassIsWrittenAsItsBytes()
{
    QFETCH(RecordMaker, make);
    QFETCH(QByteArray, hex);
    QCOMPARE(Written(*make()), hex);
}

void RecordStreamTest::DefaultsAreWrittenAsOnesAndNulls_data()
{
    QTest::addColumn<RecordMaker>("make");
    QTest::addColumn<int>("onesOfTheBase");
    QTest::addColumn<QByteArray>("ownHex");
    // 14 numbers of 32 bits or null texts and 4 numbers of 64 bits, all bits set: 88 bytes.
    QTest::newRow("cloud") << Maker(DownloadCloudRecordInfo()) << 88
                           << QByteArray("ffffffffffffffffffffffffffffffffffffffff");
    QTest::newRow("device") << Maker(DownloadDeviceRecordInfo()) << 88 << QByteArray("ffffffff0000000000");
    QTest::newRow("LAN") << Maker(DownloadLanModuleRecordInfo()) << 88
                         << QByteArray("ffffffffffffffffffffffffffffffffffffffffffffffffffffffff00");
}

void RecordStreamTest::DefaultsAreWrittenAsOnesAndNulls()
{
    QFETCH(RecordMaker, make);
    QFETCH(int, onesOfTheBase);
    QFETCH(QByteArray, ownHex);
    QCOMPARE(Written(*make()), QByteArray(2 * onesOfTheBase, 'f') + ownHex);
}

void RecordStreamTest::EachDeviceFlagIsWrittenAtItsPlace_data()
{
    QTest::addColumn<int>("flag");
    QTest::addColumn<QByteArray>("lastBytes");
    QTest::newRow("bUseAltStart first") << 0 << QByteArray("0100000000");
    QTest::newRow("bCanGetPassword second") << 1 << QByteArray("0001000000");
    QTest::newRow("bNeedPassword third") << 2 << QByteArray("0000010000");
    QTest::newRow("bGotNewPassword fourth") << 3 << QByteArray("0000000100");
    QTest::newRow("bRetriedWithNewPassword fifth") << 4 << QByteArray("0000000001");
}

void RecordStreamTest::EachDeviceFlagIsWrittenAtItsPlace()
{
    QFETCH(int, flag);
    QFETCH(QByteArray, lastBytes);
    DownloadDeviceRecordInfo record;
    record.bUseAltStart = flag == 0;
    record.bCanGetPassword = flag == 1;
    record.bNeedPassword = flag == 2;
    record.bGotNewPassword = flag == 3;
    record.bRetriedWithNewPassword = flag == 4;
    const QByteArray hex = Written(record);
    QCOMPARE(hex.right(10), lastBytes);
    const auto back = Read<DownloadDeviceRecordInfo>(hex);
    QCOMPARE(back.bUseAltStart, flag == 0);
    QCOMPARE(back.bCanGetPassword, flag == 1);
    QCOMPARE(back.bNeedPassword, flag == 2);
    QCOMPARE(back.bGotNewPassword, flag == 3);
    QCOMPARE(back.bRetriedWithNewPassword, flag == 4);
}

void RecordStreamTest::CloudRecordIsReadFromItsBytes()
{
    const auto record = Read<DownloadCloudRecordInfo>(FilledRecords::Hex(0, FilledRecords::CloudBytes));
    FilledRecords::CompareCloud(record, -1);
}

void RecordStreamTest::DeviceRecordIsReadFromItsBytes()
{
    const auto record = Read<DownloadDeviceRecordInfo>(FilledRecords::Hex(1, FilledRecords::DeviceBytes));
    FilledRecords::CompareBase(record, -1);
    QCOMPARE(record.iRecordType, 1);
    QCOMPARE(record.iDeviceValue, 7);
    QCOMPARE(record.bUseAltStart, true);
    QCOMPARE(record.bCanGetPassword, false);
    QCOMPARE(record.bNeedPassword, true);
    QCOMPARE(record.bGotNewPassword, true);
    QCOMPARE(record.bRetriedWithNewPassword, false);
}

void RecordStreamTest::BothLanTypesAreReadFromTheSameFields_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("type 2 stays 2") << 2;
    QTest::newRow("type 3 stays 3") << 3;
}

void RecordStreamTest::BothLanTypesAreReadFromTheSameFields()
{
    QFETCH(int, type);
    const auto record = Read<DownloadLanModuleRecordInfo>(FilledRecords::Hex(type, FilledRecords::LanBytes));
    FilledRecords::CompareLan(record, type, -1);
}

void RecordStreamTest::ReceivedSizeStaysTheReaders()
{
    QDataStream stream(QByteArray::fromHex(FilledRecords::Hex(0, FilledRecords::CloudBytes)));
    DownloadCloudRecordInfo record;
    record.lReceivedSize = 42;
    record.Deserialize(stream);
    QCOMPARE(record.lReceivedSize, Q_INT64_C(42));
}

void RecordStreamTest::EmptyTextStaysApartFromNoText()
{
    DownloadCloudRecordInfo record;
    record.strCloudText4 = QStringLiteral("");
    const QByteArray hex = Written(record);
    QCOMPARE(hex.right(16), QByteArray("ffffffff00000000"));
    const auto back = Read<DownloadCloudRecordInfo>(hex);
    QCOMPARE(back.strCloudText3.isNull(), true);
    QCOMPARE(back.strCloudText4.isNull(), false);
    QCOMPARE(back.strCloudText4, QString());
}

void RecordStreamTest::RecordsLieBackToBack()
{
    QDataStream stream(QByteArray::fromHex(FilledRecords::Hex(2, FilledRecords::LanBytes) +
                                           FilledRecords::Hex(3, FilledRecords::LanBytes)));
    DownloadLanModuleRecordInfo first;
    first.Deserialize(stream);
    QCOMPARE(stream.atEnd(), false);
    DownloadLanModuleRecordInfo second;
    second.Deserialize(stream);
    QCOMPARE(stream.atEnd(), true);
    QCOMPARE(stream.status(), QDataStream::Ok);
    QCOMPARE(first.iRecordType, 2);
    QCOMPARE(second.iRecordType, 3);
    FilledRecords::CompareBase(second, -1);
}

void RecordStreamTest::EmptyStreamIsAtItsEndAtOnce()
{
    QDataStream stream{QByteArray()};
    QCOMPARE(stream.atEnd(), true);
}

void RecordStreamTest::CutRecordIsFilledUpToTheCut_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("recordId");
    QTest::addColumn<qint64>("value1");
    QTest::newRow("cut at once") << 0 << 0 << QString() << Q_INT64_C(0);
    QTest::newRow("cut after the type") << 4 << 3 << QString() << Q_INT64_C(0);
    QTest::newRow("cut inside the record id") << 9 << 3 << QString() << Q_INT64_C(0);
    QTest::newRow("cut after the record id") << 10 << 3 << QStringLiteral("7") << Q_INT64_C(0);
    QTest::newRow("cut after the channel") << 18 << 3 << QStringLiteral("7") << Q_INT64_C(72623859790382856);
}

void RecordStreamTest::CutRecordIsFilledUpToTheCut()
{
    QFETCH(int, bytes);
    QFETCH(int, type);
    QFETCH(QString, recordId);
    QFETCH(qint64, value1);
    const auto record = Read<DownloadLanModuleRecordInfo>(
        FilledRecords::Hex(3, FilledRecords::LanBytes).left(2 * bytes), QDataStream::ReadPastEnd);
    QCOMPARE(record.iRecordType, type);
    QCOMPARE(record.strRecordId, recordId);
    QCOMPARE(record.lValue1, value1);
    QCOMPARE(record.lReceivedSize, Q_INT64_C(-1));
}

void RecordStreamTest::EveryCutIsSeenInTheStreamsStatus_data()
{
    QTest::addColumn<RecordMaker>("makeEmpty");
    QTest::addColumn<QByteArray>("hex");
    using namespace FilledRecords;
    QTest::newRow("cloud") << Maker(DownloadCloudRecordInfo()) << Hex(0, CloudBytes);
    QTest::newRow("device") << Maker(DownloadDeviceRecordInfo()) << Hex(1, DeviceBytes);
    QTest::newRow("LAN") << Maker(DownloadLanModuleRecordInfo()) << Hex(3, LanBytes);
}

void RecordStreamTest::EveryCutIsSeenInTheStreamsStatus()
{
    QFETCH(RecordMaker, makeEmpty);
    QFETCH(QByteArray, hex);
    const QByteArray whole = QByteArray::fromHex(hex);
    for (int iBytes = 0; iBytes < whole.size(); ++iBytes) {
        QDataStream stream(whole.left(iBytes));
        makeEmpty()->Deserialize(stream);
        QVERIFY2(stream.status() == QDataStream::ReadPastEnd, QByteArray::number(iBytes).constData());
        QVERIFY(stream.atEnd());
    }
}

void RecordStreamTest::TextOfOddLengthIsCorrupt()
{
    const auto record = Read<DownloadCloudRecordInfo>("0000000000000003006100", QDataStream::ReadCorruptData);
    QCOMPARE(record.strRecordId, QString());
}

void RecordStreamTest::HugeTextLengthIsReadWithoutTakingTheMemory()
{
    // A length of almost 4 GiB with 2 bytes behind it.
    const auto record = Read<DownloadCloudRecordInfo>("00000000fffffffe0061", QDataStream::ReadPastEnd);
    QCOMPARE(record.strRecordId, QString());
}

KX_TEST(RecordStreamTest, QCoreApplication)
#include "RecordStreamTest.moc"
