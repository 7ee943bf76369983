#include "Model/CompareRecords.h"
#include "Model/FilledRecords.h"
#include "TestMain.h"

#include <QtCore/QDataStream>
#include <QtTest/QtTest>

#include <type_traits>

using namespace KXDownLoadList;

class RecordTest : public QObject
{
    Q_OBJECT

private slots:
    void RecordTypesHaveTheirCodes();
    void FreshRecordHasItsBaseDefaults();
    void FreshCloudRecordHasItsDefaults();
    void FreshDeviceRecordHasItsDefaults();
    void FreshLanModuleRecordHasItsDefaults();
    void CopyOfACloudRecordHasEveryField();
    void CopyOfADeviceRecordHasEveryField();
    void CopyOfALanModuleRecordHasEveryField();
    void CopyDoesNotFollowItsOriginal();
    void SharedRecordKeepsItsClass();
    void LastHandleFreesTheRecord();
    void StreamOperationsReturnTheirStream();
};

void RecordTest::RecordTypesHaveTheirCodes()
{
    QCOMPARE(CloudRecord, 0);
    QCOMPARE(DeviceRecord, 1);
    QCOMPARE(IOTLanRecord, 2);
    QCOMPARE(LanModuleRecord, 3);
}

void RecordTest::FreshRecordHasItsBaseDefaults()
{
    const DownloadCloudRecordInfo record;
    QCOMPARE(record.iRecordType, -1);
    QCOMPARE(record.lValue1, Q_INT64_C(-1));
    QCOMPARE(record.lValue2, Q_INT64_C(-1));
    QCOMPARE(record.uValue3, Q_UINT64_C(18446744073709551615));
    QCOMPARE(record.lFileSize, Q_INT64_C(-1));
    QCOMPARE(record.lReceivedSize, Q_INT64_C(-1));
    QCOMPARE(record.iValue5, -1);
    for (const QString* pText : {&record.strRecordId, &record.strText1, &record.strDeviceId, &record.strDownloadPath,
                                 &record.strStartTime, &record.strEndTime, &record.strPassword, &record.strText3,
                                 &record.strText4, &record.strText5, &record.strPicturePath, &record.strFileName})
        QCOMPARE(*pText, QString());
}

void RecordTest::FreshCloudRecordHasItsDefaults()
{
    const DownloadCloudRecordInfo record;
    QCOMPARE(record.iCloudValue, -1);
    for (const QString* pText :
         {&record.strCloudText1, &record.strCloudText2, &record.strCloudText3, &record.strCloudText4})
        QCOMPARE(*pText, QString());
}

void RecordTest::FreshDeviceRecordHasItsDefaults()
{
    const DownloadDeviceRecordInfo record;
    QCOMPARE(record.iDeviceValue, -1);
    QCOMPARE(record.bUseAltStart, false);
    QCOMPARE(record.bCanGetPassword, false);
    QCOMPARE(record.bNeedPassword, false);
    QCOMPARE(record.bGotNewPassword, false);
    QCOMPARE(record.bRetriedWithNewPassword, false);
}

void RecordTest::FreshLanModuleRecordHasItsDefaults()
{
    const DownloadLanModuleRecordInfo record;
    for (const QString* pText : {&record.strLanText1, &record.strLanText2, &record.strLanText3, &record.strLanText4})
        QCOMPARE(*pText, QString());
    QCOMPARE(record.iLanValue1, -1);
    QCOMPARE(record.iLanValue2, -1);
    QCOMPARE(record.iLanValue3, -1);
    QCOMPARE(record.bLanFlag, false);
}

void RecordTest::CopyOfACloudRecordHasEveryField()
{
    const DownloadCloudRecordInfo original = FilledRecords::Cloud();
    FilledRecords::CompareCloud(DownloadCloudRecordInfo(original), 99);
}

void RecordTest::CopyOfADeviceRecordHasEveryField()
{
    DownloadDeviceRecordInfo original = FilledRecords::Device();
    original.bCanGetPassword = true;
    original.bRetriedWithNewPassword = true;
    const DownloadDeviceRecordInfo copy(original);
    FilledRecords::CompareBase(copy, 99);
    QCOMPARE(copy.iRecordType, 1);
    QCOMPARE(copy.iDeviceValue, 7);
    QCOMPARE(copy.bUseAltStart, true);
    QCOMPARE(copy.bCanGetPassword, true);
    QCOMPARE(copy.bNeedPassword, true);
    QCOMPARE(copy.bGotNewPassword, true);
    QCOMPARE(copy.bRetriedWithNewPassword, true);
}

void RecordTest::CopyOfALanModuleRecordHasEveryField()
{
    const DownloadLanModuleRecordInfo original = FilledRecords::Lan(3);
    FilledRecords::CompareLan(DownloadLanModuleRecordInfo(original), 3, 99);
}

void RecordTest::CopyDoesNotFollowItsOriginal()
{
    DownloadCloudRecordInfo original = FilledRecords::Cloud();
    const DownloadCloudRecordInfo copy(original);
    original.strRecordId = QStringLiteral("other");
    original.strCloudText4 = QStringLiteral("other");
    QCOMPARE(copy.strRecordId, QStringLiteral("7"));
    QCOMPARE(copy.strCloudText4, QStringLiteral("n"));
}

void RecordTest::SharedRecordKeepsItsClass()
{
    static_assert(std::is_polymorphic<DownloadRecordInfo>::value, "told apart at run time");
    static_assert(!std::has_virtual_destructor<DownloadRecordInfo>::value, "shared pointers know the class");
    const DownloadRecordInfoPtr pCloud = std::make_shared<DownloadCloudRecordInfo>();
    const DownloadRecordInfoPtr pDevice = std::make_shared<DownloadDeviceRecordInfo>();
    const DownloadRecordInfoPtr pLan = std::make_shared<DownloadLanModuleRecordInfo>();
    QVERIFY(std::dynamic_pointer_cast<DownloadCloudRecordInfo>(pCloud));
    QVERIFY(!std::dynamic_pointer_cast<DownloadDeviceRecordInfo>(pCloud));
    QVERIFY(std::dynamic_pointer_cast<DownloadDeviceRecordInfo>(pDevice));
    QVERIFY(!std::dynamic_pointer_cast<DownloadLanModuleRecordInfo>(pDevice));
    QVERIFY(std::dynamic_pointer_cast<DownloadLanModuleRecordInfo>(pLan));
    QVERIFY(!std::dynamic_pointer_cast<DownloadCloudRecordInfo>(pLan));
}

void RecordTest::LastHandleFreesTheRecord()
{
    DownloadRecordInfoPtr pFirst = std::make_shared<DownloadCloudRecordInfo>(FilledRecords::Cloud());
    DownloadRecordInfoPtr pSecond = pFirst;
    const std::weak_ptr<DownloadRecordInfo> watch = pFirst;
    pFirst.reset();
    QCOMPARE(watch.expired(), false);
    QCOMPARE(pSecond->strRecordId, QStringLiteral("7"));
    pSecond.reset();
    QCOMPARE(watch.expired(), true);
}

// Also through the base class, which is how the engine sees them.
void RecordTest::StreamOperationsReturnTheirStream()
{
    DownloadCloudRecordInfo cloud = FilledRecords::Cloud();
    DownloadDeviceRecordInfo device = FilledRecords::Device();
    DownloadLanModuleRecordInfo lan = FilledRecords::Lan(2);
    for (DownloadRecordInfo* pRecord : std::initializer_list<DownloadRecordInfo*>{&cloud, &device, &lan}) {
        QByteArray bytes;
        QDataStream written(&bytes, QIODevice::WriteOnly);
        QCOMPARE(&pRecord->Serialize(written), &written);
        QDataStream read(bytes);
        QCOMPARE(&pRecord->Deserialize(read), &read);
        QVERIFY(read.atEnd());
    }
}

KX_TEST(RecordTest, QCoreApplication)
#include "RecordTest.moc"
