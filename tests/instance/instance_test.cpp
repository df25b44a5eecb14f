#include "support/expectations.h"

namespace KAXML::Test {
namespace {

template <typename T> constexpr bool kReads = requires(const CKaInstance& i, T* out) { i.GetPropertyValue(L"", out); };
static_assert(kReads<long> && kReads<double> && !kReads<int> && !kReads<unsigned> && !kReads<float> &&
              !kReads<CKaValue>);

struct InstanceTest : testing::Test {
    InstanceTest() {
        pump->SetBaseClass(L"Equipment");
        pump->AddKaProperty(L"Drive", L"Equipment", L"");
    }
    std::wstring Names() {
        std::wstring names;
        for (unsigned int i = 0; i < pump1.GetKaValueCount(); ++i)
            names += pump1.GetKaValue(i)->PropertyName() + L' ';
        return names;
    }
    template <typename Value> void ExpectSet(Value value, const wchar_t* text) {
        pump1.SetPropertyValue(L"Tag", value);
        EXPECT_STREQ(pump1.GetPropertyValue(L"Tag"), text);
    }

    CKaSchema schema{L"Plant", L"pl", nullptr};
    CKaProperty* tag = schema.CreateKaClass(L"Equipment", L"", KA_DOMAIN_CLASS)->AddKaProperty(L"Tag", L"string", L"");
    CKaClass* pump = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    CKaInstance pump1{pump};
};

TEST_F(InstanceTest, SetsValuesOfEveryType) {
    ExpectSet(L"text", L"text");
    ExpectSet(std::wstring(L"object"), L"object");
    ExpectSet(5, L"5");
    ExpectSet(-2147483648L, L"-2147483648");
    ExpectSet(4294967295u, L"-1");
    ExpectSet(2147483648UL, L"-2147483648");
    ExpectSet(2.5f, L"2.5");
    pump1.GetPropertyValue(L"Tag", true)->SetToNull();
    EXPECT_STREQ(pump1.GetPropertyValue(L"Tag"), L"2.5");
    ExpectThrows<KAXMLLogicError>([this] { pump1.SetPropertyValue(L"Drive", 1); },
                                  L"Attempted to set primitive value into a non-primitive property");
    ExpectThrows<KAXMLLogicError>([this] { pump1.GetPrimitiveValue(L"Drive"); },
                                  L"Called GetPrimitiveValue for a non-primitive CKaValue");
    EXPECT_TRUE(Names() == L"Tag Drive " && pump1.GetPropertyValue(L"Drive") == nullptr);
    auto& drive = dynamic_cast<KaStructValue&>(*pump1.GetKaValue(1));
    ExpectThrows<KAXMLLogicError>([&] { drive.SetValue(&pump1); }, L"Set wrong type of instance into a KaStructValue");
    drive.SetValue(drive.GetValue()); // the one it holds
    drive.SetValue(nullptr);
    EXPECT_TRUE(drive.IsNull());
}

TEST_F(InstanceTest, NumbersTheNamesOfValues) {
    for (const wchar_t* const name : {L"Width2", L"Width3", L"Width", L"Width", L"Width2"}) {
        auto* const value = new CKaValue(tag, L"");
        value->SetPropertyName(name);
        pump1.AddKaValue(value);
    }
    EXPECT_EQ(Names(), L"Width2 Width3 Width Width4 Width22 ");
    EXPECT_EQ(pump1.GetPropertyValue(L"Width4", true)->GetProperty(), tag);
}

} // namespace
} // namespace KAXML::Test
