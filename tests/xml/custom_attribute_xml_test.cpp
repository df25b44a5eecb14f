#include <kaxml/kaxml.h>

#include "support/expectations.h"

namespace KAXML::Test {
namespace {

// A class of custom attributes with a property of each kind, and an item to attach them to.
struct CustomAttributeArrays : testing::Test {
    CustomAttributeArrays() {
        entry->AddKaProperty(L"Author", L"string", L"");
        note->AddKaProperty(L"Text", L"string", L"");
        note->AddKaProperty(L"Lines", L"string", L"")->SetMinOccurs(L"0");
        note->AddKaProperty(L"Entries", L"Entry", L"")->SetMinOccurs(L"0");
    }

    CKaSchema schema{L"Plant", L"pl", nullptr};
    CKaClass* entry = schema.CreateKaClass(L"Entry", L"", KA_DOMAIN_CLASS | KA_STRUCT_CLASS);
    CKaClass* note = schema.CreateKaClass(L"Note", L"", KA_CUSTOM_ATTRIBUTE_CLASS);
    CKaClass* item = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
};

TEST_F(CustomAttributeArrays, MembersAreAppendedToOneArray) {
    EXPECT_EQ(item->GetArrayFromCustomAttribute(note, L"Entries", 0), nullptr);
    EXPECT_EQ(item->GetKaCustomAttributeCount(), 0U);
    CKaInstance* const first = item->CreateArrayMemberForCustomAttribute(note, L"Entries");
    EXPECT_EQ(first->GetKaClass(), entry);
    item->CreateArrayMemberForCustomAttribute(note, L"Entries")->SetPropertyValue(L"Author", L"Bob");
    ASSERT_EQ(item->GetKaCustomAttributeCount(), 1U);
    KaArrayValue* const array = item->GetArrayFromCustomAttribute(note, L"Entries", 1);
    EXPECT_EQ(array, item->GetKaCustomAttribute(0)->GetKaValue(0));
    ASSERT_EQ(array->GetLength(), 2U);
    EXPECT_EQ(array->GetStructInstance(0, L"Entry"), first);
    EXPECT_STREQ(array->GetStructInstance(1, L"Entry")->GetPropertyValue(L"Author"), L"Bob");
}

TEST_F(CustomAttributeArrays, FailuresLeaveWhatWasAttachedFirst) {
    const std::wstring unknown = L"KaClass 'Note' does not contain an KaProperty named 'Unknown'.";
    const std::wstring notAnArray = L"KaClass 'Note's 'Text' KaProperty is not an array!";
    const std::wstring missing = L"Failed to find an CKaValue for property ";
    const std::tuple<bool, const wchar_t*, std::wstring, std::wstring> cases[] = {
        {false, L"Unknown", unknown, missing + L"Unknown in CKaInstance::FindValue"},
        {false, L"Text", notAnArray, missing + L"Text in CKaInstance::FindValue"},
        {true, L"Unknown", unknown, unknown},
        {true, L"Text", notAnArray, missing + L"Text in CKaInstance::FindValue"}};
    for (const auto& [isMember, property, message, messageOnceAttached] : cases) {
        CKaProperty holder(item);
        const auto run = [&, isMember = isMember, property = property] {
            isMember ? void(holder.CreateArrayMemberForCustomAttribute(note, property))
                     : void(holder.GetArrayFromCustomAttribute(note, property, 1));
        };
        ExpectThrows<KAXMLLogicError>(run, message);
        ExpectThrows<KAXMLLogicError>(run, messageOnceAttached);
        EXPECT_EQ(holder.GetKaCustomAttributeCount(), messageOnceAttached == unknown ? 0U : 1U);
    }
    // A value that is there, but is no array; and an array whose members are no structs.
    item->GetArrayFromCustomAttribute(note, L"Lines", 1);
    item->GetKaCustomAttribute(0)->SetPropertyValue(L"Text", L"t");
    ExpectThrows<KAXMLLogicError>([&] { item->GetArrayFromCustomAttribute(note, L"Text", 0); }, notAnArray);
    ExpectThrows<KAXMLRuntimeError>([&] { item->CreateArrayMemberForCustomAttribute(note, L"Lines"); },
                                    L"Could not find class for struct property");
    EXPECT_EQ(item->GetArrayFromCustomAttribute(note, L"Lines", 0)->GetLength(), 0U);
}

} // namespace
} // namespace KAXML::Test
