// What a plug-in gets from the interface alone: defaults, identifiers, and the order of its operations, which the hosts
// that were built long ago call by.

#include "Plugin/IKXWidgetPluginInterface.h"
#include "TestMain.h"

#include <QtTest/QTest>

#include <cstring>

namespace {

// Overrides what it must and nothing else.
class BarePlugin : public IKXWidgetPluginInterface
{
public:
    QString Name() override { return QStringLiteral("bare"); }
    QString Information() override { return QString(); }
    QWidget* CenterWidget(QString) override { return nullptr; }
    void SetGetDataListener(KXLogicPluginGoMain*) override {}
};

// Place of a virtual operation in the table: what a pointer to it holds by the Itanium C++ ABI, less one, in words.
template <class Operation>
int PlaceOf(Operation pOperation)
{
    std::ptrdiff_t iEntry = 0;
    static_assert(sizeof(pOperation) >= sizeof(iEntry), "holds an offset");
    std::memcpy(&iEntry, &pOperation, sizeof(iEntry));
    return static_cast<int>(iEntry - 1) / static_cast<int>(sizeof(void*));
}

} // namespace

class InterfaceTest : public QObject
{
    Q_OBJECT

private slots:
    void TheDefaults();
    void TheFamilysIdentifiers();
    void OperationsStandInThisOrder();
};

void InterfaceTest::TheDefaults()
{
    BarePlugin bare;
    IKXWidgetPluginInterface& plugin = bare;
    QVERIFY(plugin.IsSupported());
    QCOMPARE(QByteArray(plugin.Id()), QByteArray("{72F83323-8AEC-4B7C-8744-3332523E1D75}"));
    QCOMPARE(plugin.Query(QStringLiteral("anything")), QString());
    QCOMPARE(plugin.Order(), 0);
    plugin.Init(QStringLiteral("{}"));
    plugin.Start();
    plugin.Stop();
    plugin.Destory();
    IKXBaseInterface& base = bare; // reached from there as well
    QCOMPARE(base.Order(), 0);
}

void InterfaceTest::TheFamilysIdentifiers()
{
    const QByteArrayList found{KXPluginIdentifiers::WidgetPluginInterface, KXPluginIdentifiers::SecondFamilyMember,
                               KXPluginIdentifiers::RecordManage, KXPluginIdentifiers::FourthFamilyMember,
                               KXPluginIdentifiers::FifthFamilyMember};
    const QByteArrayList expected{"{72F83323-8AEC-4B7C-8744-3332523E1D75}", "{321B109F-7634-49A0-8E2B-BC60CCBA1863}",
                                  "{94b7b2ae-700b-0c85-1624-bedf67f1b547}", "{94b7b2ae-700c-0c84-1111-bedf61f1b547}",
                                  "{94b7b2ae-700c-0c84-1111-bedf61f1b682}"};
    QCOMPARE(found, expected);
}

void InterfaceTest::OperationsStandInThisOrder()
{
#ifdef __GNUC__
    using Plugin = IKXWidgetPluginInterface;
    const QList<int> places{
        PlaceOf(&Plugin::IsSupported), PlaceOf(&Plugin::Id),           PlaceOf(&Plugin::Init),
        PlaceOf(&Plugin::Start),       PlaceOf(&Plugin::Query),        PlaceOf(&Plugin::Stop),
        PlaceOf(&Plugin::Destory),     PlaceOf(&Plugin::Order),        PlaceOf(&Plugin::Name),
        PlaceOf(&Plugin::Information), PlaceOf(&Plugin::CenterWidget), PlaceOf(&Plugin::SetGetDataListener)};
    QCOMPARE(places, QList<int>({0, 1, 2, 3, 4, 5, 6, 7, 10, 11, 12, 13})); // the destructor has 8 and 9
#else
    QSKIP("reads the table as the Itanium C++ ABI lays it out", "");
#endif
}

KX_TEST(InterfaceTest, NoApplication)

#include "InterfaceTest.moc"
