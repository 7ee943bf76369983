#include "Host/Client/Window/RecordingTree.h"

#include "Host/Client/Console.h"
#include "Host/Client/Window/WindowText.h"
#include "KXGui/KXColor.h"

#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>
#include <QtCore/QSignalBlocker>
#include <QtWidgets/QHeaderView>

#include <algorithm>

namespace KXClient {

namespace {

constexpr Word SourceWords[] = {Word::SourceCloud, Word::SourceDevice, Word::SourceIotLan, Word::SourceLanModule};

QDateTime TimeOf(const QString& strTime)
{
    return QDateTime::fromString(strTime, QStringLiteral("yyyyMMddTHHmmss"));
}

QString LengthText(const QDateTime& begin, const QDateTime& end)
{
    if (!begin.isValid() || !end.isValid() || end < begin)
        return QString();
    const qint64 lSeconds = begin.secsTo(end);
    const auto twoDigits = [](qint64 lNumber) { return QStringLiteral("%1").arg(lNumber, 2, 10, QLatin1Char('0')); };
    return QStringLiteral("%1:%2:%3")
        .arg(QString::number(lSeconds / 3600), twoDigits(lSeconds / 60 % 60), twoDigits(lSeconds % 60));
}

// One that cannot be asked for keeps its empty check box, also when its source is checked.
class RecordingItem : public QTreeWidgetItem
{
public:
    using QTreeWidgetItem::QTreeWidgetItem;

    void setData(int iColumn, int iRole, const QVariant& value) override
    {
        if (iRole != Qt::CheckStateRole || (flags() & Qt::ItemIsUserCheckable))
            QTreeWidgetItem::setData(iColumn, iRole, value);
    }
};

struct StateLook
{
    WindowDownloads::State state;
    Word word;
    const char* pszColour;
};

constexpr StateLook StateLooks[] = {
    {WindowDownloads::State::InList, Word::StateInList, "pc005"},
    {WindowDownloads::State::Whole, Word::StateWhole, "pc018"},
    {WindowDownloads::State::Failed, Word::StateFailed, "pc020"},
    {WindowDownloads::State::Refused, Word::StateRefused, "pc020"},
    {WindowDownloads::State::Dropped, Word::StateDropped, "pc020"},
};

} // namespace

RecordingTree::RecordingTree(const WindowDownloads& downloads, QWidget* pParent)
    : QTreeWidget(pParent)
    , m_downloads(downloads)
{
    setObjectName(QStringLiteral("recordings"));
    setAccessibleName(Say(Word::Recordings));
    SetUpColumns();
    AddSources();
    for (int iIndex = 0; iIndex < downloads.Tasks().size(); ++iIndex)
        AddRecording(iIndex);
    for (int iType = topLevelItemCount() - 1; iType >= 0; --iType)
        topLevelItem(iType)->setHidden(topLevelItem(iType)->childCount() == 0);
    expandAll();
    setCurrentItem(topLevelItem(0));
    connect(this, &QTreeWidget::itemChanged, this, &RecordingTree::SignalChecksChanged);
    m_refreshed.setSingleShot(true);
    connect(&m_refreshed, &QTimer::timeout, this, &RecordingTree::SignalChecksChanged);
}

void RecordingTree::SetUpColumns()
{
    setColumnCount(ColumnCount);
    setHeaderLabels({Say(Word::ColumnName), Say(Word::ColumnRecorded), Say(Word::ColumnLength), Say(Word::ColumnSize),
                     Say(Word::ColumnState)});
    headerItem()->setTextAlignment(Size, Qt::AlignRight | Qt::AlignVCenter);
    headerItem()->setTextAlignment(Length, Qt::AlignRight | Qt::AlignVCenter);
    setUniformRowHeights(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setIndentation(18);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(Name, QHeaderView::Stretch);
    // Room for every state from the beginning, so that nothing moves when one appears.
    int iWidest = 0;
    for (const StateLook& look : StateLooks)
        iWidest = std::max(iWidest, fontMetrics().horizontalAdvance(Say(look.word)));
    header()->setSectionResizeMode(StateColumn, QHeaderView::Fixed);
    header()->resizeSection(StateColumn, iWidest + 32);
}

void RecordingTree::AddSources()
{
    for (Word word : SourceWords) {
        auto* pSource = new QTreeWidgetItem(this, {Say(word)});
        pSource->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsAutoTristate);
        pSource->setCheckState(Name, Qt::Unchecked);
        QFont font = pSource->font(Name);
        font.setWeight(QFont::DemiBold);
        pSource->setFont(Name, font);
        pSource->setFirstColumnSpanned(true);
    }
}

void RecordingTree::AddRecording(int iIndex)
{
    const auto& record = *m_downloads.Tasks().at(iIndex).request.pRecord;
    const QString strFile = QFileInfo(record.strDownloadPath).fileName();
    const QDateTime begin = TimeOf(record.strStartTime);
    auto* pItem = new RecordingItem(topLevelItem(record.iRecordType));
    pItem->setText(Name, Printable(record.strText4.isEmpty() ? strFile : record.strText4));
    pItem->setToolTip(Name, AsWritten(strFile));
    pItem->setText(Recorded, begin.toString(QStringLiteral("yyyy-MM-dd HH:mm")));
    pItem->setText(Length, LengthText(begin, TimeOf(record.strEndTime)));
    pItem->setText(Size, ByteText(record.lFileSize));
    for (Column column : {Length, Size})
        pItem->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    pItem->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren);
    pItem->setCheckState(Name, Qt::Unchecked);
    m_items.append(pItem);
    Refresh(iIndex);
}

bool RecordingTree::IsCheckable(int iIndex) const
{
    return m_items.at(iIndex)->flags() & Qt::ItemIsUserCheckable;
}

QVector<int> RecordingTree::Checked() const
{
    QVector<int> indexes;
    for (int iIndex = 0; iIndex < m_items.size(); ++iIndex) {
        if (IsCheckable(iIndex) && m_items.at(iIndex)->checkState(Name) == Qt::Checked)
            indexes.append(iIndex);
    }
    return indexes;
}

int RecordingTree::CheckableCount() const
{
    int iCount = 0;
    for (int iIndex = 0; iIndex < m_items.size(); ++iIndex)
        iCount += IsCheckable(iIndex) ? 1 : 0;
    return iCount;
}

void RecordingTree::CheckAll(bool bChecked)
{
    {
        const QSignalBlocker once(this);
        for (int iIndex = 0; iIndex < m_items.size(); ++iIndex)
            Check(iIndex, bChecked);
    }
    viewport()->update();
    emit SignalChecksChanged();
}

void RecordingTree::Check(int iIndex, bool bChecked)
{
    if (IsCheckable(iIndex))
        m_items.at(iIndex)->setCheckState(Name, bChecked ? Qt::Checked : Qt::Unchecked);
}

// What is in the plug-in's list cannot be asked for a second time.
void RecordingTree::Refresh(int iIndex)
{
    const QSignalBlocker once(this);
    m_refreshed.start();
    constexpr Qt::ItemFlags Choosable = Qt::ItemIsEnabled | Qt::ItemIsUserCheckable;
    QTreeWidgetItem& item = *m_items.at(iIndex);
    const bool bMayAsk = m_downloads.MayAsk(iIndex);
    if (bMayAsk) {
        item.setFlags(item.flags() | Choosable);
    } else {
        item.setCheckState(Name, Qt::Unchecked);
        item.setFlags(item.flags() & ~Choosable);
    }
    const WindowDownloads::State state = m_downloads.StateOf(iIndex);
    const auto* pLook = std::find_if(std::begin(StateLooks), std::end(StateLooks),
                                     [state](const StateLook& look) { return look.state == state; });
    const bool bKnown = pLook != std::end(StateLooks);
    item.setText(StateColumn, bKnown ? Say(pLook->word) : QString());
    // What is disabled stays readable.
    for (int iColumn = 0; iColumn < ColumnCount; ++iColumn)
        item.setForeground(iColumn, KXColor::color(QLatin1String(bMayAsk ? "pc004" : "pc005"), 1.0));
    if (bKnown)
        item.setForeground(StateColumn, KXColor::color(QLatin1String(pLook->pszColour), 1.0));
    item.setToolTip(StateColumn, AsWritten(m_downloads.DetailOf(iIndex)));
}

} // namespace KXClient
