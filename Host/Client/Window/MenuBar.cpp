#include "Host/Client/Window/MenuBar.h"

#include "Host/Client/Window/Languages.h"
#include "Host/Client/Window/WindowSettings.h"
#include "Host/Client/Window/WindowText.h"

#include <QtCore/QDir>
#include <QtWidgets/QActionGroup>

namespace KXClient {

MenuBar::MenuBar(const WindowSettings& settings, QWidget* pParent)
    : QMenuBar(pParent)
{
    AddRecordings();
    AddFolder();
    AddLanguages(settings.strLanguage);
    AddViewAndHelp(settings.bDark);
    SetRecentFolders(settings.recentFolders);
}

void MenuBar::AddRecordings()
{
    QMenu* pMenu = addMenu(Say(Word::MenuDownloads));
    pMenu->addAction(Say(Word::DownloadSelected), this, &MenuBar::SignalDownload, Qt::CTRL + Qt::Key_D);
    pMenu->addSeparator();
    pMenu->addAction(
        Say(Word::SelectAll), this, [this] { emit SignalSelectAll(true); }, QKeySequence::SelectAll);
    pMenu->addAction(
        Say(Word::SelectNone), this, [this] { emit SignalSelectAll(false); }, Qt::CTRL + Qt::SHIFT + Qt::Key_A);
    pMenu->addSeparator();
    pMenu->addAction(Say(Word::Quit), this, &MenuBar::SignalQuit, Qt::CTRL + Qt::Key_Q);
}

void MenuBar::AddFolder()
{
    QMenu* pMenu = addMenu(Say(Word::MenuFolder));
    pMenu->addAction(Say(Word::ChooseFolder), this, &MenuBar::SignalChooseFolder, Qt::CTRL + Qt::SHIFT + Qt::Key_O);
    pMenu->addAction(Say(Word::OpenFolder), this, &MenuBar::SignalOpenFolder, QKeySequence::Open);
    pMenu->addSeparator();
    m_pRecent = pMenu->addMenu(Say(Word::Recent));
}

void MenuBar::SetRecentFolders(const QStringList& folders)
{
    m_pRecent->clear();
    int iNumber = 0;
    for (const QString& strFolder : folders.mid(1)) {
        QString strShown = QDir::toNativeSeparators(strFolder);
        strShown.replace(QLatin1Char('&'), QLatin1String("&&"));
        m_pRecent->addAction(QStringLiteral("&%1  %2").arg(++iNumber).arg(strShown), this,
                             [this, strFolder] { emit SignalFolder(strFolder); });
    }
    if (iNumber == 0) {
        m_pRecent->addAction(Say(Word::NoRecent))->setEnabled(false);
        return;
    }
    m_pRecent->addSeparator();
    m_pRecent->addAction(Say(Word::ClearRecent), this, &MenuBar::SignalClearRecent);
}

void MenuBar::AddLanguages(const QString& strCurrent)
{
    QMenu* pMenu = addMenu(Say(Word::MenuLanguage));
    auto* pGroup = new QActionGroup(this);
    for (const Language& language : Languages) {
        const QString strCode = QLatin1String(language.pszCode);
        QAction* pAction = pMenu->addAction(QString::fromUtf8(language.pszName), this,
                                            [this, strCode] { emit SignalLanguage(strCode); });
        pAction->setObjectName(QLatin1String("language_") + strCode);
        pAction->setCheckable(true);
        pAction->setChecked(strCode == strCurrent);
        pGroup->addAction(pAction);
    }
}

void MenuBar::AddViewAndHelp(bool bDark)
{
    QAction* pDark = addMenu(Say(Word::MenuView))->addAction(Say(Word::DarkColours));
    pDark->setCheckable(true);
    pDark->setChecked(bDark);
    connect(pDark, &QAction::triggered, this, &MenuBar::SignalDark);
    addMenu(Say(Word::MenuHelp))->addAction(Say(Word::About), this, &MenuBar::SignalAbout);
}

} // namespace KXClient
