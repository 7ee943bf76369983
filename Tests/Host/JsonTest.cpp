#include "ktl/Json.h"
#include "TestMain.h"

#include <QtTest/QtTest>

using ktl::Json::FastWriter;
using ktl::Json::Reader;
using ktl::Json::Value;

namespace {

std::string Written(const Value& value)
{
    return FastWriter().write(value);
}

Value Parsed(const std::string& strText)
{
    Value root;
    return Reader().parse(strText, root) ? root : Value("no JSON");
}

Value OneOfEachKind()
{
    return Parsed(R"({"null":null,"bool":true,"int":7,"real":2.75,"text":"abc","array":[1,2],"object":{"a":1}})");
}

} // namespace

class JsonTest : public QObject
{
    Q_OBJECT

private slots:
    void KeysStayInTheOrderInWhichTheyWereFirstSet();
    void KeysStayInTheOrderInWhichTheyWereRead();
    void WritingGivesOneLineWithoutANewline();
    void StyledTextIsIndentedOverSeveralLines();
    void TextIsReadBackAsItWasWritten_data();
    void TextIsReadBackAsItWasWritten();
    void ATextThatIsNotUtf8IsWrittenWithReplacementCharacters();
    void WhatIsNoJsonIsRefusedAndLeavesTheRoot_data();
    void WhatIsNoJsonIsRefusedAndLeavesTheRoot();
    void NestingIsReadToALimitAndRefusedBeyond();
    void NumbersKeepTheirValue();
    void NumbersOutOfRangeGiveZero();
    void AWrongKindGivesTheEmptyValue();
    void KindsAreTold();
    void AnUnknownKeyIsNullAndIsAddedByTheWritableForm();
    void AMemberOfATextIsThrownAway();
    void AReferenceToAMemberSurvivesTheNextMember();
    void AppendingMakesAnArrayAndCopiesFirst();
    void AnElementPastTheEndIsNull();
    void ACopyIsIndependentAndAMoveTakesAll();
    void ALaterDuplicateKeyWins();
    void AnObjectOfManyKeysIsReadInOrder();
};

void JsonTest::KeysStayInTheOrderInWhichTheyWereFirstSet()
{
    Value value;
    value["zeta"] = 1;
    value["alpha"] = "x";
    value["middle"] = Value();
    value["zeta"] = 2;
    QCOMPARE(Written(value), std::string(R"({"zeta":2,"alpha":"x","middle":null})"));
    QCOMPARE(value.getMemberNames(), (std::vector<std::string>{"zeta", "alpha", "middle"}));
}

void JsonTest::KeysStayInTheOrderInWhichTheyWereRead()
{
    const std::string strText = R"({"time":1700000000000,"event":"$AppClick","properties":{"b":"","a":[]}})";
    QCOMPARE(Written(Parsed(strText)), strText);
}

void JsonTest::WritingGivesOneLineWithoutANewline()
{
    Value value;
    value["text"] = "two\nlines";
    value["list"].append(true);
    QCOMPARE(Written(value), std::string(R"({"text":"two\nlines","list":[true]})"));
}

void JsonTest::StyledTextIsIndentedOverSeveralLines()
{
    Value value;
    value["deviceId"] = "D1";
    value["recordId"] = "42";
    QCOMPARE(value.toStyledString(), std::string("{\n    \"deviceId\": \"D1\",\n    \"recordId\": \"42\"\n}"));
}

void JsonTest::TextIsReadBackAsItWasWritten_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("an empty text") << QByteArray("");
    QTest::newRow("quotes and backslashes") << QByteArray("\"\\\"/");
    QTest::newRow("control characters and a NUL") << QByteArray("a\0b\x01\x1f\n", 6);
    QTest::newRow("other scripts and a character beyond 16 bits") << QByteArray("\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x8E\xA5");
}

void JsonTest::TextIsReadBackAsItWasWritten()
{
    QFETCH(QByteArray, text);
    Value value;
    value["text"] = text.toStdString();
    QCOMPARE(Parsed(Written(value))["text"].asString(), text.toStdString());
}

void JsonTest::ATextThatIsNotUtf8IsWrittenWithReplacementCharacters()
{
    QCOMPARE(Written(Value("a\xFF!")), std::string("\"a\xEF\xBF\xBD!\""));
    QVERIFY(!Value("a\xFF!").toStyledString().empty());
}

void JsonTest::WhatIsNoJsonIsRefusedAndLeavesTheRoot_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("an object that ends early") << QByteArray(R"({"a":1)");
    QTest::newRow("two values") << QByteArray("{} {}");
    QTest::newRow("a comment") << QByteArray("/* c */ {}");
    QTest::newRow("a trailing comma") << QByteArray("[1,]");
    QTest::newRow("single quotes") << QByteArray("{'a':1}");
    QTest::newRow("a text that is not UTF-8") << QByteArray("\"\xFF\"");
    QTest::newRow("a lonely surrogate") << QByteArray(R"("\ud800")");
    QTest::newRow("a number no real can hold") << QByteArray("1e999");
    QTest::newRow("a raw newline in a text") << QByteArray("\"a\nb\"");
}

void JsonTest::WhatIsNoJsonIsRefusedAndLeavesTheRoot()
{
    QFETCH(QByteArray, text);
    for (const bool bCollectComments : {false, true}) {
        Value root("before");
        QVERIFY(!Reader().parse(text.toStdString(), root, bCollectComments));
        QCOMPARE(root.asString(), std::string("before"));
    }
}

void JsonTest::NestingIsReadToALimitAndRefusedBeyond()
{
    Value root;
    QVERIFY(Reader().parse(std::string(512, '[') + std::string(512, ']'), root));
    QVERIFY(!Reader().parse(std::string(513, '[') + std::string(513, ']'), root));
    QVERIFY(!Reader().parse(std::string(5000000, '['), root));
    std::string strObjects;
    for (int i = 0; i < 100000; ++i)
        strObjects += "{\"a\":";
    QVERIFY(!Reader().parse(strObjects, root));
}

void JsonTest::NumbersKeepTheirValue()
{
    Value value;
    value["small"] = -5;
    value["time"] = std::int64_t{1700000000123};
    value["largest"] = std::numeric_limits<std::int64_t>::max();
    value["real"] = 0.5;
    const Value read = Parsed(Written(value));
    QCOMPARE(read["small"].asInt(), -5);
    QCOMPARE(read["time"].asInt64(), std::int64_t{1700000000123});
    QCOMPARE(read["largest"].asInt64(), std::int64_t{9223372036854775807});
    QCOMPARE(read["real"].asDouble(), 0.5);
    QCOMPARE(Value(3.9).asInt(), 3);
    QCOMPARE(Value(4).asDouble(), 4.0);
}

void JsonTest::NumbersOutOfRangeGiveZero()
{
    QCOMPARE(Parsed("2147483648").asInt(), 0);
    QCOMPARE(Parsed("-2147483648").asInt(), -2147483647 - 1);
    QCOMPARE(Parsed("9223372036854775808").asInt64(), std::int64_t{0});
    QCOMPARE(Parsed("9223372036854775808").asDouble(), 9223372036854775808.0);
    QCOMPARE(Parsed("1e300").asInt64(), std::int64_t{0});
    QCOMPARE(Value(std::numeric_limits<double>::quiet_NaN()).asInt(), 0);
}

void JsonTest::AWrongKindGivesTheEmptyValue()
{
    const Value value = OneOfEachKind();
    for (const char* pszKey : {"null", "bool", "int", "real", "array", "object"})
        QCOMPARE(value[pszKey].asString(), std::string());
    for (const char* pszKey : {"null", "bool", "text", "array", "object"}) {
        QCOMPARE(value[pszKey].asInt(), 0);
        QCOMPARE(value[pszKey].asInt64(), std::int64_t{0});
        QCOMPARE(value[pszKey].asDouble(), 0.0);
    }
    for (const char* pszKey : {"null", "int", "real", "text", "array", "object"})
        QCOMPARE(value[pszKey].asBool(), false);
    QCOMPARE(value["bool"].asBool(), true);
    QVERIFY(value["text"]["a"].isNull());
    QVERIFY(value["text"].at(0).isNull());
    QCOMPARE(value["text"].size(), std::size_t{0});
    QVERIFY(value["array"].getMemberNames().empty());
}

void JsonTest::KindsAreTold()
{
    const Value value = OneOfEachKind();
    QVERIFY(value.isObject() && !value.isArray() && !value.isNull() && !value.isString());
    QVERIFY(value["array"].isArray() && !value["array"].isObject());
    QVERIFY(value["text"].isString() && !value["int"].isString());
    QVERIFY(value["null"].isNull() && !value["bool"].isNull());
    QVERIFY(value.isMember("null") && !value.isMember("none") && !value["text"].isMember("none"));
    QCOMPARE(value.size(), std::size_t{7});
    QCOMPARE(value["array"].size(), std::size_t{2});
}

void JsonTest::AnUnknownKeyIsNullAndIsAddedByTheWritableForm()
{
    Value value = Parsed("{}");
    QVERIFY(static_cast<const Value&>(value)["none"].isNull());
    QVERIFY(!value.isMember("none"));
    QVERIFY(value["none"].isNull());
    QCOMPARE(Written(value), std::string(R"({"none":null})"));
    value["a"]["b"]["c"] = 1;
    QCOMPARE(Written(value), std::string(R"({"none":null,"a":{"b":{"c":1}}})"));
}

void JsonTest::AMemberOfATextIsThrownAway()
{
    Value value("text");
    value["a"]["b"] = 1;
    value.append(Value(1));
    QCOMPARE(Written(value), std::string("\"text\""));
    QVERIFY(value["c"].isNull());
}

void JsonTest::AReferenceToAMemberSurvivesTheNextMember()
{
    Value value;
    value["first"] = std::string(100, 'x');
    value["second"] = value["first"];
    for (int i = 0; i < 1000; ++i)
        value[std::to_string(i)] = value["first"];
    QCOMPARE(value["second"].asString(), std::string(100, 'x'));
    QCOMPARE(value["999"].asString(), std::string(100, 'x'));
}

void JsonTest::AppendingMakesAnArrayAndCopiesFirst()
{
    Value value;
    value.append(Value("a"));
    value.append(value);
    QCOMPARE(Written(value), std::string(R"(["a",["a"]])"));
    Value null;
    null.append(null);
    QCOMPARE(Written(null), std::string("[null]"));
}

void JsonTest::AnElementPastTheEndIsNull()
{
    const Value value = Parsed("[1,2]");
    QCOMPARE(value.at(1).asInt(), 2);
    QVERIFY(value.at(2).isNull());
}

void JsonTest::ACopyIsIndependentAndAMoveTakesAll()
{
    Value value = Parsed(R"({"a":[1]})");
    Value copy(value);
    copy["a"].append(Value(2));
    QCOMPARE(Written(value), std::string(R"({"a":[1]})"));
    QCOMPARE(Written(copy), std::string(R"({"a":[1,2]})"));
    copy = copy["a"];
    QCOMPARE(Written(copy), std::string("[1,2]"));
    const Value moved(std::move(value));
    QCOMPARE(Written(moved), std::string(R"({"a":[1]})"));
}

void JsonTest::ALaterDuplicateKeyWins()
{
    QCOMPARE(Written(Parsed(R"({"a":[1],"b":0,"a":{"c":2}})")), std::string(R"({"a":{"c":2},"b":0})"));
}

void JsonTest::AnObjectOfManyKeysIsReadInOrder()
{
    std::string strText = "{";
    for (int i = 0; i < 100000; ++i)
        strText += (i > 0 ? ",\"" : "\"") + std::to_string(i) + "\":0";
    strText += "}";
    const Value value = Parsed(strText);
    QCOMPARE(value.size(), std::size_t{100000});
    QCOMPARE(value.getMemberNames().at(77777), std::string("77777"));
    QCOMPARE(Written(value), strText);
}

KX_TEST(JsonTest, NoApplication)
#include "JsonTest.moc"
