#include "ScratchDir.h"
#include "SiteClient.h"

#include "Host/Crypto/PictureCipher.h"
#include "Host/Crypto/RecordCipher.h"
#include "Model/DownloadRecordFields.h"
#include "TestMain.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QJsonDocument>
#include <QtCore/QSet>
#include <QtCore/QUrl>
#include <QtTest/QtTest>

namespace {

QString Text(const QJsonObject& record, const char* pKey)
{
    return record.value(QLatin1String(pKey)).toString();
}

QVector<QJsonObject> Records(const KXHost::Site& site)
{
    QVector<QJsonObject> records;
    const QJsonArray catalogue = site.Catalogue(QStringLiteral("/recordings"));
    for (const QJsonValue value : catalogue)
        records.append(value.toObject());
    return records;
}

template <class Record>
QSet<QString> FieldNames()
{
    QSet<QString> names{QStringLiteral("sha256"), QStringLiteral("expect"), QStringLiteral("thumbnail")};
    Record record;
    const auto add = [&](const char* pName, const auto&) { names.insert(QLatin1String(pName)); };
    KXDownLoadList::VisitBaseFields(record, add);
    KXDownLoadList::VisitOwnFields(record, add);
    return names;
}

QSet<QString> FieldNamesOf(int iType)
{
    if (iType == 0)
        return FieldNames<KXDownLoadList::DownloadCloudRecordInfo>();
    return iType == 1 ? FieldNames<KXDownLoadList::DownloadDeviceRecordInfo>()
                      : FieldNames<KXDownLoadList::DownloadLanModuleRecordInfo>();
}

bool WriteFile(const QString& strPath, const QByteArray& content)
{
    QFile file(strPath);
    return QDir().mkpath(QFileInfo(strPath).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(content) == content.size();
}

std::string ClearCover(const QJsonObject& record, const QByteArray& sealed, KXHost::CipherResult& result)
{
    std::string strClear;
    result = KXHost::DecryptPicture(sealed.toStdString(), Text(record, "strCloudText4").toStdString(),
                                    Text(record, "strDeviceId").toStdString(),
                                    Text(record, "strPassword").toStdString(), strClear);
    return strClear;
}

} // namespace

class SiteCatalogueTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void FourteenRecordingsOfFourSources();
    void KeysAreRecordFields();
    void ValuesAreThoseOfRealRecordings();
    void SomeNamesAreAwkward();
    void EveryRecordingArrivesWithItsHash();
    void EncryptedRecordingOpensWithTheDevicePassword();
    void CoversOpenWithTheirKey();
    void ThumbnailsArePlainPictures();
    void JsonIsServedToo();
    void DifficultCasesAreAppendedWhenAskedFor();
    void DifficultCoversBehaveAsNamed();
    void FolderIsServedBySubfolder();
    void FolderWithoutRecordingsIsAnError();

private:
    KXHost::Site m_site;
};

void SiteCatalogueTest::initTestCase()
{
    QString strError;
    QVERIFY2(m_site.Start({}, &strError), qPrintable(strError));
}

void SiteCatalogueTest::FourteenRecordingsOfFourSources()
{
    QVector<int> counts(4);
    QSet<QString> ids;
    for (const QJsonObject& record : Records(m_site)) {
        ++counts[record.value(QStringLiteral("iRecordType")).toInt()];
        ids.insert(Text(record, "strRecordId"));
        QCOMPARE(Text(record, "expect"), QStringLiteral("finished"));
    }
    QCOMPARE(counts, (QVector<int>{5, 4, 2, 3}));
    QCOMPARE(ids.size(), 14);
}

void SiteCatalogueTest::KeysAreRecordFields()
{
    for (const QJsonObject& record : Records(m_site)) {
        const QSet<QString> names = FieldNamesOf(record.value(QStringLiteral("iRecordType")).toInt());
        for (const QString& strKey : record.keys())
            QVERIFY2(names.contains(strKey), qPrintable(strKey));
    }
}

void SiteCatalogueTest::ValuesAreThoseOfRealRecordings()
{
    const QString strFormat = QStringLiteral("yyyyMMddTHHmmss");
    for (const QJsonObject& record : Records(m_site)) {
        const QDateTime begin = QDateTime::fromString(Text(record, "strStartTime"), strFormat);
        const QDateTime end = QDateTime::fromString(Text(record, "strEndTime"), strFormat);
        QVERIFY(begin.isValid() && end.isValid() && begin < end);
        QCOMPARE(Text(record, "sha256").size(), 64);
        QVERIFY(!Text(record, "strText4").isEmpty() && !Text(record, "strDeviceId").isEmpty());
        QVERIFY(record.value(QStringLiteral("iValue5")).toInt() > 0);
        QVERIFY(Text(record, "strDownloadPath").startsWith(QStringLiteral("/recordings/")));
        QVERIFY(Text(record, "strDownloadPath").endsWith(QStringLiteral(".mp4")));
        if (record.value(QStringLiteral("iRecordType")).toInt() != 0)
            continue;
        bool bNumber = false;
        QVERIFY(Text(record, "strRecordId").toLongLong(&bNumber) > 0 && bNumber);
        QVERIFY(Text(record, "strCloudText1").startsWith(m_site.BaseUrl()));
    }
}

void SiteCatalogueTest::SomeNamesAreAwkward()
{
    QMap<QString, int> paths;
    int iSpaces = 0;
    int iForeign = 0;
    int iChinese = 0;
    qint64 lLargest = 0;
    for (const QJsonObject& record : Records(m_site)) {
        const QString strPath = Text(record, "strDownloadPath");
        ++paths[strPath];
        iSpaces += strPath.contains(QLatin1Char(' ')) ? 1 : 0;
        iForeign += strPath.contains(QStringLiteral("\u00e9")) ? 1 : 0;
        iChinese += strPath.contains(QStringLiteral("\u5317\u95e8")) ? 1 : 0;
        lLargest = qMax(lLargest, static_cast<qint64>(record.value(QStringLiteral("lFileSize")).toDouble()));
    }
    QCOMPARE(paths.size(), 13);
    QVERIFY(iSpaces > 3 && iForeign > 1 && iChinese == 1);
    QVERIFY(lLargest >= (Q_INT64_C(200) << 20));
}

void SiteCatalogueTest::EveryRecordingArrivesWithItsHash()
{
    for (const QJsonObject& record : Records(m_site)) {
        const Answer answer = GetRecord(m_site, Text(record, "strRecordId"));
        QCOMPARE(answer.iStatus, 200);
        QCOMPARE(answer.lReceived, answer.lAnnounced);
        if (record.contains(QStringLiteral("strCloudText2")))
            continue;
        QCOMPARE(double(answer.lReceived), record.value(QStringLiteral("lFileSize")).toDouble());
        QCOMPARE(QString::fromLatin1(answer.sha256), Text(record, "sha256"));
    }
}

void SiteCatalogueTest::EncryptedRecordingOpensWithTheDevicePassword()
{
    const QJsonObject record = RecordOf(m_site, QStringLiteral("9223372036854775799"));
    QVERIFY(!Text(record, "strCloudText2").isEmpty() && !Text(record, "strText1").isEmpty());
    QCOMPARE(Text(record, "strPassword"), QString());
    const QJsonObject passwords = m_site.ClientConfig().value(QStringLiteral("devicePasswords")).toObject();
    const QString strPassword = passwords.value(Text(record, "strDeviceId")).toString();
    QCOMPARE(strPassword, QStringLiteral("Depot_55!"));
    const Answer answer = GetRecord(m_site, QStringLiteral("9223372036854775799"));
    KXHost::RecordDecryptor decryptor(strPassword.toStdString(), Text(record, "strCloudText2").toStdString());
    std::string strClear;
    QVERIFY(decryptor.Update(answer.body.constData(), static_cast<std::size_t>(answer.body.size()), strClear) ==
            KXHost::CipherResult::Ok);
    QVERIFY(decryptor.End() == KXHost::CipherResult::Ok);
    QCOMPARE(double(strClear.size()), record.value(QStringLiteral("lFileSize")).toDouble());
    const QByteArray hash =
        QCryptographicHash::hash(QByteArray::fromStdString(strClear), QCryptographicHash::Sha256).toHex();
    QCOMPARE(QString::fromLatin1(hash), Text(record, "sha256"));
}

void SiteCatalogueTest::CoversOpenWithTheirKey()
{
    const QJsonObject record = RecordOf(m_site, QStringLiteral("4611686018427400101"));
    const Answer answer = Get(Text(record, "strCloudText1"));
    QCOMPARE(answer.iStatus, 200);
    KXHost::CipherResult result = KXHost::CipherResult::Failed;
    const std::string strClear = ClearCover(record, answer.body, result);
    QVERIFY(result == KXHost::CipherResult::Ok);
    QCOMPARE(QByteArray::fromStdString(strClear).left(3), QByteArray("\xFF\xD8\xFF"));
    QVERIFY(!answer.body.startsWith("\xFF\xD8\xFF"));
}

void SiteCatalogueTest::ThumbnailsArePlainPictures()
{
    const QString strUrl = m_site.BaseUrl() + QStringLiteral("/thumbs/KXD2S0048816_1_20240318T071111.jpg");
    QCOMPARE(Text(RecordOf(m_site, QStringLiteral("KXD2S0048816_1_20240318T071111")), "thumbnail"), strUrl);
    const Answer answer = Get(strUrl);
    QCOMPARE(answer.iStatus, 200);
    QVERIFY(answer.body.startsWith("\xFF\xD8\xFF"));
    QCOMPARE(Get(QString(m_site.BaseUrl() + QStringLiteral("/thumbs/nobody.jpg"))).iStatus, 404);
}

void SiteCatalogueTest::JsonIsServedToo()
{
    const Answer catalogue = Get(QString(m_site.BaseUrl() + QStringLiteral("/catalogue.json?folder=/a%20b")));
    QCOMPARE(QJsonDocument::fromJson(catalogue.body).array(), m_site.Catalogue(QStringLiteral("/a b")));
    const Answer config = Get(QString(m_site.BaseUrl() + QStringLiteral("/config.json")));
    const QJsonObject object = QJsonDocument::fromJson(config.body).object();
    QCOMPARE(object, m_site.ClientConfig());
    QCOMPARE(object.keys(),
             (QStringList{QStringLiteral("cloud"), QStringLiteral("device"), QStringLiteral("devicePasswords"),
                          QStringLiteral("iotLan"), QStringLiteral("lanModule")}));
    QCOMPARE(Text(object.value(QStringLiteral("device")).toObject(), "auth"), QStringLiteral("digest"));
    QCOMPARE(Text(object.value(QStringLiteral("lanModule")).toObject(), "auth"), QStringLiteral("basic"));
    QCOMPARE(Text(object.value(QStringLiteral("cloud")).toObject(), "auth"), QStringLiteral("none"));
}

void SiteCatalogueTest::DifficultCasesAreAppendedWhenAskedFor()
{
    KXHost::Site site;
    KXHost::Site::Options options;
    options.cases = KXHost::Site::Cases::All;
    QVERIFY(site.Start(options, nullptr));
    QMap<QString, int> expectations;
    for (const QJsonObject& record : Records(site))
        ++expectations[Text(record, "expect")];
    QCOMPARE(expectations.value(QStringLiteral("finished")), 14 + 7);
    QCOMPARE(expectations.value(QStringLiteral("refused")), 2);
    QCOMPARE(expectations.value(QStringLiteral("dropped")), 1);

    const QString strStale = QStringLiteral("KXD2S0059903_1_20240505T101500");
    QCOMPARE(GetRecord(site, strStale).iStatus, 401);
    const QJsonObject record = RecordOf(site, strStale);
    QCOMPARE(record.value(QStringLiteral("bNeedPassword")).toBool(), true);
    QCOMPARE(record.value(QStringLiteral("bCanGetPassword")).toBool(), true);
    QCOMPARE(GetAs(UrlOf(site, record), "Garage new").iStatus, 200);
    const QJsonObject hopeless = RecordOf(site, QStringLiteral("KXD2S0061174_1_20240506T120000"));
    QCOMPARE(GetAs(UrlOf(site, hopeless), "Attic told").iStatus, 401);
}

void SiteCatalogueTest::DifficultCoversBehaveAsNamed()
{
    KXHost::Site site;
    KXHost::Site::Options options;
    options.cases = KXHost::Site::Cases::All;
    QVERIFY(site.Start(options, nullptr));
    KXHost::CipherResult result = KXHost::CipherResult::Failed;
    const QJsonObject wrongKey = RecordOf(site, QStringLiteral("4611686018427400201"));
    ClearCover(wrongKey, Get(Text(wrongKey, "strCloudText1")).body, result);
    QVERIFY(result == KXHost::CipherResult::WrongKey);
    const QJsonObject missing = RecordOf(site, QStringLiteral("4611686018427400202"));
    QCOMPARE(Get(Text(missing, "strCloudText1")).iStatus, 404);
    const QJsonObject text = RecordOf(site, QStringLiteral("4611686018427400203"));
    QCOMPARE(ClearCover(text, Get(Text(text, "strCloudText1")).body, result), std::string("This is a text."));
    QVERIFY(result == KXHost::CipherResult::Ok);
    const QJsonObject first = RecordOf(site, QStringLiteral("4611686018427400204"));
    const QJsonObject second = RecordOf(site, QStringLiteral("4611686018427400205"));
    QCOMPARE(Text(first, "strCloudText1"), Text(second, "strCloudText1"));
    ClearCover(second, Get(Text(second, "strCloudText1")).body, result);
    QVERIFY(result == KXHost::CipherResult::Ok);
}

void SiteCatalogueTest::FolderIsServedBySubfolder()
{
    ScratchDir folder;
    QVERIFY(WriteFile(folder.filePath(QStringLiteral("a b.mp4")), "first"));
    QVERIFY(WriteFile(folder.filePath(QStringLiteral("device/d.MP4")), QByteArray(300000, 'd')));
    QVERIFY(WriteFile(folder.filePath(QStringLiteral("iotlan/i.mp4")), "second"));
    QVERIFY(WriteFile(folder.filePath(QStringLiteral("lanmodule/deep/m.mp4")), "third"));
    QVERIFY(WriteFile(folder.filePath(QStringLiteral("other/o.mp4")), "fourth"));
    QVERIFY(WriteFile(folder.filePath(QStringLiteral("notes.txt")), "no recording"));
    QVERIFY(WriteFile(folder.filePath(QStringLiteral("empty.mp4")), ""));
    KXHost::Site site;
    KXHost::Site::Options options;
    options.strDataDir = folder.path();
    QString strError;
    QVERIFY2(site.Start(options, &strError), qPrintable(strError));
    QMap<QString, int> types;
    for (const QJsonObject& record : Records(site)) {
        types[QFileInfo(Text(record, "strDownloadPath")).fileName()] =
            record.value(QStringLiteral("iRecordType")).toInt();
        const Answer answer = GetRecord(site, Text(record, "strRecordId"));
        QCOMPARE(answer.iStatus, 200);
        QCOMPARE(QString::fromLatin1(answer.sha256), Text(record, "sha256"));
    }
    QCOMPARE(types, (QMap<QString, int>{{QStringLiteral("a b.mp4"), 0},
                                        {QStringLiteral("empty.mp4"), 0},
                                        {QStringLiteral("d.MP4"), 1},
                                        {QStringLiteral("i.mp4"), 2},
                                        {QStringLiteral("m.mp4"), 3},
                                        {QStringLiteral("o.mp4"), 0}}));
}

void SiteCatalogueTest::FolderWithoutRecordingsIsAnError()
{
    ScratchDir folder;
    KXHost::Site site;
    KXHost::Site::Options options;
    options.strDataDir = folder.path();
    QString strError;
    QVERIFY(!site.Start(options, &strError));
    QVERIFY2(strError.contains(folder.path()) && strError.contains(QStringLiteral("no MP4")), qPrintable(strError));
    options.strDataDir = folder.filePath(QStringLiteral("gone"));
    QVERIFY(!site.Start(options, &strError));
    QVERIFY2(strError.contains(QStringLiteral("gone")), qPrintable(strError));
    QCOMPARE(site.Port(), 0);
}

KX_TEST(SiteCatalogueTest, QCoreApplication)
#include "SiteCatalogueTest.moc"
