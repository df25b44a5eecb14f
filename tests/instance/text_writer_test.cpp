#include "support/expectations.h"

#include <cmath>

namespace KAXML::Test {
namespace {

TEST(TextWriter, WritesFragmentsUnescaped) {
    CKaSchema schema(L"Plant", L"pl", nullptr);
    schema.CreateKaClass(L"Motor", L"", KA_DOMAIN_CLASS)->AddKaProperty(L"Power", L"int", L"");
    CKaRelationshipClass pump(L"Pump", &schema, nullptr);
    KaRelationshipInstance instance(&pump);
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
    for (const auto& [name, type] : {std::pair(L"Flow", L"double"),
                                     {L"Head", L"double"},
                                     {L"Tags", L"string"},
                                     {L"Motor", L"Motor"},
                                     {L"Motors", L"Motor"}}) {
        CKaProperty* const property = pump.AddKaProperty(name, type, L"");
        if (std::wstring(name).back() == L's')
            property->SetMaxOccurs(L"2");
        instance.AddKaValue(KaValueBase::CreateKaValueForKaProperty(&pump, property));
    }
    instance.SetPropertyValue(L"Flow", L"x<y");
    instance.PropertyValue(L"Head") = L"null";
    instance.AppendValueToString(output.assign(L"x"));
    EXPECT_EQ(output, L"x<Flow>x<y</Flow><Head></Head><Tags></Tags><Motor></Motor><Motors></Motors>");
    auto& tags = dynamic_cast<KaArrayValue&>(*instance.GetKaValue(2));
    auto& motor = dynamic_cast<KaStructValue&>(*instance.GetKaValue(3));
    auto& motors = dynamic_cast<KaArrayValue&>(*instance.GetKaValue(4));
    tags.PushBack(new CKaValue(tags.GetProperty(), L"ab"));
    tags.PushBack(nullptr);
    motor.GetValue()->SetPropertyValue(L"Power", 30);
    motors.PushBack(new KaStructValue(motor));
    instance.AppendValueToString(output.assign(L""));
    EXPECT_EQ(output, L"<Flow>x<y</Flow><Head></Head><Tags><string>ab</string><string></string></Tags>"
                      L"<Motor><Power>30</Power></Motor><Motors><Motor><Power>30</Power></Motor></Motors>");
    motor.SetValue(nullptr);
    ExpectThrows<KAXMLLogicError>([&] { motor.AppendAsXml(output.assign(L"kept")); }, L"Can't serialize a NULL struct");
    EXPECT_EQ(output, L"kept<Motor>");
}

// A text in which each place can be told from its neighbours.
std::wstring Letters(std::size_t size, std::size_t first) {
    std::wstring text;
    for (std::size_t i = 0; i < size; ++i)
        text += static_cast<wchar_t>(L'a' + (first + i) % 26);
    return text;
}

struct Own : CKaValue {
    using CKaValue::CKaValue;
    void AppendValueToString(std::wstring& output) const override {
        if (IsNull())
            throw std::length_error(ToUtf8(output.append(5000, L'!')));
        output += L"own" + Value();
    }
};

TEST(TextWriter, WritesTextsOfAllSizesAndOtherKindsOfValues) {
    CKaSchema schema(L"Plant", L"pl", nullptr);
    CKaClass* const pump = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    CKaInstance instance(pump);
    std::wstring expected = L"before";
    for (std::size_t size = 1; size < 3000; size += 1 + size / 40) {
        const std::wstring name = Letters(size, 0), text = Letters(size * 5 % 700, size);
        CKaProperty* const property = pump->AddKaProperty(name.c_str(), L"string", L"");
        instance.AddKaValue(size % 2 != 0 ? new CKaValue(property, text.c_str()) : new Own(property, text.c_str()));
        expected += L"<" + name + L">" + (size % 2 != 0 ? L"" : L"own") + text + L"</" + name + L">";
    }
    std::wstring output = L"before";
    instance.AppendValueToString(output);
    EXPECT_EQ(output, expected);
    instance.AddKaValue(new Own(pump->AddKaProperty(L"Last", L"string", L""), nullptr));
    EXPECT_THROW(instance.AppendValueToString(output.assign(L"before")), std::length_error);
    EXPECT_EQ(output, expected + L"<Last>" + std::wstring(5000, L'!'));
}

TEST(TextWriter, GrowsByDoubling) {
    CKaSchema schema(L"Plant", L"pl", nullptr);
    const CKaInstance instance(schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS));
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
