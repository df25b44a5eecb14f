#include "support/expectations.h"

#include <kaxml/kaschemaxml/instance/recycled_values.h>

#include <memory>
#include <set>

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

// A class of a client's, which looks at its values when it goes.
struct Leaving : CKaInstance {
    explicit Leaving(CKaClass* kaClass, std::size_t& left) : CKaInstance(kaClass), m_left(left) {}
    ~Leaving() override { m_left = GetKaValueCount(); }
    std::size_t& m_left;
};

struct StockTest : RecycledValuesTest {
    void Fill(CKaInstance& instance, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            std::unique_ptr<CKaValue> value = stock.Get(head);
            EXPECT_TRUE(value->IsNull() && value->Value().empty());
            value->SetValue(L"1");
            filled.push_back(value.get());
            instance.AddKaValue(value.release());
        }
    }

    ValueStock stock;
    std::vector<CKaValue*> filled;
};

TEST_F(StockTest, TakesFromThePoolAndGivesBackInTheEnd) {
    std::vector<CKaValue*> values;
    for (int i = 0; i < 3; ++i)
        CKaSchema::RecycleKaValue(values.emplace_back(new CKaValue(head, L"1")));
    {
        ValueStock other;
        ExpectThrows<KAXMLRuntimeError>([&] { other.Get(nullptr); },
                                        L"Unknown exception in CKaSchema::GetRecycledKaValue");
        const std::unique_ptr<CKaValue> got = other.Get(head);
        EXPECT_EQ(got.get(), values[2]);
        CKaInstance none(pump);
        other.TakeBack(none); // one more may be needed
        EXPECT_EQ(std::unique_ptr<CKaValue>(other.Get(head)).get(), values[1]);
        CKaSchema::RecycleKaValue(other.Get(head).release());
    }
    EXPECT_EQ(std::unique_ptr<CKaValue>(CKaSchema::GetRecycledKaValue(head)).get(), values[0]);
}

TEST_F(StockTest, KeepsTheValuesOfFinishedInstancesForTheNext) {
    std::size_t left = 0;
    for (const std::size_t count : {3U, 1U, 3U}) {
        CKaInstance instance(pump);
        Fill(instance, count);
        stock.TakeBack(instance);
        EXPECT_EQ(instance.GetKaValueCount(), 0U);
    }
    EXPECT_EQ(std::set<CKaValue*>(filled.begin(), filled.end()).size(), 3U) << "no more were made than one needed";
    {
        Leaving instance(pump, left);
        Fill(instance, 2);
        stock.TakeBack(instance);
    }
    EXPECT_EQ(left, 2U);
    EXPECT_EQ(std::unique_ptr<CKaValue>(CKaSchema::GetRecycledKaValue(head)).get(), filled.back());
}

TEST_F(StockTest, GivesThePoolWhatItNeedNotHold) {
    CKaInstance large(pump);
    for (int i = 0; i < 1500; ++i) // of the client's
        large.AddKaValue(new CKaValue(head, L"1"));
    Fill(large, 2);
    stock.TakeBack(large);
    EXPECT_EQ(std::unique_ptr<CKaValue>(CKaSchema::GetRecycledKaValue(head)).get(), filled.back());
    CKaInstance larger(pump);
    Fill(larger, 1500); // more than a stock holds
    stock.TakeBack(larger);
    EXPECT_EQ(larger.GetKaValueCount(), 1500U) << "these go to the pool with the instance";
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
