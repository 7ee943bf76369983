#pragma once

#include <QtCore/QString>

namespace KXClient {

// What the window itself says; the plug-in has words of its own. The words stand in one table, in WindowText.cpp.
enum class Word {
    AppTitle,
    About,
    AboutText,
    CancelQuit,
    ChangeFolder,
    ChooseFolder,
    ChooseFolderTitle,
    ClearRecent,
    ColumnLength,
    ColumnName,
    ColumnRecorded,
    ColumnSize,
    ColumnState,
    DarkColours,
    DarkLater,
    Download,
    DownloadSelected,
    FolderFailed,
    FolderLabel,
    MenuDownloads,
    MenuFolder,
    MenuHelp,
    MenuLanguage,
    MenuView,
    NoRecent,
    OpenFolder,
    OpenFolderFailed,
    Quit,
    QuitAnyway,
    QuitDetail,
    QuitQuestion,
    Recent,
    Recordings,
    SelectAll,
    SelectNone,
    Selected,
    SourceCloud,
    SourceDevice,
    SourceIotLan,
    SourceLanModule,
    StateDropped,
    StateFailed,
    StateInList,
    StateRefused,
    StateWhole,
    Status,
};

QString Say(Word word);
// A text of others for a tool tip or a message box, which would take markup in it: it is shown as it is written.
QString AsWritten(const QString& strText);

} // namespace KXClient
