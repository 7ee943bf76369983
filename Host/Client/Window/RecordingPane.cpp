#include "Host/Client/Window/RecordingPane.h"

#include "Host/Client/Console.h"
#include "Host/Client/Window/WindowText.h"

#include <QtCore/QDir>
#include <QtCore/QEvent>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QShortcut>
#include <QtWidgets/QVBoxLayout>

namespace KXClient {

RecordingPane::RecordingPane(const WindowDownloads& downloads, QWidget* pParent)
    : QWidget(pParent)
    , m_downloads(downloads)
    , m_pTree(new RecordingTree(downloads, this))
{
    setObjectName(QStringLiteral("recordingPane"));
    setAttribute(Qt::WA_StyledBackground); // a plain widget paints no style sheet of its own
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(1, 1, 1, 1);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pTree, 1);
    pLayout->addWidget(MakeFolderRow());
    pLayout->addWidget(MakeSelectionRow());
    connect(m_pTree, &RecordingTree::SignalChecksChanged, this, &RecordingPane::ShowSelection);
    for (int iKey : {Qt::Key_Return, Qt::Key_Enter})
        connect(new QShortcut(iKey, m_pTree, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this,
                &RecordingPane::Download);
    for (QPushButton* pButton : findChildren<QPushButton*>())
        pButton->setAutoDefault(true); // the Enter key presses it, as in a dialog
    setFocusProxy(m_pTree);
    ShowSelection();
}

QWidget* RecordingPane::MakeFolderRow()
{
    auto* pRow = new QWidget(this);
    auto* pCaption = new QLabel(Say(Word::FolderLabel), pRow);
    pCaption->setObjectName(QStringLiteral("folderCaption"));
    m_pFolder = new QLabel(pRow);
    m_pFolder->setObjectName(QStringLiteral("folder"));
    m_pFolder->setTextFormat(Qt::PlainText);
    m_pFolder->installEventFilter(this);
    m_pFolder->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* pChange = new QPushButton(Say(Word::ChangeFolder), pRow);
    pChange->setObjectName(QStringLiteral("changeFolder"));
    auto* pLayout = new QHBoxLayout(pRow);
    pLayout->setContentsMargins(16, 10, 16, 0);
    pLayout->setSpacing(10);
    pLayout->addWidget(pCaption);
    pLayout->addWidget(m_pFolder, 1);
    pLayout->addWidget(pChange);
    connect(pChange, &QPushButton::clicked, this, &RecordingPane::SignalChangeFolder);
    return pRow;
}

QWidget* RecordingPane::MakeSelectionRow()
{
    auto* pRow = new QWidget(this);
    m_pSelectAll = new QCheckBox(Say(Word::SelectAll), pRow);
    m_pSelectAll->setObjectName(QStringLiteral("selectAll"));
    m_pSelectAll->setTristate(true);
    m_pSelection = new QLabel(pRow);
    m_pSelection->setObjectName(QStringLiteral("selectionText"));
    m_pDownload = new QPushButton(Say(Word::Download), pRow);
    m_pDownload->setObjectName(QStringLiteral("download"));
    auto* pLayout = new QHBoxLayout(pRow);
    pLayout->setContentsMargins(16, 10, 16, 14);
    pLayout->setSpacing(16);
    pLayout->addWidget(m_pSelectAll);
    pLayout->addWidget(m_pSelection, 1);
    pLayout->addWidget(m_pDownload);
    // "Some" is shown, never chosen: what follows it is all.
    connect(m_pSelectAll, &QCheckBox::clicked, this,
            [this] { m_pTree->CheckAll(m_pSelectAll->checkState() != Qt::Unchecked); });
    connect(m_pDownload, &QPushButton::clicked, this, &RecordingPane::Download);
    return pRow;
}

void RecordingPane::ShowSelection()
{
    const QVector<int> checked = m_pTree->Checked();
    const int iCheckable = m_pTree->CheckableCount();
    qint64 lBytes = 0;
    for (int iIndex : checked)
        lBytes += qMax(qint64(0), m_downloads.Tasks().at(iIndex).request.pRecord->lFileSize);
    m_pSelection->setText(
        Say(Word::Selected)
            .arg(QString::number(checked.size()), QString::number(m_downloads.Tasks().size()), ByteText(lBytes)));
    m_pSelectAll->setEnabled(iCheckable > 0);
    m_pSelectAll->setCheckState(checked.isEmpty()              ? Qt::Unchecked
                                : checked.size() == iCheckable ? Qt::Checked
                                                               : Qt::PartiallyChecked);
    m_pDownload->setEnabled(!checked.isEmpty());
}

void RecordingPane::SetFolder(const QString& strFolder)
{
    m_strFolder = QDir::toNativeSeparators(strFolder);
    ShowFolder();
}

bool RecordingPane::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pWatched == m_pFolder && pEvent->type() == QEvent::Resize)
        ShowFolder();
    return QWidget::eventFilter(pWatched, pEvent);
}

// The end of a path tells more than its beginning.
void RecordingPane::ShowFolder()
{
    m_pFolder->setText(m_pFolder->fontMetrics().elidedText(m_strFolder, Qt::ElideMiddle, m_pFolder->width()));
    m_pFolder->setToolTip(AsWritten(m_strFolder));
}

void RecordingPane::Download()
{
    if (!m_pTree->Checked().isEmpty())
        emit SignalDownload();
}

} // namespace KXClient
