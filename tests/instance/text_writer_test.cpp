#include "support/expectations.h"

#include <cmath>

namespace KAXML::Test {
namespace {

struct TextWriterTest : testing::Test {
    TextWriterTest() {
        pump.AddKaProperty(L"Flow", L"double", L"");
        pump.AddKaProperty(L"Head", L"double", L"");
        pump.AddKaProperty(L"Tags", L"string", L"")->SetMaxOccurs(L"2");
        pump.AddKaProperty(L"Motor", L"Pump", L"");
        pump.AddKaProperty(L"Motors", L"Pump", L"")->SetMaxOccurs(L"2");
    }
    template <typename Value> Value& Add(const wchar_t* name) {
        instance.AddKaValue(KaValueBase::CreateKaValueForKaProperty(&pump, pump.FindProperty(name)));
        return dynamic_cast<Value&>(*instance.GetPropertyValue(name, true));
    }

    CKaSchema schema{L"Plant", L"pl", nullptr};
    CKaRelationshipClass pump{L"Pump", &schema, nullptr};
    CKaClass& structClass = *schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    KaRelationshipInstance instance{&pump};
};

TEST_F(TextWriterTest, WritesFragments) {
    structClass.AddKaProperty(L"Power", L"int", L"");
    instance.SetSourceID(L"never written");
    const std::vector<std::tuple<const wchar_t*, const wchar_t*, std::wstring>> heads = {
        {L"", L"", L"<Pump>"},
        {L"P1", L"", L"<Pump instanceid='P1' >"},
        {L"P1", L"a='1'", L"<Pump instanceid='P1' a='1' >"},
        {L"", L" a='1'", L"<Pump a='1' >"},
        {L"'&<", L"<", L"<Pump instanceid=''&<' < >"}};
    std::wstring output = L"before", expected = output;
    for (const auto& [id, attributes, head] : heads) {
        instance.SetInstanceID(id);
        instance.AppendAsXml(output, attributes);
        EXPECT_EQ(output, expected += head + L"</Pump>");
    }
    instance.SetPropertyValue(L"Flow", L"x<y");
    Add<CKaValue>(L"Head").Value() = L"null";
    auto& tags = Add<KaArrayValue>(L"Tags");
    auto& motor = Add<KaStructValue>(L"Motor");
    auto& motors = Add<KaArrayValue>(L"Motors");
    instance.AppendValueToString(output.assign(L"x"));
    EXPECT_EQ(output, L"x<Flow>x<y</Flow><Head></Head><Tags></Tags><Motor></Motor><Motors></Motors>");
    for (CKaValue* const member : {new CKaValue(tags.GetProperty(), L"ab"), static_cast<CKaValue*>(nullptr)})
        tags.PushBack(member);
    motor.GetValue()->SetPropertyValue(L"Power", 30);
    motors.PushBack(new KaStructValue(motor));
    instance.AppendValueToString(output.assign(L""));
    EXPECT_EQ(output, L"<Flow>x<y</Flow><Head></Head><Tags><string>ab</string><string></string></Tags>"
                      L"<Motor><Power>30</Power></Motor><Motors><Pump><Power>30</Power></Pump></Motors>");
    motor.SetValue(nullptr);
    ExpectThrows<KAXMLLogicError>([&] { motor.AppendAsXml(output.assign(L"kept")); }, L"Can't serialize a NULL struct");
    EXPECT_EQ(output, L"kept<Motor>");
}

TEST_F(TextWriterTest, GrowsByDoubling) {
    std::wstring output;
    int changes = 0;
    for (int i = 0; i < 100000; ++i) {
        const std::size_t before = output.capacity();
        instance.AppendAsXml(output, L"");
        changes += output.capacity() != before;
    }
    EXPECT_EQ(output.size(), 100000u * 13);
    EXPECT_LE(changes, 2 + std::log2(static_cast<double>(output.size()) / 1024));
}

} // namespace
} // namespace KAXML::Test
