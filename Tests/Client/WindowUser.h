#pragma once

#include "KXGui/GraphicsGridView.h"
#include "ScratchDir.h"

#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QTreeWidget>

#include <functional>

// One who works the client's window: the command runs in this process, and what the user does happens in its event
// loop.
class WindowUser
{
public:
    QString Path(const QString& strName) const { return m_folder.filePath(strName); }
    // "--out out", with settings, log and database in this user's own folder.
    QStringList Options(const QStringList& more = {}) const;

    // Opens the window, lets `work` happen in it, and closes it if it still is there. Gives the exit status.
    int Open(const QStringList& options, const std::function<void()>& work);

    QMainWindow& Window() const { return *m_pWindow; }
    bool IsOpen() const { return m_pWindow && m_pWindow->isVisible(); }
    template <class Widget>
    Widget* Find(const char* pszName) const
    {
        return m_pWindow->findChild<Widget*>(QString::fromLatin1(pszName));
    }
    QTreeWidget& Tree() const { return *Find<QTreeWidget>("recordings"); }
    GraphicsGridView& Rows() const { return *Find<GraphicsGridView>("downloadListView"); }
    // The line of that title; null when there is none.
    QTreeWidgetItem* Recording(const QString& strTitle) const;
    QString StateOf(const QString& strTitle) const;
    void Check(const QString& strTitle) const;
    void Press(const char* pszButton) const;
    // Presses the left mouse button at a point of a row of the panel.
    void PressInRow(const QString& strRecordId, const QPoint& point) const;
    // Answers the next question box by the button of that text.
    void AnswerNext(const QString& strButton) const;

private:
    ScratchDir m_folder;
    QPointer<QMainWindow> m_pWindow;
};
