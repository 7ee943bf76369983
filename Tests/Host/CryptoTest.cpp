#include "Host/Crypto/DeviceUserInfo.h"
#include "Host/Crypto/PictureCipher.h"
#include "Host/Crypto/RecordCipher.h"
#include "TestMain.h"

#include <QtTest/QtTest>

#include <algorithm>
#include <thread>

using KXHost::CipherResult;

namespace {

// Sealed by another implementation of the format (Python's hashlib and cryptography), with the salt 00..0f and the
// initial vector 64..6f.
const QByteArray SealedRecording =
    QByteArray::fromHex("4b58524543303031000102030405060708090a0b0c0d0e0f6465666768696a6b6c6d6e6f73e51a0fed0a3766"
                        "bc286205e1df3b7934b19f1c6b212fb7f6ce8011753fada86dd6e2bd5291cbc41d85da0722861904fb66872f"
                        "f2a459917333c598c508b3e0282b635c9136"); // "secret", "key-7"
const QByteArray SealedPicture =
    QByteArray::fromHex("4b58504943303031000102030405060708090a0b0c0d0e0f6465666768696a6b6c6d6e6f04ed692e89e366c9"
                        "0c1057497f1d73c0067a8d2507b7b5302fe69df8c8e768c02121ea4720adc095d912cef18a2dab2f6820ce5b"
                        "7d"); // "key-7", "DEV1", "secret"
const std::string SealedPassword =
    "S1hQV0QwMDEAAQIDBAUGBwgJCgsMDQ4PZGVmZ2hpamtsbW5vFv7kB2n5nmzL6uybf6JyztvwcKHvqYS6Ueizvqmb"
    "DOdD9PnS3clE8p76LSEBfLdASA=="; // "DEV1"
const std::string ClearRecording = "twenty-six clear bytes, ok";

std::string Pattern(std::size_t uSize)
{
    std::string strData(uSize, '\0');
    for (std::size_t i = 0; i < uSize; ++i)
        strData[i] = static_cast<char>((i * 131U + i / 251U) & 0xFFU);
    return strData;
}

// Seals or opens in pieces of the given size.
std::string Sealed(const std::string& strClear, std::size_t uPiece)
{
    KXHost::RecordEncryptor encryptor("secret", "key-7");
    std::string strAll;
    std::string strOut;
    if (encryptor.Begin(strOut) != CipherResult::Ok)
        return std::string();
    strAll = strOut;
    for (std::size_t i = 0; i < strClear.size(); i += uPiece) {
        encryptor.Update(strClear.data() + i, std::min(uPiece, strClear.size() - i), strOut);
        strAll += strOut;
    }
    encryptor.End(strOut);
    return strAll + strOut;
}

CipherResult Open(const std::string& strSealed, std::size_t uPiece, std::string& strClear,
                  const std::string& strPassword = "secret", const std::string& strKeyText = "key-7")
{
    KXHost::RecordDecryptor decryptor(strPassword, strKeyText);
    std::string strOut;
    for (std::size_t i = 0; i < strSealed.size(); i += uPiece) {
        const CipherResult result =
            decryptor.Update(strSealed.data() + i, std::min(uPiece, strSealed.size() - i), strOut);
        if (result != CipherResult::Ok)
            return result;
        strClear += strOut;
    }
    return decryptor.End();
}

} // namespace

class CryptoTest : public QObject
{
    Q_OBJECT

private slots:
    void OpensWhatAnotherImplementationSealed();
    void SealsAndOpensInPiecesOfAnySize_data();
    void SealsAndOpensInPiecesOfAnySize();
    void TellsWrongKeyAtTheHeader();
    void TellsEveryAlteredByte();
    void TellsEveryTruncation();
    void TellsAppendedBytes();
    void TwoSealsOfOneTextDiffer();
    void PictureResults_data();
    void PictureResults();
    void DevicePasswordOpensForItsDeviceOnly();
    void WorksOnManyThreadsAtOnce();
};

void CryptoTest::OpensWhatAnotherImplementationSealed()
{
    std::string strClear;
    QCOMPARE(Open(SealedRecording.toStdString(), 7, strClear), CipherResult::Ok);
    QCOMPARE(strClear, ClearRecording);
    QCOMPARE(KXHost::DecryptPicture(SealedPicture.toStdString(), "key-7", "DEV1", "secret", strClear),
             CipherResult::Ok);
    QCOMPARE(strClear, std::string("a picture"));
    QCOMPARE(KXHost::DecryptDeviceUserInfo("DEV1", SealedPassword, strClear), CipherResult::Ok);
    QCOMPARE(strClear, std::string("p\xC3\xA4ss"));
}

void CryptoTest::SealsAndOpensInPiecesOfAnySize_data()
{
    QTest::addColumn<int>("iSize");
    QTest::addColumn<int>("iPiece");
    QTest::newRow("nothing at all") << 0 << 16;
    QTest::newRow("one byte") << 1 << 1;
    QTest::newRow("as long as the tag, byte by byte") << 16 << 1;
    QTest::newRow("pieces that split the blocks") << 5000 << 17;
    QTest::newRow("pieces one short of a header") << 5000 << 63;
    QTest::newRow("all in one piece") << 100000 << 1000000;
    QTest::newRow("large pieces and a rest") << 3000001 << 262144;
}

void CryptoTest::SealsAndOpensInPiecesOfAnySize()
{
    QFETCH(int, iSize);
    QFETCH(int, iPiece);
    const std::string strClear = Pattern(static_cast<std::size_t>(iSize));
    const std::string strSealed = Sealed(strClear, static_cast<std::size_t>(iPiece));
    QCOMPARE(strSealed.size(), static_cast<std::size_t>(iSize) + 80U);
    std::string strOpened;
    QCOMPARE(Open(strSealed, static_cast<std::size_t>(iPiece), strOpened), CipherResult::Ok);
    QVERIFY(strOpened == strClear);
}

void CryptoTest::TellsWrongKeyAtTheHeader()
{
    const std::string strHeader = SealedRecording.left(64).toStdString();
    std::string strClear;
    QCOMPARE(Open(strHeader, 64, strClear, "Secret", "key-7"), CipherResult::WrongKey);
    QCOMPARE(Open(strHeader, 64, strClear, "secret", "key-8"), CipherResult::WrongKey);
    QCOMPARE(Open(strHeader, 64, strClear, "", ""), CipherResult::WrongKey);
    QCOMPARE(Open(strHeader, 64, strClear, "secretk", "ey-7"), CipherResult::WrongKey);
    QVERIFY(strClear.empty());
}

void CryptoTest::TellsEveryAlteredByte()
{
    for (int i = 0; i < SealedRecording.size(); ++i) {
        std::string strAltered = SealedRecording.toStdString();
        strAltered[static_cast<std::size_t>(i)] = static_cast<char>(strAltered[static_cast<std::size_t>(i)] ^ 1);
        std::string strClear;
        const CipherResult result = Open(strAltered, 32, strClear);
        QVERIFY2(result == (i < 8 ? CipherResult::NotSealed : CipherResult::Damaged), qPrintable(QString::number(i)));
    }
}

void CryptoTest::TellsEveryTruncation()
{
    for (int i = 0; i < SealedRecording.size(); ++i) {
        std::string strClear;
        const CipherResult result = Open(SealedRecording.left(i).toStdString(), 9, strClear);
        QVERIFY2(result == (i < 80 ? CipherResult::Truncated : CipherResult::Damaged), qPrintable(QString::number(i)));
    }
}

void CryptoTest::TellsAppendedBytes()
{
    std::string strClear;
    QCOMPARE(Open(SealedRecording.toStdString() + "x", 1000, strClear), CipherResult::Damaged);
}

void CryptoTest::TwoSealsOfOneTextDiffer()
{
    QVERIFY(Sealed(ClearRecording, 5) != Sealed(ClearRecording, 5));
}

void CryptoTest::PictureResults_data()
{
    QTest::addColumn<QByteArray>("sealed");
    QTest::addColumn<QByteArray>("keyText");
    QTest::addColumn<int>("iResult");
    QByteArray flipped = SealedPicture;
    flipped[70] = static_cast<char>(flipped[70] ^ 4);
    QTest::newRow("the right key opens") << SealedPicture << QByteArray("key-7") << 0;
    QTest::newRow("a JPEG is no encrypted picture")
        << QByteArray("\xFF\xD8\xFF\xE0 and so on") << QByteArray("key-7") << 1;
    QTest::newRow("a recording is no picture") << SealedRecording << QByteArray("key-7") << 1;
    QTest::newRow("a wrong key text") << SealedPicture << QByteArray("key-8") << 2;
    QTest::newRow("an altered picture") << flipped << QByteArray("key-7") << 3;
    QTest::newRow("half a header") << SealedPicture.left(30) << QByteArray("key-7") << 4;
    QTest::newRow("nothing") << QByteArray() << QByteArray("key-7") << 4;
}

void CryptoTest::PictureResults()
{
    QFETCH(QByteArray, sealed);
    QFETCH(QByteArray, keyText);
    QFETCH(int, iResult);
    std::string strClear = "untouched";
    const CipherResult result =
        KXHost::DecryptPicture(sealed.toStdString(), keyText.toStdString(), "DEV1", "secret", strClear);
    QCOMPARE(static_cast<int>(result), iResult);
    QCOMPARE(strClear, std::string(iResult == 0 ? "a picture" : "untouched"));
    std::string strSealed;
    QCOMPARE(KXHost::EncryptPicture("a picture", "key-7", "DEV1", "secret", strSealed), CipherResult::Ok);
    QCOMPARE(KXHost::DecryptPicture(strSealed, "key-7", "DEV2", "secret", strClear), CipherResult::WrongKey);
    QCOMPARE(KXHost::DecryptPicture(strSealed, "key-7", "DEV1", "", strClear), CipherResult::WrongKey);
}

void CryptoTest::DevicePasswordOpensForItsDeviceOnly()
{
    std::string strText;
    std::string strClear = "untouched";
    QCOMPARE(KXHost::EncryptDeviceUserInfo("DEV1", "canary", strText), CipherResult::Ok);
    QVERIFY(strText.find("canary") == std::string::npos);
    QCOMPARE(KXHost::DecryptDeviceUserInfo("DEV2", strText, strClear), CipherResult::WrongKey);
    QCOMPARE(KXHost::DecryptDeviceUserInfo("DEV1", "canary, but sent in clear", strClear), CipherResult::NotSealed);
    QCOMPARE(strClear, std::string("untouched"));
    QCOMPARE(KXHost::DecryptDeviceUserInfo("DEV1", strText, strClear), CipherResult::Ok);
    QCOMPARE(strClear, std::string("canary"));
}

void CryptoTest::WorksOnManyThreadsAtOnce()
{
    std::vector<std::thread> threads;
    std::vector<int> opened(8, 0);
    for (std::size_t i = 0; i < opened.size(); ++i) {
        threads.emplace_back([&opened, i] {
            std::string strClear;
            if (Open(Sealed(ClearRecording, 3), 5, strClear) == CipherResult::Ok && strClear == ClearRecording)
                opened[i] = 1;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(std::count(opened.begin(), opened.end(), 1), 8);
}

KX_TEST(CryptoTest, NoApplication)
#include "CryptoTest.moc"
