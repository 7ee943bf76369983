#include "DownloadWidget/RecordMetaType.h"

#include "Model/DownloadRecordInfo.h"

#include <QtCore/QMetaType>

namespace RecordMetaType {

namespace {

constexpr char Name[] = "DownloadRecordInfoPtr";

// Qt takes a type back only when it is not declared as well: Q_DECLARE_METATYPE would make this name stay for ever.
struct Registration
{
    Registration()
        : bOurs(!QMetaType::isRegistered(QMetaType::type(Name)))
        , iType(qRegisterMetaType<DownloadRecordInfoPtr>(Name))
    {}
    ~Registration()
    {
        if (bOurs)
            QMetaType::unregisterType(iType);
    }
    const bool bOurs;
    const int iType;
};

} // namespace

void Register()
{
    static const Registration s_registration; // destroyed when the library is unloaded
}

} // namespace RecordMetaType
