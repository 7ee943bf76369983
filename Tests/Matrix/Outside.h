#pragma once

#include "Matrix/RowState.h"
#include "Matrix/TransferModel.h"
#include "Plugin/PanelRig.h"

#include <QtCore/QMap>
#include <QtCore/QTranslator>

// The panel wants a text with a place for its count. Installed while it lives.
class CountText final : public QTranslator
{
public:
    CountText() { QCoreApplication::installTranslator(this); }
    ~CountText() override { QCoreApplication::removeTranslator(this); }

    QString translate(const char*, const char* pszText, const char*, int) const override
    {
        return qstrcmp(pszText, "play_multiple_views_total") == 0 ? QStringLiteral("%1") : QString();
    }
    bool isEmpty() const override { return false; }
};

// All that comes to the plug-in from outside: what the client asks for, what the user presses, what the host reports
// and answers. The panel with its engine stands in a fake world, and is not shown. Nothing here lets events run, but
// Turn and Rest. Record ids are those of TransferModel.
class Outside
{
public:
    // What is special about the record of an id.
    enum Kind : unsigned {
        Plain = 0,
        Protected = 1, // a cloud recording's password is asked for; a device's after a refusal
        NewFolder = 2
    };
    // A call of the plug-in to the host, or a line of its log, while it is on the stack.
    using WayOut = std::function<void(const QString& strLine)>;

    Outside();
    ~Outside();

    FakeWorld& World() { return m_rig.World(); }
    TransferModel& Host() { return m_host; }
    void OnWayOut(WayOut wayOut) { m_wayOut = std::move(wayOut); }

    // The client.
    void SetKind(const QString& strId, unsigned uKind) { m_kinds[strId] = uKind; }
    void Request(const QString& strId);
    void FillDisk(bool bRoomAgain);
    void ChangeFolder();
    bool Ask(const QString& strId); // what the plug-in answers
    void Stop();

    // The user.
    void PressState(const QString& strId);
    void Delete(const QString& strId);
    void PressAll();

    // The host. Last states and answers are on their way then; pictures are there.
    void Raise(const QString& strId, int iCode) { m_host.Raise(strId, iCode); }
    void RaiseData(const QString& strId);
    void AnswerPictures();
    void AnswerWithWrongKey(const QString& strId);
    void AnswerCloudPasswords();
    void AnswerDevicePasswords(int iResult = 0);

    // Delivers what is on its way.
    static void Turn() { EngineRig::Settle(); }
    // Turns and answers until nothing is on its way and no question is open.
    void Rest();

    bool IsStopped() const { return m_bStopped; }
    RowIs RowOf(const QString& strId) { return StateOfRow(m_rig.Row(strId.toUtf8().constData())); }
    // Ids of all rows, from the top.
    QStringList Rows();
    QString AllText() { return m_rig.AllStartText(); }
    int ToldCount() { return m_rig.Counts().value(m_rig.Counts().size() - 1); }

private:
    void TakeCall(const QString& strLine);
    void GoOut(const QString& strLine);
    void SendMouse(QEvent::Type type, const QPoint& pos);

    CountText m_countText;
    PanelRig m_rig;
    TransferModel m_host;
    const std::thread::id m_home = std::this_thread::get_id();
    WayOut m_wayOut;
    QHash<QString, unsigned> m_kinds;
    QStringList m_pictures; // URLs that were asked for
    std::vector<std::size_t> m_cloudQuestions;
    std::vector<std::size_t> m_deviceQuestions;
    std::size_t m_uCloudQueries = 0;
    std::size_t m_uDeviceQueries = 0;
    int m_iAskingDevices = 0; // such a question is on the stack
    bool m_bPressed = false;  // the mouse button is down
    QPoint m_pressPos;
    bool m_bStopped = false;
};
