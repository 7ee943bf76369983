#pragma once

#include "Host/Site/Site.h"

#include <QtCore/QByteArray>

// What came back for one request.
struct Answer
{
    int iStatus = 0;       // 0 when there was no answer
    qint64 lAnnounced = 0; // Content-Length, -1 without
    qint64 lReceived = 0;  // until the announced length or the end of the connection
    QByteArray sha256;     // of what was received, in hex
    QByteArray body;       // its first 32 MiB
    QByteArray challenge;
};

// A digest answer, each part of which can be made wrong.
struct Digest
{
    QByteArray user = "admin";
    QByteArray realm;
    QByteArray password;
    QByteArray method = "GET";
    QByteArray uri;
    QByteArray nonce;
    QByteArray opaque;
    QByteArray qop = "auth";
    QByteArray nc = "00000001";
    QByteArray cnonce = "0a4f113b";

    Digest(const QByteArray& challenge, const QByteArray& devicePassword, const QByteArray& target);
    QByteArray Header() const;
};

// The value of a quoted parameter of a challenge.
QByteArray Parameter(const QByteArray& challenge, const char* pName);

// One request on a connection of its own. Blocks; runs on the calling thread alone, so that a thread sanitizer sees the
// threads of the site only.
Answer Get(const QString& strUrl, const QByteArray& authorization = QByteArray());
// The same as the user "admin": answers a challenge with the password.
Answer GetAs(const QString& strUrl, const QByteArray& password);

// The record with that id in the catalogue of a running site.
QJsonObject RecordOf(const KXHost::Site& site, const QString& strId);
// Where a record is, by the client configuration of a running site.
QString UrlOf(const KXHost::Site& site, const QJsonObject& record);
// Asks for a record of the catalogue with the password that it carries.
Answer GetRecord(const KXHost::Site& site, const QString& strId);

// Two recordings by their place, which is quicker: the catalogue of a fresh site must be computed.
Answer GetCloudRecording(const KXHost::Site& site);  // 4611686018427400102, 2750003 bytes
Answer GetDeviceRecording(const KXHost::Site& site); // KXD2S0048816_1_20240318T071111, 102400 bytes
