#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace KXHost {

// Reads a recording from its beginning to its end. Thread: one at a time.
class ByteReader
{
public:
    virtual ~ByteReader() = default;
    // The next bytes, at most `uMost` of them, valid until the next call; empty at the end and after an error.
    virtual std::string_view Next(std::size_t uMost) = 0;
};

// The bytes of a recording. Thread: any; each reader reads on its own.
class ByteSource
{
public:
    virtual ~ByteSource() = default;
    virtual qint64 Size() const = 0;
    virtual std::unique_ptr<ByteReader> Open() const = 0;
};

using ByteSourcePtr = std::shared_ptr<const ByteSource>;

// A sample followed by one "free" box that brings it to a size: still a valid MP4 file. The box holds noise that
// depends on the size and on the place, so that lost, repeated or swapped parts change the hash; it comes from one
// block of memory however long the recording is. The size is never less than that of the sample and a box header.
ByteSourcePtr PaddedSource(const QByteArray& sample, qint64 lSize);

// A file as it is on disk now.
ByteSourcePtr FileSource(const QString& strPath);

// Another source, encrypted as a cloud recording while it is read; each reader encrypts with a salt of its own.
ByteSourcePtr SealedSource(ByteSourcePtr pClear, const std::string& strPassword, const std::string& strKeyText);

// SHA-256 of all bytes in hex, empty when the source gives fewer bytes than its size.
QString HashOf(const ByteSource& source);

} // namespace KXHost
