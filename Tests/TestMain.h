#pragma once

#include <QtCore/QCoreApplication>
#include <QtTest/QTest>

// What a test waits for may take long on a busy machine or under a sanitizer, and only a test that fails waits to the
// end. Qt's own two give up after five seconds and look every 50 ms.
constexpr int PatienceMs = 60000;
#undef QTRY_VERIFY
#define QTRY_VERIFY(expression)                                                                                        \
    do {                                                                                                               \
        (void)QTest::qWaitFor([&] { return static_cast<bool>(expression); }, PatienceMs);                              \
        QVERIFY(expression);                                                                                           \
    } while (false)
#undef QTRY_COMPARE
#define QTRY_COMPARE(actual, expected)                                                                                 \
    do {                                                                                                               \
        (void)QTest::qWaitFor([&] { return (actual) == (expected); }, PatienceMs);                                     \
        QCOMPARE(actual, expected);                                                                                    \
    } while (false)

// A test program holds the test classes of a room and runs the one that it is told:
//     EngineTests ListTest [what QTest takes…]
// A class is entered at the end of its file, with the application object that it needs:
//     KX_TEST(ListTest, QCoreApplication)
//     #include "ListTest.moc"
struct TestClass
{
    using Main = int (*)(int argc, char** argv);
    TestClass(const char* pszName, Main pfnMain);
};

// In place of an application object: the class needs none.
struct NoApplication
{
    NoApplication(int&, char**) {}
};

#define KX_TEST(Class, Application)                                                                                    \
    KX_TEST_MAIN(Class)                                                                                                \
    {                                                                                                                  \
        const Application application(argc, argv);                                                                     \
        QCoreApplication::setAttribute(Qt::AA_Use96Dpi, true);                                                         \
        Class test;                                                                                                    \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }

// For a class whose main function does more; the function's body follows.
#define KX_TEST_MAIN(Class)                                                                                            \
    static int Class##Main(int argc, char** argv);                                                                     \
    static const TestClass s_##Class(#Class, Class##Main);                                                             \
    static int Class##Main(int argc, char** argv)
