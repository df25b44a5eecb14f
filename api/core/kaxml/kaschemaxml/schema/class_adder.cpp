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

ClassAdder::ClassAdder(CKaSchema& schema) : m_schema(schema) {
    for (const auto& kaClass : schema.m_classes)
        Note(*kaClass);
    for (const auto& relationshipClass : schema.m_relationshipClasses)
        Note(*relationshipClass);
}

void ClassAdder::Add(CKaClass* kaClass) {
    if (IsNew(*kaClass)) {
        Append(m_schema.m_classes, kaClass);
        kaClass->SetKaSchema(&m_schema);
    } else {
        m_schema.AddKaClass(kaClass);
    }
    Note(*kaClass);
}

void ClassAdder::Add(CKaRelationshipClass* relationshipClass) {
    if (IsNew(*relationshipClass))
        Append(m_schema.m_relationshipClasses, relationshipClass);
    else
        m_schema.AddKaRelationshipClass(relationshipClass);
    Note(*relationshipClass);
}

bool ClassAdder::IsNew(const CKaClass& kaClass) const {
    return m_knowsAllNames && m_notedCount == ListedCount() && !m_names.contains(kaClass.TypeName());
}

std::size_t ClassAdder::ListedCount() const noexcept {
    return m_schema.m_classes.size() + m_schema.m_relationshipClasses.size();
}

void ClassAdder::Note(const CKaClass& kaClass) noexcept {
    ++m_notedCount;
    try {
        m_names.insert(kaClass.TypeName());
        if (*kaClass.GetBaseClass() != L'\0')
            m_names.insert(kaClass.GetBaseClass());
    } catch (...) { // no memory: the lists themselves are looked at from now on
        m_knowsAllNames = false;
    }
}

} // namespace KAXML
