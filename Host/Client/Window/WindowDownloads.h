#pragma once

#include "Host/Client/DeviceThumbnails.h"
#include "Host/Client/DownloadSession.h"
#include "Host/Client/Window/PanelRows.h"

#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QVariant>

namespace KXClient {

class DownloadInput;

// The downloads that the window asks for, and what became of each. Thread: the GUI thread.
class WindowDownloads : public QObject
{
    Q_OBJECT

public:
    enum class State {
        None,   // never asked for, or taken out of the list by the user
        InList, // in the plug-in's list, or on its way into it; failed ones stay there, too
        Whole,
        Failed,
        Refused,
        Dropped,
    };

    // `input` and `pPanel` outlive this.
    WindowDownloads(DownloadInput& input, QWidget* pPanel, QObject* pParent = nullptr);

    const QVector<Task>& Tasks() const { return m_session.Tasks(); }
    State StateOf(int iIndex) const;
    // Why a recording did not arrive, where a whole one lies; otherwise empty.
    QString DetailOf(int iIndex) const;
    // Whether the plug-in may be asked for it: it has no row for it and will not get one.
    bool MayAsk(int iIndex) const;
    // Asks for those of the recordings that may be asked for, into that folder. False when it cannot be written to.
    bool Ask(const QVector<int>& indexes, const QString& strFolder);

    const PanelRows& Rows() const { return m_rows; }
    int RowCount() const { return m_iRowCount; }
    int CountOf(State state) const;

signals:
    void SignalChanged(int iIndex);
    void SignalCounted();

private slots:
    void OnDownloadNumber(QVariantList list);

private:
    void LookAtRows();

    DownloadInput& m_input;
    DownloadSession m_session;
    DeviceThumbnails m_thumbnails;
    PanelRows m_rows;
    QSet<int> m_listed; // had a row when the rows were looked at last
    int m_iRowCount = 0;
    bool m_bLookPending = false;
};

} // namespace KXClient
