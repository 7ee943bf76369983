#include "DownloadWidget/RowOrder.h"

#include "DownloadWidget/DownloadItem.h"
#include "KXGui/GraphicsGridView.h"

DownloadItem* RowOrder::At(int iIndex) const
{
    return static_cast<DownloadItem*>(Rows().value(iIndex)); // the view holds nothing else
}

int RowOrder::IndexOf(const DownloadItem* pRow) const
{
    return m_view.IndexOfItem(pRow);
}

void RowOrder::Forget()
{
    m_rows.clear();
    m_bKnown = false;
}

const QList<QGraphicsItem*>& RowOrder::Rows() const
{
    if (!m_bKnown)
        m_rows = m_view.GetAllItem();
    m_bKnown = true;
    return m_rows;
}
