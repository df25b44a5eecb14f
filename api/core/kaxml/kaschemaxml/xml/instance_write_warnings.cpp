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

void CheckInstance(const std::wstring& item, const CKaInstance& instance);

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
        CheckInstance(item, *structValue->GetValue());
}

void CheckArray(const std::wstring& item, const KaArrayValue& array) {
    if (array.GetLength() == 0)
        WarnOfWrite(item, L"an array without members does not come back");
    for (unsigned int i = 0; i < array.GetLength(); ++i)
        CheckMember(item, array.GetValue(i));
}

void CheckValue(const std::wstring& instanceItem, const CKaInstance& instance, const KaValueBase& value) {
    const std::wstring item = Concat(L"value '", value.PropertyName(), L"' of ", instanceItem);
    if (instance.GetKaClass()->FindProperty(value.GetPropertyName()) == nullptr)
        WarnOfWrite(item, L"the class has no property of this name, so the file cannot be read");
    if (const auto* const primitive = dynamic_cast<const CKaValue*>(&value))
        CheckText(item, *primitive, false);
    else if (const auto* const array = dynamic_cast<const KaArrayValue*>(&value))
        CheckArray(item, *array);
    else
        WarnOfWrite(item, L"a struct outside an array cannot be read from a schema file");
}

void CheckInstance(const std::wstring& item, const CKaInstance& instance) {
    for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i)
        CheckValue(item, instance, *instance.GetKaValue(i));
}

std::wstring ItemName(const CKaCustomAttribute& customAttribute, const std::wstring& holder) {
    return Concat(L"KaCustomAttribute '", customAttribute.TypeName(), L"' of ", holder);
}

} // namespace

void WarnOfWrite(const std::wstring& item, const wchar_t* reason) {
    LogFormatted(LOG_WARNING, L"Writing %s: %s.", {item, reason});
}

void CheckCustomAttributes(const CKaSchema& schema, const std::wstring& item, const CKaCommon& common) {
    for (unsigned int i = 0; i < common.GetKaCustomAttributeCount(); ++i) {
        const CKaCustomAttribute& customAttribute = *common.GetKaCustomAttribute(i);
        const std::wstring name = ItemName(customAttribute, item);
        const CKaClass* const found = schema.FindKaClass(customAttribute.GetTypeName(), KA_ANY_CLASS_TYPE);
        if (found == nullptr)
            WarnOfWrite(name, L"its class is not found by its name, so the file cannot be read");
        else if (found != customAttribute.GetKaClass())
            WarnOfWrite(name, L"its name is another class's, which the file is read back with");
        if (!customAttribute.InstanceID().empty())
            WarnOfWrite(name, L"its id is written, but not read");
        CheckInstance(name, customAttribute);
    }
}

void CheckSchemaCustomAttributes(const CKaSchema& schema, const std::wstring& item) {
    CheckCustomAttributes(schema, item, schema);
    for (unsigned int i = 0; i < schema.GetKaCustomAttributeCount(); ++i) {
        const CKaCustomAttribute& customAttribute = *schema.GetKaCustomAttribute(i);
        const CKaClass* const found = schema.FindKaClass(customAttribute.GetTypeName(), KA_ANY_CLASS_TYPE);
        if (found != nullptr && found->GetKaSchema() == &schema)
            WarnOfWrite(ItemName(customAttribute, item),
                        L"its class is the schema's own, which is not known yet when it is read, so the file "
                        L"cannot be read");
    }
}

} // namespace KAXML
