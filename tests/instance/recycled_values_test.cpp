#include "support/expectations.h"

#include <kaxml/kaschemaxml/instance/recycled_values.h>

#include <memory>

namespace KAXML::Test {
namespace {

struct RecycledValuesTest : testing::Test {
    RecycledValuesTest() { CKaSchema::FreeRecycledValues(); }

    CKaSchema schema{L"Plant", L"pl", nullptr};
    CKaClass* pump = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    CKaProperty* head = pump->AddKaProperty(L"Head", L"double", L"");
};

TEST_F(RecycledValuesTest, ComeBackLastInFirstOutAndClean) {
    CKaValue* const first = new CKaValue(pump->AddKaProperty(L"Flow", L"double", L""), L"1");
    auto instance = std::make_unique<CKaInstance>(pump);
    CKaValue* const second = instance->GetPrimitiveValueForSetting(L"Flow");
    CKaSchema::RecycleKaValue(first);
    for (CKaValue* const held : {first, second}) // by the pool and by the instance
        ExpectThrows<KAXMLRuntimeError>([=] { CKaSchema::RecycleKaValue(held); },
                                        L"Unknown exception in CKaSchema::RecycleKaValue");
    instance.reset();
    for (CKaValue* const expected : {second, first}) {
        const std::unique_ptr<CKaValue> got(CKaSchema::GetRecycledKaValue(head));
        EXPECT_EQ(got.get(), expected);
        EXPECT_TRUE(got->IsNull() && got->Value().empty() && got->PropertyName() == L"Head" &&
                    got->GetProperty() == head);
    }
}

TEST_F(RecycledValuesTest, GoThroughAStock) {
    std::vector<CKaValue*> values;
    for (int i = 0; i < 6; ++i)
        CKaSchema::RecycleKaValue(values.emplace_back(new CKaValue(head, L"1")));
    std::vector<std::unique_ptr<CKaValue>> got;
    {
        ValueStock stock;
        ExpectThrows<KAXMLRuntimeError>([&] { stock.Get(nullptr); },
                                        L"Unknown exception in CKaSchema::GetRecycledKaValue");
        for (std::size_t i = 1; i <= 3; ++i) {
            EXPECT_EQ(got.emplace_back(stock.Get(head)).get(), values[values.size() - i]);
            EXPECT_TRUE(got.back()->IsNull() && got.back()->Value().empty());
        }
        CKaSchema::RecycleKaValue(got[0].release());
        stock.Refill(); // as many as were used: one was left, two are taken
        EXPECT_EQ(std::unique_ptr<CKaValue>(CKaSchema::GetRecycledKaValue(head)).get(), values[0]);
        EXPECT_EQ(std::unique_ptr<CKaValue>(stock.Get(head)).get(), values[5]);
    }
    for (const std::size_t expected : {1U, 2U})
        EXPECT_EQ(std::unique_ptr<CKaValue>(CKaSchema::GetRecycledKaValue(head)).get(), values[expected]);
}

CKaProperty* s_property;
CKaValue* s_taken;
void TakeAndFree(LOG_SEV, const wchar_t*, const wchar_t* message) {
    if (std::wstring(message).starts_with(L"Passed NULL pKaProperty")) // inside the operation
        s_taken = CKaSchema::GetRecycledKaValue(s_property);
    else
        CKaSchema::FreeRecycledValues();
}

TEST_F(RecycledValuesTest, SurviveACallbackThatUsesThePool) {
    s_property = head;
    for (int pooled = 0; pooled < 3; ++pooled) {
        for (int i = 0; i < pooled; ++i)
            CKaSchema::RecycleKaValue(new CKaValue(head, L"1"));
        const LoggingCallback before = SetLoggingCallback(&TakeAndFree);
        ExpectThrows<KAXMLRuntimeError>([] { CKaSchema::GetRecycledKaValue(nullptr); },
                                        L"Unknown exception in CKaSchema::GetRecycledKaValue");
        SetLoggingCallback(before);
        const std::unique_ptr<CKaValue> taken(s_taken);
        EXPECT_TRUE(taken->PropertyName() == L"Head" && taken->IsNull());
    }
}

} // namespace
} // namespace KAXML::Test
