#include <kaxml/kaxml/reader/instance_filler.h>

#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/instance/recycled_values.h>
#include <kaxml/kaschemaxml/instance/value_kind.h>
#include <kaxml/kaschemaxml/schema/base_chain.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/errors.h>
#include <kaxml/platform/numbers.h>
#include <kaxml/platform/xml_name.h>

namespace KAXML {

namespace {

// Searching the lists this often takes about as long as making the tables.
constexpr int kSearchesBeforeTables = 64;

} // namespace

InstanceFiller::Tables::Tables(const CKaInstance& instance) {
    for (BaseChain chain(instance.GetKaClass()); chain.Current() != nullptr; chain.Next())
        for (unsigned int i = 0; i < chain.Current()->GetKaPropertyCount(); ++i) {
            CKaProperty* const property = chain.Current()->GetKaProperty(i);
            properties.emplace(property->PropertyName(), property);
        }
    for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i)
        values.emplace(instance.GetKaValue(i)->PropertyName(), instance.GetKaValue(i));
}

bool InstanceFiller::UsesTables() {
    if (!m_tables && ++m_searches > kSearchesBeforeTables)
        m_tables = std::make_unique<Tables>(m_instance);
    return m_tables != nullptr;
}

InstanceFiller::InstanceFiller(CKaInstance* instance, KnownProperties& properties, ValueStock& stock)
    : m_instance(*instance), m_properties(properties), m_known(properties.Use(*instance->GetKaClass())),
      m_stock(stock) {
    m_instance.m_values.reserve(m_known.valueCount);
}

InstanceFiller::~InstanceFiller() { m_known.valueCount = m_firstValues; }

CKaProperty* InstanceFiller::FindProperty(const XmlName& name) {
    m_found = m_properties.Find(m_known, name);
    return m_found.property != nullptr ? m_found.property : SearchProperty(name);
}

CKaProperty* InstanceFiller::SearchProperty(const XmlName& name) {
    if (!UsesTables())
        return (m_found = m_properties.Search(m_known, name)).property;
    const auto found = m_tables->properties.find(name.localName);
    m_found = {found != m_tables->properties.end() ? found->second : nullptr, kValues};
    return m_found.property;
}

// Whether the instance certainly holds no value of the property's name: whatever it holds is a first
// value of another property. The tables know all values, so with them there is no other way in.
bool InstanceFiller::IsFirstValue() noexcept {
    if (m_tables || m_instance.GetKaValueCount() != m_firstValues || m_found.number >= kValues ||
        m_hasFirstValue[m_found.number])
        return false;
    m_hasFirstValue[m_found.number] = true;
    ++m_firstValues;
    return true;
}

void InstanceFiller::AddValue(std::unique_ptr<KaValueBase> value) {
    if (IsFirstValue()) {
        m_instance.Append(value.get());
    } else if (UsesTables()) {
        AddByTables(std::move(value));
        return;
    } else {
        m_instance.AddKaValue(value.get());
    }
    static_cast<void>(value.release());
}

void InstanceFiller::SetText(const std::wstring& name, std::wstring& text) {
    if (IsFirstValue()) {
        std::unique_ptr<CKaValue> value = m_stock.Get(m_found.property);
        value->SetValue(std::move(text));
        m_instance.Append(value.get());
        static_cast<void>(value.release());
    } else if (UsesTables()) {
        SetTextByTables(name, text);
    } else {
        m_instance.SetText(m_found.property, name.c_str(), text);
    }
}

std::wstring InstanceFiller::NumberedName(const std::wstring& base) {
    int& number = m_tables->numbers.emplace(base, 1).first->second;
    std::wstring name;
    do {
        name = base + FormatInt(++number);
    } while (m_tables->values.contains(name));
    return name;
}

void InstanceFiller::AddByTables(std::unique_ptr<KaValueBase> value) {
    if (m_tables->values.contains(value->PropertyName()))
        value->SetPropertyName(NumberedName(value->PropertyName()));
    m_instance.Append(value.get());
    KaValueBase* const added = value.release();
    m_tables->values.emplace(added->PropertyName(), added);
}

void InstanceFiller::SetTextByTables(std::wstring_view name, const std::wstring& text) {
    if (!m_tables->values.contains(name))
        AddByTables(m_stock.Get(m_found.property));
    CKaValue* const primitive = AsPrimitive(m_tables->values.at(name));
    if (primitive == nullptr)
        throw KAXMLLogicError(L"Attempted to set primitive value into a non-primitive property");
    primitive->SetValue(text);
}

} // namespace KAXML
