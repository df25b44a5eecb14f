#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/instance/recycled_values.h>
#include <kaxml/kaschemaxml/schema/model_copier.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/make_room.h>
#include <kaxml/platform/numbers.h>

namespace KAXML {

KaArrayValue::KaArrayValue(CKaProperty* property) : KaValueBase(property) {}

KaArrayValue::KaArrayValue(const KaArrayValue& other) : KaValueBase(other) {
    m_members.reserve(other.m_members.size());
    for (const auto& member : other.m_members) {
        m_members.push_back(member ? ModelCopier::Clone(*member) : nullptr);
        if (m_members.back())
            m_members.back()->m_isHeld = true;
    }
}

KaArrayValue& KaArrayValue::operator=(const KaArrayValue& other) {
    if (this != &other) {
        KaArrayValue copy(other);
        KaValueBase::operator=(copy);
        m_members.swap(copy.m_members);
    }
    return *this;
}

KaArrayValue::~KaArrayValue() { RecycledValues::DropAll(m_members); }

void KaArrayValue::PushBack(KaValueBase* member) {
    if (member != nullptr && member->m_isHeld)
        throw KAXMLLogicError(Concat(L"Attempted to add a member to array '", PropertyName(),
                                     L"' that an array or instance already holds"));
    MakeRoomForOne(m_members);
    m_members.emplace_back();
    m_members.back().reset(member);
    if (member != nullptr)
        member->m_isHeld = true;
    SetNotNull();
}

unsigned int KaArrayValue::GetLength() const noexcept { return static_cast<unsigned int>(m_members.size()); }

KaValueBase* KaArrayValue::GetValue(unsigned int index) const {
    RequireIndex(index, m_members.size(), L"KaArrayValue::GetValue");
    return m_members[index].get();
}

CKaInstance* KaArrayValue::GetStructInstance(unsigned int index, const wchar_t* className) const {
    const auto complain = [this, index](std::wstring_view problem) -> KAXMLLogicError {
        return KAXMLLogicError(
            Concat(FormatInt(index), L"-th element of '", GetProperty()->GetTypeName(), L"' ", problem));
    };
    const auto* const member = dynamic_cast<const KaStructValue*>(GetValue(index));
    if (member == nullptr)
        throw complain(L"does not contain an KaStructValue.");
    CKaInstance* const instance = member->GetValue();
    if (instance == nullptr)
        throw complain(L"contains a NULL KaStructValue.");
    if (className != nullptr && instance->TypeName() != className)
        throw complain(Concat(L"contains an instance of KaClass '", instance->TypeName(),
                              L"' rather than the expected '", className, L"'."));
    return instance;
}

} // namespace KAXML
