#pragma once

#include <QtCore/QPointer>
#include <QtGui/QAccessible>
#include <QtGui/QAccessibleObject>

class DownloadItem;
class RowFocus;

// A row as assistive technology sees it: its file name, its state, how much has arrived, and what its buttons do. It is
// made when somebody asks for it and goes with its row.
//
// Thread: the GUI thread. Ownership: Qt's.
class RowAccessible : public QAccessibleObject, public QAccessibleActionInterface, public QAccessibleValueInterface
{
public:
    RowAccessible(DownloadItem& row, RowFocus& list);

    // True when listeners do not know the value; they do after that.
    bool TakeNewValue();

    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int iIndex) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface* pChild) const override;
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    QString localizedActionName(const QString& strAction) const override;
    void doAction(const QString& strAction) override;
    QStringList keyBindingsForAction(const QString& strAction) const override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant minimumValue() const override;
    QVariant maximumValue() const override;
    QVariant minimumStepSize() const override;

private:
    DownloadItem& Row() const;

    QPointer<RowFocus> m_pList; // null once the panel is being taken down
    int m_iTold = -1;           // value that listeners know
};
