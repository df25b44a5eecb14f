#include <kaxml/kaschemaxml/schema/common.h>

#include <kaxml/kaschemaxml/instance/custom_attribute.h>
#include <kaxml/kaschemaxml/schema/model_copier.h>
#include <kaxml/kaxml/core/arguments.h>

#include <algorithm>

namespace KAXML {

namespace {

constexpr int kKeyMissing = 0x8000;

} // namespace

CKaCommon::CKaCommon() = default;
CKaCommon::CKaCommon(const wchar_t* description) : m_description(description == nullptr ? L"" : description) {}
CKaCommon::CKaCommon(const std::wstring& description) : m_description(description) {}

CKaCommon::CKaCommon(const CKaCommon& other)
    : m_description(other.m_description), m_extendedInfoTexts(other.m_extendedInfoTexts),
      m_extendedInfoNumbers(other.m_extendedInfoNumbers) {
    m_customAttributes.reserve(other.m_customAttributes.size());
    for (const auto& customAttribute : other.m_customAttributes)
        m_customAttributes.push_back(std::make_unique<CKaCustomAttribute>(*customAttribute));
}

CKaCommon& CKaCommon::operator=(const CKaCommon& other) {
    if (this != &other) {
        CKaCommon copy(other);
        ModelCopier::Swap(*this, copy);
    }
    return *this;
}

CKaCommon::CKaCommon(CKaCommon&& other) noexcept { ModelCopier::Swap(*this, other); }

CKaCommon& CKaCommon::operator=(CKaCommon&& other) noexcept {
    ModelCopier::Swap(*this, other);
    return *this;
}

CKaCommon::~CKaCommon() = default;

const wchar_t* CKaCommon::GetDescription() const noexcept { return m_description.c_str(); }

void CKaCommon::SetDescription(const wchar_t* description) {
    m_description = RequireNotNull(description, L"description", L"CKaCommon::SetDescription");
}

void CKaCommon::SetDescription(const std::wstring& description) { m_description = description; }

void CKaCommon::AddKaCustomAttribute(CKaCustomAttribute* customAttribute) {
    if (customAttribute == nullptr)
        return;
    const auto isSame = [customAttribute](const auto& held) { return held.get() == customAttribute; };
    if (std::any_of(m_customAttributes.begin(), m_customAttributes.end(), isSame))
        throw KAXMLLogicError(L"Attempted to add a KaCustomAttribute that is already attached to this item");
    m_customAttributes.emplace_back();
    m_customAttributes.back().reset(customAttribute);
}

unsigned int CKaCommon::GetKaCustomAttributeCount() const noexcept {
    return static_cast<unsigned int>(m_customAttributes.size());
}

CKaCustomAttribute* CKaCommon::GetKaCustomAttribute(unsigned int index) const {
    RequireIndex(index, m_customAttributes.size(), L"CKaCommon::GetKaCustomAttribute");
    return m_customAttributes[index].get();
}

CKaCustomAttribute* CKaCommon::FindKaCustomAttributeByName(const wchar_t* className) const {
    const std::wstring_view name(RequireNotNull(className, L"className", L"CKaCommon::FindKaCustomAttributeByName"));
    for (const auto& customAttribute : m_customAttributes)
        if (customAttribute->TypeName() == name)
            return customAttribute.get();
    return nullptr;
}

void CKaCommon::SetExtendedInfo(const std::wstring& key, const std::wstring& value) {
    m_extendedInfoTexts.insert_or_assign(key, value);
}

void CKaCommon::SetExtendedInfo(const std::wstring& key, unsigned long value) {
    m_extendedInfoNumbers.insert_or_assign(key, RequireUInt32(value, L"CKaCommon::SetExtendedInfo"));
}

int CKaCommon::GetExtendedInfo(const std::wstring& key, std::wstring& value) const {
    const auto found = m_extendedInfoTexts.find(key);
    if (found == m_extendedInfoTexts.end())
        return kKeyMissing;
    value = found->second;
    return 0;
}

int CKaCommon::GetExtendedInfo(const std::wstring& key, unsigned long* value) const {
    RequireNotNull(value, L"value", L"CKaCommon::GetExtendedInfo");
    const auto found = m_extendedInfoNumbers.find(key);
    if (found == m_extendedInfoNumbers.end())
        return kKeyMissing;
    *value = found->second;
    return 0;
}

} // namespace KAXML
