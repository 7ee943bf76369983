#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/qaccessiblewidget.h>

class DownloadItem;
class RowFocus;

// The list as assistive technology sees it: its children are the rows, each of which becomes an accessible object when
// somebody asks for it.
//
// Thread: the GUI thread. Ownership: Qt's.
class ListAccessible : public QAccessibleWidget
{
public:
    explicit ListAccessible(RowFocus& list);

    // From now on Qt makes the accessible objects of that list and its rows here, until it is told to forget it. The
    // library may be unloaded when it has been told so of every list and their views are gone.
    static void Register(RowFocus& list);
    static void Unregister(RowFocus& list);

    int childCount() const override;
    QAccessibleInterface* child(int iIndex) const override;
    int indexOfChild(const QAccessibleInterface* pChild) const override;
    QAccessibleInterface* childAt(int iX, int iY) const override;
    QAccessibleInterface* focusChild() const override;
    QString text(QAccessible::Text kind) const override;

private:
    QPointer<RowFocus> m_pList; // null once the panel is being taken down
};
