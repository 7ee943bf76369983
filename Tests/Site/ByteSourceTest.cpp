#include "Host/Site/ByteSource.h"
#include "Host/Crypto/RecordCipher.h"
#include "Host/Site/SiteRecording.h"
#include "ScratchDir.h"
#include "TestMain.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QtEndian>
#include <QtTest/QtTest>

using namespace KXHost;

namespace {

struct Box
{
    QByteArray type;
    qint64 lOffset;
    qint64 lSize;
    bool operator==(const Box& other) const
    {
        return type == other.type && lOffset == other.lOffset && lSize == other.lSize;
    }
};

QByteArray ReadAll(const ByteSource& source, std::size_t uPiece = 100000)
{
    QByteArray all;
    const auto pReader = source.Open();
    for (auto piece = pReader->Next(uPiece); !piece.empty(); piece = pReader->Next(uPiece))
        all.append(piece.data(), static_cast<int>(piece.size()));
    return all;
}

// The boxes on the top level of an MP4 file of which at least all headers are given.
QVector<Box> Boxes(const QByteArray& file, qint64 lFileSize)
{
    QVector<Box> boxes;
    qint64 lOffset = 0;
    while (lOffset + 8 <= lFileSize) {
        const char* pHeader = file.constData() + lOffset;
        qint64 lSize = qFromBigEndian<quint32>(pHeader);
        if (lSize == 1)
            lSize = qFromBigEndian<qint64>(pHeader + 8);
        boxes.append({QByteArray(pHeader + 4, 4), lOffset, lSize});
        if (lSize < 8)
            break;
        lOffset += lSize;
    }
    return boxes;
}

QByteArray Clock()
{
    return SampleFile(QStringLiteral("clock.mp4"));
}

} // namespace

class ByteSourceTest : public QObject
{
    Q_OBJECT

private slots:
    void PaddingIsOneFreeBoxAfterTheSample();
    void PaddingOfMoreThanFourGigabytesHasTheLongHeader();
    void PaddingNeverCutsTheSample();
    void PaddingDiffersFromPlaceToPlace();
    void ReadersOfOneSourceGiveTheSameBytesInPiecesOfAnySize();
    void SealedSourceOpensToTheClearOne();
    void SealedSourceOfAFileThatShrankIsNotWhole();
    void HashIsSha256();
    void HashOfAFileThatVanishedIsEmpty();
};

void ByteSourceTest::PaddingIsOneFreeBoxAfterTheSample()
{
    const QByteArray sample = Clock();
    const ByteSourcePtr pSource = PaddedSource(sample, 3000001);
    const QByteArray file = ReadAll(*pSource);
    QCOMPARE(pSource->Size(), qint64(3000001));
    QCOMPARE(file.size(), 3000001);
    QVERIFY(file.startsWith(sample));
    const QVector<Box> boxes = Boxes(file, file.size());
    QCOMPARE(boxes.first().type, QByteArray("ftyp"));
    QVERIFY(boxes.last() == (Box{"free", sample.size(), 3000001 - sample.size()}));
    QByteArrayList types;
    for (const Box& box : boxes)
        types += box.type;
    QVERIFY2(types.contains("moov") && types.contains("mdat"), types.join(' ').constData());
}

void ByteSourceTest::PaddingOfMoreThanFourGigabytesHasTheLongHeader()
{
    const QByteArray sample = Clock();
    const qint64 lFive = Q_INT64_C(5) << 30;
    const ByteSourcePtr pSource = PaddedSource(sample, lFive);
    QCOMPARE(pSource->Size(), lFive);
    const auto pReader = pSource->Open();
    QByteArray head;
    while (head.size() < sample.size() + 16) {
        const auto piece = pReader->Next(1 << 16);
        head.append(piece.data(), static_cast<int>(piece.size()));
    }
    QCOMPARE(qFromBigEndian<quint32>(head.constData() + sample.size()), quint32(1));
    QVERIFY(Boxes(head, lFive).last() == (Box{"free", sample.size(), lFive - sample.size()}));
    const ByteSourcePtr pLongestShort = PaddedSource(sample, sample.size() + Q_INT64_C(0xFFFFFFFF));
    const auto piece = pLongestShort->Open()->Next(1 << 20);
    QCOMPARE(piece.size(), std::size_t(sample.size() + 8));
}

void ByteSourceTest::PaddingNeverCutsTheSample()
{
    const QByteArray sample = Clock();
    const QByteArray file = ReadAll(*PaddedSource(sample, 10));
    QCOMPARE(file.size(), sample.size() + 8);
    QVERIFY(Boxes(file, file.size()).last() == (Box{"free", sample.size(), 8}));
}

void ByteSourceTest::PaddingDiffersFromPlaceToPlace()
{
    const QByteArray sample = Clock();
    const QByteArray padding = ReadAll(*PaddedSource(sample, 12 << 20)).mid(sample.size() + 8);
    QSet<QByteArray> megabytes;
    for (int i = 0; i < 11; ++i)
        megabytes.insert(padding.mid(i << 20, 1 << 20));
    QCOMPARE(megabytes.size(), 11);
    QVERIFY(padding.count('\0') < padding.size() / 100);
    QVERIFY(ReadAll(*PaddedSource(sample, (12 << 20) + 1)).mid(sample.size() + 8, 4096) != padding.left(4096));
}

void ByteSourceTest::ReadersOfOneSourceGiveTheSameBytesInPiecesOfAnySize()
{
    const ByteSourcePtr pSource = PaddedSource(Clock(), 2500000);
    const QByteArray whole = ReadAll(*pSource, 1 << 24);
    QCOMPARE(ReadAll(*pSource, 7919), whole);
    QCOMPARE(whole.size(), 2500000);
}

void ByteSourceTest::SealedSourceOpensToTheClearOne()
{
    const ByteSourcePtr pClear = PaddedSource(Clock(), 700001);
    const ByteSourcePtr pSealed = SealedSource(pClear, "pass", "key text");
    const QByteArray sealed = ReadAll(*pSealed, 10007);
    QCOMPARE(pSealed->Size(), qint64(700001 + 80));
    QCOMPARE(qint64(sealed.size()), pSealed->Size());
    RecordDecryptor decryptor("pass", "key text");
    std::string strClear;
    QVERIFY(decryptor.Update(sealed.constData(), static_cast<std::size_t>(sealed.size()), strClear) ==
            CipherResult::Ok);
    QVERIFY(decryptor.End() == CipherResult::Ok);
    QCOMPARE(QByteArray::fromStdString(strClear), ReadAll(*pClear));
}

void ByteSourceTest::SealedSourceOfAFileThatShrankIsNotWhole()
{
    ScratchDir folder;
    QFile file(folder.filePath(QStringLiteral("a.mp4")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(100000, 'a')) == 100000);
    file.close();
    const ByteSourcePtr pSealed = SealedSource(FileSource(file.fileName()), "pass", "key text");
    QVERIFY(file.resize(60000));
    QVERIFY(ReadAll(*pSealed).size() < pSealed->Size());
}

void ByteSourceTest::HashIsSha256()
{
    ScratchDir folder;
    QFile file(folder.filePath(QStringLiteral("abc")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("abc") == 3);
    file.close();
    QCOMPARE(HashOf(*FileSource(file.fileName())),
             QStringLiteral("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"));
    const ByteSourcePtr pPadded = PaddedSource(Clock(), 4000000);
    const QByteArray expected = QCryptographicHash::hash(ReadAll(*pPadded), QCryptographicHash::Sha256).toHex();
    QCOMPARE(HashOf(*pPadded).toLatin1(), expected);
}

void ByteSourceTest::HashOfAFileThatVanishedIsEmpty()
{
    ScratchDir folder;
    QFile file(folder.filePath(QStringLiteral("a.mp4")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("abc") == 3);
    file.close();
    const ByteSourcePtr pSource = FileSource(file.fileName());
    QVERIFY(file.remove());
    QCOMPARE(HashOf(*pSource), QString());
}

KX_TEST(ByteSourceTest, QCoreApplication)
#include "ByteSourceTest.moc"
