#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtGui/QImage>

#include <optional>

namespace KXClient {

class MainWindow;

// Brings the window into the state in which its picture is taken, by what a user does: checks recordings, presses the
// download button, presses a row's pause button. Nothing is timed: each step waits for what it needs to be so.
// Thread: the GUI thread.
class Scene : public QObject
{
    Q_OBJECT

public:
    // How the embedded site must misbehave for it.
    static QStringList Faults();

    // Both outlive the scene.
    Scene(MainWindow& window, QWidget& panel);

    // The picture; nothing when the time is out.
    std::optional<QImage> Play(int iTimeoutSeconds);
    // What is not as it must be.
    QStringList Missing() const;
    // The states of the rows in the picture, counted.
    QString Seen() const;

private slots:
    void OnClickReport(QVariantList list);

private:
    void Look();
    void AskNext();
    void PressPause();
    int IndexOf(const QString& strRecordId) const;
    bool IsInPlace(int iActor) const;
    bool ShowsPicture(const QString& strRecordId, const QImage& picture) const;
    void FollowTransfers();

    MainWindow& m_window;
    QWidget& m_panel;
    QEventLoop m_loop;
    QElapsedTimer m_clock;
    QHash<QString, qint64> m_received; // by record id, of what is downloading
    QImage m_picture;                  // of the window, taken last
    int m_iAsked = 0;                  // of the groups of recordings
    bool m_bPausePressed = false;
    bool m_bPauseHeard = false; // the panel reports each click on its buttons
    bool m_bDone = false;
};

} // namespace KXClient
