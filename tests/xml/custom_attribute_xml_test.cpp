#include <kaxml/kaxml.h>
#include <kaxml/platform/dom.h>

#include "platform/test_support.h"
#include "support/expectations.h"

namespace KAXML::Test {
namespace {

// A class of custom attributes with a property of each kind, and an item to attach them to.
class CustomAttributeArrays : public testing::Test {
  protected:
    CustomAttributeArrays() {
        entry = schema.CreateKaClass(L"Entry", L"", KA_DOMAIN_CLASS | KA_STRUCT_CLASS);
        entry->AddKaProperty(L"Author", L"string", L"");
        note = schema.CreateKaClass(L"Note", L"", KA_CUSTOM_ATTRIBUTE_CLASS);
        note->AddKaProperty(L"Text", L"string", L"");
        note->AddKaProperty(L"First", L"Entry", L"");
        note->AddKaProperty(L"Lines", L"string", L"")->SetMinOccurs(L"0");
        note->AddKaProperty(L"Entries", L"Entry", L"")->SetMinOccurs(L"0");
        item = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    }

    CKaSchema schema{L"Plant", L"pl", nullptr};
    CKaClass* entry;
    CKaClass* note;
    CKaClass* item;
};

TEST_F(CustomAttributeArrays, MembersAreAppendedToOneArray) {
    EXPECT_EQ(item->GetArrayFromCustomAttribute(note, L"Entries", 0), nullptr);
    EXPECT_EQ(item->GetArrayFromCustomAttribute(note, L"Unknown", 0), nullptr);
    EXPECT_EQ(item->GetKaCustomAttributeCount(), 0U);
    CKaInstance* const first = item->CreateArrayMemberForCustomAttribute(note, L"Entries");
    EXPECT_EQ(first->GetKaClass(), entry);
    EXPECT_EQ(first->GetKaValueCount(), 0U);
    first->SetPropertyValue(L"Author", L"Ann");
    item->CreateArrayMemberForCustomAttribute(note, L"Entries")->SetPropertyValue(L"Author", L"Bob");
    ASSERT_EQ(item->GetKaCustomAttributeCount(), 1U);
    KaArrayValue* const array = item->GetArrayFromCustomAttribute(note, L"Entries", 0);
    EXPECT_EQ(array, item->GetKaCustomAttribute(0)->GetKaValue(0));
    EXPECT_EQ(array, item->GetArrayFromCustomAttribute(note, L"Entries", 1));
    EXPECT_FALSE(array->IsNull());
    ASSERT_EQ(array->GetLength(), 2U);
    EXPECT_EQ(array->GetStructInstance(0, L"Entry"), first);
    EXPECT_STREQ(array->GetStructInstance(1, L"Entry")->GetPropertyValue(L"Author"), L"Bob");
}

TEST_F(CustomAttributeArrays, FailuresLeaveWhatWasAttachedFirst) {
    const std::wstring unknown = L"KaClass 'Note' does not contain an KaProperty named 'Unknown'.";
    const std::wstring notAnArray = L"KaClass 'Note's 'Text' KaProperty is not an array!";
    const std::wstring missing = L"Failed to find an CKaValue for property ";
    const struct {
        bool isMember;
        const wchar_t* property;
        std::wstring message, messageOnceAttached;
        unsigned int attached;
    } cases[] = {
        {false, L"Unknown", unknown, missing + L"Unknown in CKaInstance::FindValue", 1},
        {false, L"Text", notAnArray, missing + L"Text in CKaInstance::FindValue", 1},
        {true, L"Unknown", unknown, unknown, 0},
        {true, L"Text", notAnArray, missing + L"Text in CKaInstance::FindValue", 1},
    };
    for (const auto& each : cases) {
        CKaProperty holder(item);
        for (const std::wstring& message : {each.message, each.messageOnceAttached}) {
            ExpectThrows<KAXMLLogicError>(
                [&] {
                    each.isMember ? void(holder.CreateArrayMemberForCustomAttribute(note, each.property))
                                  : void(holder.GetArrayFromCustomAttribute(note, each.property, 1));
                },
                message);
            EXPECT_EQ(holder.GetKaCustomAttributeCount(), each.attached);
        }
    }
    // A value that is there, but is no array; and an array whose members are no structs.
    item->GetArrayFromCustomAttribute(note, L"Lines", 1);
    item->GetKaCustomAttribute(0)->SetPropertyValue(L"Text", L"t");
    ExpectThrows<KAXMLLogicError>([&] { item->GetArrayFromCustomAttribute(note, L"Text", 0); }, notAnArray);
    ExpectThrows<KAXMLRuntimeError>([&] { item->CreateArrayMemberForCustomAttribute(note, L"Lines"); },
                                    L"Could not find class for struct property");
    EXPECT_EQ(item->GetArrayFromCustomAttribute(note, L"Lines", 0)->GetLength(), 0U);
}

TEST_F(CustomAttributeArrays, RepeatedValuesGetNumbers) {
    IXMLDOMDocument2 document;
    ASSERT_TRUE(document.loadXML(L"<x:Note id='lost' xmlns:x='urn:x'><Text>a</Text><First/><Text> b </Text>"
                                 L"<Text/><Text><!----></Text><Lines><string>l</string></Lines></x:Note>"));
    CKaCustomAttribute read(note);
    EXPECT_EQ(read.ReadXML(&document, document.get_firstChild()), 0);
    EXPECT_EQ(read.TypeName(), L"Note");
    EXPECT_EQ(read.InstanceID(), L"");
    ASSERT_EQ(read.GetKaValueCount(), 4U);
    EXPECT_STREQ(read.GetPropertyValue(L"Text"), L"a");
    EXPECT_STREQ(read.GetPropertyValue(L"Text2"), L" b ");
    EXPECT_STREQ(read.GetPropertyValue(L"Text3"), L"");
    EXPECT_EQ(read.GetKaValue(1)->GetProperty(), note->FindProperty(L"Text"));
    ExpectThrows<KAXMLInvalidArgument>([&] { KaValueBase::CreateKaValueFromXml(nullptr, document.get_firstChild()); },
                                       L"NULL pKaClass passed to CreateKaValueFromXml");
    ExpectThrows<KAXMLRuntimeError>(
        [&] { KaStructValue(note->FindProperty(L"First")).ReadXML(nullptr, document.get_firstChild()); },
        L"Could not find class for struct property");
}

TEST_F(CustomAttributeArrays, TheIdIsWrittenAndWhatHasNoFormIsRefused) {
    CKaCustomAttribute written(note);
    written.SetInstanceID(L"\"1\"");
    written.AddKaValue(new KaStructValue(note->FindProperty(L"First")));
    const auto serialize = [&] {
        IXMLDOMDocument2 document;
        EXPECT_EQ(written.WriteXML(&document, &document), 0);
        return document.Serialize();
    };
    EXPECT_EQ(serialize(), "<?xml version='1.0' encoding='UTF-8'?>\n"
                           "<Note id=\"&quot;1&quot;\" xmlns=\"Plant.00.00\">\n"
                           "  <First/>\n"
                           "</Note>\n");
    dynamic_cast<KaStructValue*>(written.GetKaValue(0))->SetValue(nullptr);
    ExpectThrows<KAXMLLogicError>(serialize, L"Can't serialize a NULL struct");
    written.SetTypeName(L"not a name");
    EXPECT_THROW(serialize(), _com_error);
}

} // namespace
} // namespace KAXML::Test
