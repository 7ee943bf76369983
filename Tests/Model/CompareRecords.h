#pragma once

#include "Model/DownloadRecordInfo.h"

#include <QtTest/QtTest>

// That a record has the fields of FilledRecords.h, field by field. The received size is named by the test: a copy takes
// it over, a stream does not carry it.
namespace FilledRecords {

inline void CompareBase(const KXDownLoadList::DownloadRecordInfo& record, qint64 lReceivedSize)
{
    QCOMPARE(record.strRecordId, QStringLiteral("7"));
    QCOMPARE(record.lValue1, Q_INT64_C(72623859790382856));
    QCOMPARE(record.lValue2, Q_INT64_C(-2));
    QCOMPARE(record.strText1, QStringLiteral("a"));
    QCOMPARE(record.strDeviceId, QStringLiteral("b"));
    QCOMPARE(record.uValue3, Q_UINT64_C(1));
    QCOMPARE(record.strDownloadPath, QString::fromUtf8("/v/ä.mp4"));
    QCOMPARE(record.strStartTime, QStringLiteral("c"));
    QCOMPARE(record.strEndTime, QStringLiteral("d"));
    QCOMPARE(record.lFileSize, Q_INT64_C(16));
    QCOMPARE(record.lReceivedSize, lReceivedSize);
    QCOMPARE(record.strPassword, QStringLiteral("e"));
    QCOMPARE(record.strText3, QStringLiteral("f"));
    QCOMPARE(record.strText4, QStringLiteral("g"));
    QCOMPARE(record.strText5, QStringLiteral("h"));
    QCOMPARE(record.iValue5, -5);
    QCOMPARE(record.strPicturePath, QStringLiteral("i"));
    QCOMPARE(record.strFileName, QStringLiteral("j"));
}

inline void CompareCloud(const KXDownLoadList::DownloadCloudRecordInfo& record, qint64 lReceivedSize)
{
    CompareBase(record, lReceivedSize);
    QCOMPARE(record.iRecordType, 0);
    QCOMPARE(record.iCloudValue, 6);
    QCOMPARE(record.strCloudText1, QStringLiteral("k"));
    QCOMPARE(record.strCloudText2, QStringLiteral("l"));
    QCOMPARE(record.strCloudText3, QStringLiteral("m"));
    QCOMPARE(record.strCloudText4, QStringLiteral("n"));
}

inline void CompareLan(const KXDownLoadList::DownloadLanModuleRecordInfo& record, int iRecordType, qint64 lReceivedSize)
{
    CompareBase(record, lReceivedSize);
    QCOMPARE(record.iRecordType, iRecordType);
    QCOMPARE(record.strLanText1, QStringLiteral("k"));
    QCOMPARE(record.strLanText2, QStringLiteral("l"));
    QCOMPARE(record.strLanText3, QStringLiteral("m"));
    QCOMPARE(record.iLanValue1, 8);
    QCOMPARE(record.strLanText4, QStringLiteral("n"));
    QCOMPARE(record.iLanValue2, 9);
    QCOMPARE(record.iLanValue3, 10);
    QCOMPARE(record.bLanFlag, true);
}

} // namespace FilledRecords
