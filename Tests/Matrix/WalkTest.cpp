// Random walks. "MatrixTests WalkTest --seed 7 --steps 200" takes that one, "--walks 1000" so many from there on; a
// failure names its seed and its shortest beginning that fails, with its last steps.

#include "Matrix/Walk.h"
#include "TestMain.h"

namespace {

int g_iFirstSeed = 1;
int g_iWalks = 200;
int g_iSteps = 40;

// Takes the option and its number out of the arguments.
bool TakeNumber(QStringList& arguments, const char* pszOption, int& iNumber)
{
    const int iAt = arguments.indexOf(QLatin1String(pszOption));
    if (iAt < 0)
        return false;
    iNumber = arguments.value(iAt + 1).toInt();
    arguments.erase(arguments.begin() + iAt, arguments.begin() + qMin(iAt + 2, arguments.size()));
    return true;
}

QStringList WrongAfter(int iSeed, int iSteps, QStringList& trace)
{
    Walk walk(static_cast<quint32>(iSeed), g_iWalks == 1);
    const QStringList wrong = walk.Run(iSteps);
    trace = walk.Trace();
    return wrong;
}

} // namespace

class WalkTest : public QObject
{
    Q_OBJECT

private slots:
    void AllIsInOrderAfterAWalk_data();
    void AllIsInOrderAfterAWalk();
    void AWalkIsTheSameEveryTime();
};

void WalkTest::AllIsInOrderAfterAWalk_data()
{
    QTest::addColumn<int>("seed");
    for (int iSeed = g_iFirstSeed; iSeed < g_iFirstSeed + g_iWalks; ++iSeed)
        QTest::addRow("seed %d", iSeed) << iSeed;
}

void WalkTest::AllIsInOrderAfterAWalk()
{
    QFETCH(int, seed);
    QStringList trace;
    QStringList wrong = WrongAfter(seed, g_iSteps, trace);
    if (wrong.isEmpty())
        return;
    int iSteps = 0;
    do {
        wrong = WrongAfter(seed, ++iSteps, trace);
    } while (wrong.isEmpty() && iSteps < g_iSteps);
    const QString strWhat = QStringLiteral("--seed %1 --steps %2\n%3\n\n%4")
                                .arg(QString::number(seed), QString::number(iSteps), trace.join(QLatin1Char('\n')),
                                     wrong.join(QLatin1Char('\n')));
    QFAIL(qPrintable(strWhat));
}

void WalkTest::AWalkIsTheSameEveryTime()
{
    QStringList first;
    QStringList second;
    WrongAfter(g_iFirstSeed, g_iSteps, first);
    WrongAfter(g_iFirstSeed, g_iSteps, second);
    QVERIFY(first.size() >= g_iSteps);
    QCOMPARE(first, second);
}

KX_TEST_MAIN(WalkTest)
{
    QApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    if (TakeNumber(arguments, "--seed", g_iFirstSeed))
        g_iWalks = 1;
    TakeNumber(arguments, "--walks", g_iWalks);
    TakeNumber(arguments, "--steps", g_iSteps);
    WalkTest test;
    return QTest::qExec(&test, arguments);
}

#include "WalkTest.moc"
