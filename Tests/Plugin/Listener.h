#pragma once

#include "PanelRig.h"

#include <QtCore/QMetaEnum>
#include <QtGui/QAccessible>
#include <QtGui/private/qguiapplication_p.h>
#include <QtGui/qpa/qplatformaccessibility.h>
#include <QtGui/qpa/qplatformintegration.h>

#include <functional>

// While it lives, assistive technology listens. What it is told of rows stands in a list as "event name value". It may
// act when it hears of something.
class Listener
{
public:
    using Act = std::function<void(const QString& strHeard)>;

    explicit Listener(Act act = {})
    {
        s_heard.clear();
        s_act = std::move(act);
        QAccessible::installUpdateHandler(&Listener::Hear);
        SetActive(true);
    }
    ~Listener()
    {
        SetActive(false);
        QAccessible::installUpdateHandler(nullptr);
        s_act = {};
    }
    static bool HasHeard() { return !s_heard.isEmpty(); }
    static QStringList Heard() { return s_heard; }
    static QStringList Take()
    {
        EngineRig::Settle();
        return std::exchange(s_heard, {});
    }

private:
    // As a system does when its assistive technology comes and goes.
    static void SetActive(bool bActive)
    {
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(bActive);
    }
    static void Hear(QAccessibleEvent* pEvent)
    {
        const auto* pRow = qobject_cast<DownloadItem*>(pEvent->object());
        if (!pRow)
            return;
        const char* pszEvent = QMetaEnum::fromType<QAccessible::Event>().valueToKey(pEvent->type());
        QString strText = QLatin1String(pszEvent) + QLatin1Char(' ') + pRow->Record()->strRecordId;
        if (pEvent->type() == QAccessible::ValueChanged)
            strText += QLatin1Char(' ') + static_cast<QAccessibleValueChangeEvent*>(pEvent)->value().toString();
        s_heard.append(strText);
        if (s_act)
            s_act(strText);
    }

    static inline QStringList s_heard;
    static inline Act s_act;
};
