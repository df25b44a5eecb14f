#include <kaxml/kaschemaxml/xml/instance_write_warnings.h>

#include <kaxml/kaschemaxml/instance/custom_attribute.h>
#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaschemaxml/xml/elements.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/log_message.h>

namespace KAXML {

namespace {

void CheckInstance(const std::wstring& item, const CKaInstance& instance, const CKaClass& kaClass);

void CheckText(const std::wstring& item, const CKaValue& value, bool isMember) {
    const std::wstring& text = value.Value();
    if (text.empty() ? !isMember : IsBlank(text))
        WarnOfWrite(item, L"a value of white space only, or of nothing, does not come back");
    else if (value.IsNull())
        WarnOfWrite(item, L"a null value is read back with its text");
}

void CheckMember(const std::wstring& item, const KaValueBase* member) {
    if (member == nullptr)
        WarnOfWrite(item, L"an empty slot of an array is not written");
    else if (const auto* const primitive = dynamic_cast<const CKaValue*>(member))
        CheckText(item, *primitive, true);
    else if (const auto* const structValue = dynamic_cast<const KaStructValue*>(member))
        CheckInstance(item, *structValue->GetValue(), *structValue->GetValue()->GetKaClass());
}

void CheckArray(const std::wstring& item, const KaArrayValue& array) {
    if (array.GetLength() == 0)
        WarnOfWrite(item, L"an array without members does not come back");
    else if (array.IsNull())
        WarnOfWrite(item, L"a null array is read back with its members");
    for (unsigned int i = 0; i < array.GetLength(); ++i)
        CheckMember(item, array.GetValue(i));
}

void CheckValue(const std::wstring& instanceItem, const CKaClass& kaClass, const KaValueBase& value) {
    const std::wstring item = Concat(L"value '", value.PropertyName(), L"' of ", instanceItem);
    if (kaClass.FindProperty(value.GetPropertyName()) == nullptr)
        WarnOfWrite(item, L"the class has no property of this name, so the file cannot be read");
    if (const auto* const primitive = dynamic_cast<const CKaValue*>(&value))
        CheckText(item, *primitive, false);
    else if (const auto* const array = dynamic_cast<const KaArrayValue*>(&value))
        CheckArray(item, *array);
    else if (const auto* const structValue = dynamic_cast<const KaStructValue*>(&value))
        WarnOfWrite(item, structValue->GetValue()->GetKaValueCount() == 0
                              ? L"a struct without values does not come back"
                              : L"it is a struct outside an array, so the file cannot be read");
}

// The class is the one that the instance is read with.
void CheckInstance(const std::wstring& item, const CKaInstance& instance, const CKaClass& kaClass) {
    for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i)
        CheckValue(item, kaClass, *instance.GetKaValue(i));
}

// Whether the reader of the file has the properties that the instance's values name, also those of
// structs in arrays.
bool HasProperties(const CKaInstance& instance, const KnownWhenRead& known) {
    for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i) {
        const KaValueBase& value = *instance.GetKaValue(i);
        const CKaClass* const declaring = value.GetProperty()->GetKaClass();
        if (declaring != nullptr && !known.hasProperties(*declaring))
            return false;
        const auto* const array = dynamic_cast<const KaArrayValue*>(&value);
        for (unsigned int k = 0; array != nullptr && k < array->GetLength(); ++k)
            if (const auto* const member = dynamic_cast<const KaStructValue*>(array->GetValue(k)))
                if (!HasProperties(*member->GetValue(), known))
                    return false;
    }
    return true;
}

// Returns the class that the custom attribute is read with, its own when the file cannot be read.
const CKaClass& CheckClassOf(const CKaSchema& schema, const std::wstring& item,
                             const CKaCustomAttribute& customAttribute, const KnownWhenRead& known) {
    const CKaClass* const named = schema.FindKaClass(customAttribute.GetTypeName(), KA_ANY_CLASS_TYPE);
    const CKaClass* const found = named == nullptr ? nullptr : known.find(*named);
    if (named == nullptr)
        WarnOfWrite(item, L"its class is not found by its name, so the file cannot be read");
    else if (found != nullptr && found != customAttribute.GetKaClass())
        WarnOfWrite(item, L"its name is another class's, which the file is read back with");
    else if (found == nullptr || !HasProperties(customAttribute, known))
        WarnOfWrite(item, L"its class or a class of its values stands later in the file, so the file cannot be read");
    return found == nullptr ? *customAttribute.GetKaClass() : *found;
}

} // namespace

void WarnOfWrite(const std::wstring& item, const wchar_t* reason) {
    LogFormatted(LOG_WARNING, L"Writing %s: %s.", {item, reason});
}

void CheckCustomAttributes(const CKaSchema& schema, const std::wstring& item, const CKaCommon& common,
                           const KnownWhenRead& known) {
    for (unsigned int i = 0; i < common.GetKaCustomAttributeCount(); ++i) {
        const CKaCustomAttribute& customAttribute = *common.GetKaCustomAttribute(i);
        const std::wstring name = Concat(L"KaCustomAttribute '", customAttribute.TypeName(), L"' of ", item);
        const CKaClass& kaClass = CheckClassOf(schema, name, customAttribute, known);
        if (!customAttribute.InstanceID().empty())
            WarnOfWrite(name, L"its id is written, but not read");
        CheckInstance(name, customAttribute, kaClass);
    }
}

} // namespace KAXML
