#include <kaxml/kaschemaxml/schema/class_adder.h>

#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/make_room.h>

namespace KAXML {

namespace {

template <typename List, typename Class> void Append(List& list, Class* added) {
    MakeRoomForOne(list);
    list.emplace_back(added);
}

} // namespace

ClassAdder::ClassAdder(CKaSchema& schema) : m_schema(schema), m_outer(schema.m_adder) {
    for (const auto& kaClass : schema.m_classes)
        Note(*kaClass, kaClass.get());
    for (const auto& relationshipClass : schema.m_relationshipClasses)
        Note(*relationshipClass, nullptr);
    schema.m_adder = this;
}

ClassAdder::~ClassAdder() { m_schema.m_adder = m_outer; }

void ClassAdder::Add(CKaClass* kaClass) {
    if (IsNew(*kaClass)) {
        Append(m_schema.m_classes, kaClass);
        kaClass->SetKaSchema(&m_schema);
    } else {
        m_schema.AddKaClass(kaClass);
    }
    Note(*kaClass, kaClass);
}

void ClassAdder::Add(CKaRelationshipClass* relationshipClass) {
    if (IsNew(*relationshipClass))
        Append(m_schema.m_relationshipClasses, relationshipClass);
    else
        m_schema.AddKaRelationshipClass(relationshipClass);
    Note(*relationshipClass, nullptr);
}

CKaClass* ClassAdder::Find(std::wstring_view name) const {
    if (!KnowsAllNames())
        return nullptr;
    const auto found = m_names.find(name);
    const bool isKnown = found != m_names.end() && found->second != nullptr && found->second->TypeName() == name;
    return isKnown ? found->second : nullptr;
}

bool ClassAdder::KnowsAllNames() const noexcept {
    return m_knowsAllNames && m_notedCount == m_schema.m_classes.size() + m_schema.m_relationshipClasses.size();
}

bool ClassAdder::IsNew(const CKaClass& kaClass) const {
    return KnowsAllNames() && !m_names.contains(kaClass.TypeName());
}

// The first class of a name stays what is found by it.
void ClassAdder::Note(const CKaClass& noted, CKaClass* found) noexcept {
    ++m_notedCount;
    try {
        CKaClass*& ofName = m_names[noted.TypeName()];
        if (ofName == nullptr)
            ofName = found;
        if (*noted.GetBaseClass() != L'\0')
            m_names.try_emplace(noted.GetBaseClass(), nullptr);
    } catch (...) { // no memory: the lists themselves are looked at from now on
        m_knowsAllNames = false;
    }
}

} // namespace KAXML
