#include "Model/DownloadRecordInfo.h"

#include "Model/DownloadRecordFields.h"

#include <QtCore/QDataStream>

namespace KXDownLoadList {

namespace {

auto WriteTo(QDataStream& stream)
{
    return [&stream](const char*, const auto& field) { stream << field; };
}

auto ReadFrom(QDataStream& stream)
{
    return [&stream](const char*, auto& field) { stream >> field; };
}

} // namespace

QDataStream& DownloadRecordInfo::Serialize(QDataStream& stream) const
{
    VisitBaseFields(*this, WriteTo(stream));
    return stream;
}

QDataStream& DownloadRecordInfo::Deserialize(QDataStream& stream)
{
    VisitBaseFields(*this, ReadFrom(stream));
    return stream;
}

QDataStream& DownloadCloudRecordInfo::Serialize(QDataStream& stream) const
{
    DownloadRecordInfo::Serialize(stream);
    VisitOwnFields(*this, WriteTo(stream));
    return stream;
}

QDataStream& DownloadCloudRecordInfo::Deserialize(QDataStream& stream)
{
    DownloadRecordInfo::Deserialize(stream);
    VisitOwnFields(*this, ReadFrom(stream));
    return stream;
}

QDataStream& DownloadDeviceRecordInfo::Serialize(QDataStream& stream) const
{
    DownloadRecordInfo::Serialize(stream);
    VisitOwnFields(*this, WriteTo(stream));
    return stream;
}

QDataStream& DownloadDeviceRecordInfo::Deserialize(QDataStream& stream)
{
    DownloadRecordInfo::Deserialize(stream);
    VisitOwnFields(*this, ReadFrom(stream));
    return stream;
}

QDataStream& DownloadLanModuleRecordInfo::Serialize(QDataStream& stream) const
{
    DownloadRecordInfo::Serialize(stream);
    VisitOwnFields(*this, WriteTo(stream));
    return stream;
}

QDataStream& DownloadLanModuleRecordInfo::Deserialize(QDataStream& stream)
{
    DownloadRecordInfo::Deserialize(stream);
    VisitOwnFields(*this, ReadFrom(stream));
    return stream;
}

} // namespace KXDownLoadList
