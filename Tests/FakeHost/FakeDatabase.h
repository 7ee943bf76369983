#pragma once

#include "FakeHost/CallList.h"
#include "KXBase/LocalResourceDbInterface.h"

// LocalResourceDbInterface that keeps what was inserted.
//
// Line: "Insert path begin=… end=… kind=… title=… thumb=… favourite=…"; the registration time is in Rows().
class KX_HOST_EXPORT FakeDatabase final : public LocalResourceDbInterface
{
public:
    explicit FakeDatabase(CallList& calls)
        : m_calls(calls)
    {}

    bool Insert(const LocalResourceInfo* pInfo) override;

    const std::vector<LocalResourceInfo>& Rows() const { return m_rows; }
    void SetInsertResult(bool bResult) { m_bResult = bResult; }

private:
    CallList& m_calls;
    std::vector<LocalResourceInfo> m_rows;
    bool m_bResult = true;
};
