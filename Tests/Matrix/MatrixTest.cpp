// Every way out of the plug-in, and all that may be done inside it: by the client, by the user and by the host.

#include "Matrix/Cell.h"
#include "TestMain.h"

using namespace Matrix;

class MatrixTest : public QObject
{
    Q_OBJECT

private slots:
    void AllIsInOrderAfterASurprise_data();
    void AllIsInOrderAfterASurprise();
    void TheMatrixIsLarge();

public:
    bool m_bAll = false;

private:
    int m_iCells = 0;
};

void MatrixTest::AllIsInOrderAfterASurprise_data()
{
    QTest::addColumn<int>("way");
    QTest::addColumn<int>("act");
    QTest::addColumn<int>("source");
    int iCell = 0;
    for (std::size_t uWay = 0; uWay < Ways().size(); ++uWay) {
        const Way& way = Ways()[uWay];
        for (const char* pSource = way.pszSources; *pSource; ++pSource) {
            const int iSource = *pSource - '0';
            for (std::size_t uAct = 0; uAct < Acts().size(); ++uAct) {
                const Act& act = Acts()[uAct];
                if (!Oracle(way, act, iSource).Applies() || (iCell++ % 3 != 0 && !m_bAll))
                    continue;
                QTest::addRow("%s of source %d: %c %s", way.pszName, iSource, act.target, act.pszSteps)
                    << int(uWay) << int(uAct) << iSource;
            }
        }
    }
}

void MatrixTest::AllIsInOrderAfterASurprise()
{
    QFETCH(int, way);
    QFETCH(int, act);
    QFETCH(int, source);
    ++m_iCells;
    const QStringList wrong = RunCell(Ways()[std::size_t(way)], Acts()[std::size_t(act)], source);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
}

void MatrixTest::TheMatrixIsLarge()
{
    QVERIFY2(m_iCells >= 1500, qPrintable(QString::number(m_iCells)));
}

// "MatrixTests MatrixTest --all" tries every cell; the suite takes every third, for the sake of the sanitizers.
KX_TEST_MAIN(MatrixTest)
{
    const QApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    MatrixTest test;
    test.m_bAll = arguments.removeAll(QStringLiteral("--all")) > 0;
    return QTest::qExec(&test, arguments);
}

#include "MatrixTest.moc"
