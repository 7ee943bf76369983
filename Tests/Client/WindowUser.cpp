#include "Client/WindowUser.h"

#include "Host/Client/Commands.h"

#include <QtCore/QTimer>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsItem>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

QStringList WindowUser::Options(const QStringList& more) const
{
    return QStringList{QStringLiteral("--out"),        Path(QStringLiteral("out")),  QStringLiteral("--settings"),
                       Path(QStringLiteral("kx.ini")), QStringLiteral("--log"),      Path(QStringLiteral("kx.log")),
                       QStringLiteral("--db"),         Path(QStringLiteral("kx.db"))} +
           more;
}

int WindowUser::Open(const QStringList& options, const std::function<void()>& work)
{
    const auto findWindow = [this] {
        for (QWidget* pWidget : QApplication::topLevelWidgets()) {
            if (auto* pWindow = qobject_cast<QMainWindow*>(pWidget))
                m_pWindow = pWindow;
        }
        return m_pWindow && m_pWindow->isVisible();
    };
    QTimer::singleShot(0, qApp, [&] {
        if (QTest::qWaitFor(findWindow, 30000) && QTest::qWaitForWindowActive(m_pWindow))
            work();
        QApplication::quit();
    });
    return KXClient::RunGui(options);
}

QTreeWidgetItem* WindowUser::Recording(const QString& strTitle) const
{
    return Tree().findItems(strTitle, Qt::MatchExactly | Qt::MatchRecursive).value(0);
}

QString WindowUser::StateOf(const QString& strTitle) const
{
    const QTreeWidgetItem* pItem = Recording(strTitle);
    return pItem ? pItem->text(4) : QStringLiteral("no such recording");
}

void WindowUser::Check(const QString& strTitle) const
{
    if (QTreeWidgetItem* pItem = Recording(strTitle))
        pItem->setCheckState(0, Qt::Checked);
}

void WindowUser::Press(const char* pszButton) const
{
    QTest::mouseClick(Find<QPushButton>(pszButton), Qt::LeftButton);
}

void WindowUser::PressInRow(const QString& strRecordId, const QPoint& point) const
{
    QGraphicsItem* pRow = Rows().GetItem(strRecordId);
    if (pRow)
        QTest::mouseClick(Rows().viewport(), Qt::LeftButton, Qt::NoModifier,
                          Rows().mapFromScene(pRow->mapToScene(point)));
}

void WindowUser::AnswerNext(const QString& strButton) const
{
    QTimer::singleShot(0, qApp, [strButton] {
        const auto isThere = [] { return QApplication::activeModalWidget() != nullptr; };
        if (!QTest::qWaitFor(isThere, 10000))
            return;
        for (QPushButton* pButton : QApplication::activeModalWidget()->findChildren<QPushButton*>()) {
            if (pButton->text() == strButton)
                return pButton->click();
        }
        QApplication::activeModalWidget()->close();
    });
}
