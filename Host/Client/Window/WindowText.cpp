#include "Host/Client/Window/WindowText.h"

#include "Host/Client/Console.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QTextDocument>

#include <algorithm>
#include <iterator>

namespace KXClient {

namespace {

constexpr char Context[] = "MainWindow";

struct Entry
{
    Word word;
    const char* pszText;
};

constexpr Entry Entries[] = {
    {Word::AppTitle, QT_TRANSLATE_NOOP("MainWindow", "Recordings")},
    {Word::About, QT_TRANSLATE_NOOP("MainWindow", "&About")},
    {Word::AboutText, QT_TRANSLATE_NOOP("MainWindow", "The reference client of the recording download plug-in.\n\n"
                                                      "Its recordings come from a site of its own on this machine.")},
    {Word::CancelQuit, QT_TRANSLATE_NOOP("MainWindow", "&Keep downloading")},
    {Word::ChangeFolder, QT_TRANSLATE_NOOP("MainWindow", "Chan&ge…")},
    {Word::ChooseFolder, QT_TRANSLATE_NOOP("MainWindow", "&Choose download folder…")},
    {Word::ChooseFolderTitle, QT_TRANSLATE_NOOP("MainWindow", "Choose the download folder")},
    {Word::ClearRecent, QT_TRANSLATE_NOOP("MainWindow", "&Clear this list")},
    {Word::ColumnLength, QT_TRANSLATE_NOOP("MainWindow", "Length")},
    {Word::ColumnName, QT_TRANSLATE_NOOP("MainWindow", "Recording")},
    {Word::ColumnRecorded, QT_TRANSLATE_NOOP("MainWindow", "Recorded")},
    {Word::ColumnSize, QT_TRANSLATE_NOOP("MainWindow", "Size")},
    {Word::ColumnState, QT_TRANSLATE_NOOP("MainWindow", "State")},
    {Word::DarkColours, QT_TRANSLATE_NOOP("MainWindow", "&Dark colours")},
    {Word::DarkLater, QT_TRANSLATE_NOOP("MainWindow", "The colours change when the window is opened next time.")},
    {Word::Download, QT_TRANSLATE_NOOP("MainWindow", "&Download")},
    {Word::DownloadSelected, QT_TRANSLATE_NOOP("MainWindow", "&Download selected recordings")},
    {Word::FolderFailed, QT_TRANSLATE_NOOP("MainWindow", "The folder %1 cannot be written to.")},
    {Word::FolderLabel, QT_TRANSLATE_NOOP("MainWindow", "Save to")},
    {Word::MenuDownloads, QT_TRANSLATE_NOOP("MainWindow", "&Recordings")},
    {Word::MenuFolder, QT_TRANSLATE_NOOP("MainWindow", "&Folder")},
    {Word::MenuHelp, QT_TRANSLATE_NOOP("MainWindow", "&Help")},
    {Word::MenuLanguage, QT_TRANSLATE_NOOP("MainWindow", "&Language")},
    {Word::MenuView, QT_TRANSLATE_NOOP("MainWindow", "&View")},
    {Word::NoRecent, QT_TRANSLATE_NOOP("MainWindow", "No other folder yet")},
    {Word::OpenFolder, QT_TRANSLATE_NOOP("MainWindow", "&Open download folder")},
    {Word::OpenFolderFailed, QT_TRANSLATE_NOOP("MainWindow", "No program opens the folder %1.")},
    {Word::Quit, QT_TRANSLATE_NOOP("MainWindow", "&Quit")},
    {Word::QuitAnyway, QT_TRANSLATE_NOOP("MainWindow", "&Stop and quit")},
    {Word::QuitDetail, QT_TRANSLATE_NOOP("MainWindow", "What has not arrived yet is removed.")},
    {Word::QuitQuestion, QT_TRANSLATE_NOOP("MainWindow", "Recordings are still being downloaded. Stop them and quit?")},
    {Word::Recent, QT_TRANSLATE_NOOP("MainWindow", "&Recent folders")},
    {Word::Recordings, QT_TRANSLATE_NOOP("MainWindow", "Recordings")},
    {Word::SelectAll, QT_TRANSLATE_NOOP("MainWindow", "Select &all")},
    {Word::SelectNone, QT_TRANSLATE_NOOP("MainWindow", "Select &none")},
    {Word::Selected, QT_TRANSLATE_NOOP("MainWindow", "%1 of %2 selected, %3")},
    {Word::SourceCloud, QT_TRANSLATE_NOOP("MainWindow", "Cloud")},
    {Word::SourceDevice, QT_TRANSLATE_NOOP("MainWindow", "Device storage")},
    {Word::SourceIotLan, QT_TRANSLATE_NOOP("MainWindow", "IOT LAN")},
    {Word::SourceLanModule, QT_TRANSLATE_NOOP("MainWindow", "LAN module")},
    {Word::StateDropped, QT_TRANSLATE_NOOP("MainWindow", "Not available")},
    {Word::StateFailed, QT_TRANSLATE_NOOP("MainWindow", "Failed")},
    {Word::StateInList, QT_TRANSLATE_NOOP("MainWindow", "In the list")},
    {Word::StateRefused, QT_TRANSLATE_NOOP("MainWindow", "Refused")},
    {Word::StateWhole, QT_TRANSLATE_NOOP("MainWindow", "Downloaded")},
    {Word::Status, QT_TRANSLATE_NOOP("MainWindow", "%1 in the list, %2 downloaded, %3 failed")},
};

} // namespace

QString Say(Word word)
{
    const auto* pEntry =
        std::find_if(std::begin(Entries), std::end(Entries), [word](const Entry& entry) { return entry.word == word; });
    Q_ASSERT(pEntry != std::end(Entries));
    return QCoreApplication::translate(Context, pEntry->pszText);
}

QString AsWritten(const QString& strText)
{
    const QString strShown = Printable(strText);
    return Qt::mightBeRichText(strShown) ? Qt::convertFromPlainText(strShown, Qt::WhiteSpaceNormal) : strShown;
}

} // namespace KXClient
