#include "FakeHost/FakeDatabase.h"

bool FakeDatabase::Insert(const LocalResourceInfo* pInfo)
{
    m_rows.push_back(*pInfo);
    m_calls.Add(QStringLiteral("Insert %1 begin=%2 end=%3 kind=%4 title=%5 thumb=%6 favourite=%7")
                    .arg(pInfo->strFilePath, QString::number(pInfo->lBeginTime), QString::number(pInfo->lEndTime),
                         QString::number(pInfo->iResourceKind), pInfo->strTitle, pInfo->strThumbPath,
                         QString::number(pInfo->iFavourite)));
    return m_bResult;
}
