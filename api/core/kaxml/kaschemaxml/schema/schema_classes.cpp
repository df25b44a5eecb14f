#include <kaxml/kaschemaxml/schema/class_adder.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/free_name.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/make_room.h>
#include <kaxml/kaxml/core/same_name.h>

#include <algorithm>
#include <string_view>

namespace KAXML {

namespace {

template <typename Class> using ClassList = std::vector<std::unique_ptr<Class>>;

// The name with the first number from 2 on that makes it unique.
template <typename Class> std::wstring NumberedName(const ClassList<Class>& classes, const std::wstring& base) {
    FreeName name(base, classes.size());
    for (const auto& kaClass : classes)
        name.Exclude(kaClass->TypeName());
    return name.Get();
}

// The steps of the two iterations, which differ in the list only.
template <typename Class>
void* Iterate(const ClassList<Class>& classes, void* (*callback)(Class*, void*), void* context) {
    for (const auto& kaClass : classes)
        if (void* const result = callback(kaClass.get(), context))
            return result;
    return nullptr;
}

const std::wstring_view& RequireName(const void* context, const wchar_t* operation) {
    if (context == nullptr)
        throw KAXMLRuntimeError(std::wstring(L"NULL context passed ot ") + operation);
    return *static_cast<const std::wstring_view*>(context);
}

template <typename Class> Class* IfMatches(Class* found, unsigned long classTypeMask) {
    return found != nullptr && found->MatchesClassType(classTypeMask) ? found : nullptr;
}

} // namespace

// One look at each class of the list answers all questions: schema files name thousands of classes.
template <typename Class> CKaSchema::PlaceInList CKaSchema::FindPlace(const Classes<Class>& classes, const Class* added,
                                                                      const std::wstring& name) {
    PlaceInList place{false, classes.size()};
    for (std::size_t i = 0; i < classes.size(); ++i) {
        const Class* const listed = classes[i].get();
        if (listed == added)
            throw KAXMLLogicError(L"Attempted to add KaClass '" + added->m_typeName +
                                  L"' to a KaSchema that already holds it");
        place.isNameTaken = place.isNameTaken || IsSameName(listed->m_typeName, name);
        if (place.index == classes.size() && IsSameName(listed->m_baseClassName, name))
            place.index = i;
    }
    return place;
}

template <typename Class> void CKaSchema::AddClass(Classes<Class>& classes, Class* added) {
    PlaceInList place = FindPlace<Class>(classes, added, added->m_typeName);
    std::wstring name;
    if (place.isNameTaken) {
        name = NumberedName(classes, added->m_typeName);
        place = FindPlace<Class>(classes, added, name);
    }
    MakeRoomForOne(classes);
    if (!name.empty())
        added->SetTypeName(name);
    classes.emplace(classes.begin() + static_cast<std::ptrdiff_t>(place.index), added);
}

void CKaSchema::AddKaClass(CKaClass* kaClass) {
    if (kaClass == nullptr)
        return;
    AddClass(m_classes, kaClass);
    kaClass->SetKaSchema(this);
}

void CKaSchema::AddKaRelationshipClass(CKaRelationshipClass* relationshipClass) {
    if (relationshipClass != nullptr)
        AddClass(m_relationshipClasses, relationshipClass);
}

CKaClass* CKaSchema::CreateKaClass(const wchar_t* name, const wchar_t* description, unsigned long classType) {
    auto kaClass = std::make_unique<CKaClass>(name, this, nullptr);
    kaClass->SetDescription(description);
    kaClass->SetClassType(classType);
    AddKaClass(kaClass.get());
    return kaClass.release();
}

CKaRelationshipClass* CKaSchema::CreateKaRelationshipClass(const wchar_t* name, const wchar_t* description,
                                                           unsigned long classType) {
    auto relationshipClass = std::make_unique<CKaRelationshipClass>(name, this, nullptr);
    relationshipClass->SetDescription(description);
    relationshipClass->SetClassType(classType);
    AddKaRelationshipClass(relationshipClass.get());
    return relationshipClass.release();
}

unsigned int CKaSchema::GetKaClassCount() const noexcept { return static_cast<unsigned int>(m_classes.size()); }

CKaClass* CKaSchema::GetKaClassByIndex(unsigned int index) const {
    RequireIndex(index, m_classes.size(), L"CKaSchema::GetKaClassByIndex");
    return m_classes[index].get();
}

unsigned int CKaSchema::GetKaRelationshipClassCount() const noexcept {
    return static_cast<unsigned int>(m_relationshipClasses.size());
}

CKaRelationshipClass* CKaSchema::GetKaRelationshipClass(unsigned int index) const {
    RequireIndex(index, m_relationshipClasses.size(), L"CKaSchema::GetKaRelationshipClass");
    return m_relationshipClasses[index].get();
}

void* CKaSchema::IterateOverAllClasses(KaClassCallback callback, void* context, int includeReferencedSchemas) const {
    if (callback == nullptr)
        throw KAXMLInvalidArgument(L"CKaSchema::IterateOverClasses called with NULL callback!");
    void* result = Iterate(m_classes, callback, context);
    for (std::size_t i = 0; includeReferencedSchemas != 0 && result == nullptr && i < m_references.size(); ++i)
        if (const CKaSchema* const referenced = m_references[i].m_pKaSchema)
            result = referenced->IterateOverAllClasses(callback, context, includeReferencedSchemas);
    return result;
}

void* CKaSchema::IterateOverAllRelationshipClasses(KaRelationshipClassCallback callback, void* context,
                                                   int includeReferencedSchemas) const {
    if (callback == nullptr)
        throw KAXMLInvalidArgument(L"CKaSchema::IterateOverRelationshipClasses called with NULL callback!");
    void* result = Iterate(m_relationshipClasses, callback, context);
    for (std::size_t i = 0; includeReferencedSchemas != 0 && result == nullptr && i < m_references.size(); ++i)
        if (const CKaSchema* const referenced = m_references[i].m_pKaSchema)
            result = referenced->IterateOverAllRelationshipClasses(callback, context, includeReferencedSchemas);
    return result;
}

void* CKaSchema::findKaClassCallback(CKaClass* kaClass, void* context) {
    return IsSameName(kaClass->m_typeName, RequireName(context, L"findKaClassCallback")) ? kaClass : nullptr;
}

void* CKaSchema::findKaRelationshipClassCallback(CKaRelationshipClass* relationshipClass, void* context) {
    const std::wstring_view& name = RequireName(context, L"findKaRelationshipClassCallback");
    return IsSameName(relationshipClass->m_typeName, name) ? relationshipClass : nullptr;
}

CKaClass* CKaSchema::FindKaClass(const wchar_t* name, unsigned long classTypeMask) const {
    std::wstring_view wanted(name == nullptr ? L"" : name);
    if (m_adder != nullptr && name != nullptr)
        if (CKaClass* const found = m_adder->Find(wanted))
            return IfMatches(found, classTypeMask);
    void* const context = name == nullptr ? nullptr : &wanted;
    return IfMatches(static_cast<CKaClass*>(IterateOverAllClasses(&findKaClassCallback, context, 1)), classTypeMask);
}

CKaRelationshipClass* CKaSchema::FindKaRelationshipClass(const wchar_t* name, unsigned long classTypeMask) const {
    std::wstring_view wanted(name == nullptr ? L"" : name);
    void* const context = name == nullptr ? nullptr : &wanted;
    void* const found = IterateOverAllRelationshipClasses(&findKaRelationshipClassCallback, context, 1);
    return IfMatches(static_cast<CKaRelationshipClass*>(found), classTypeMask);
}

void CKaSchema::RemoveAllClasses() noexcept {
    for (const auto& relationshipClass : m_relationshipClasses) {
        const CKaClass* const base = relationshipClass->m_pBaseClass;
        const auto isBase = [base](const auto& kaClass) { return kaClass.get() == base; };
        if (std::any_of(m_classes.begin(), m_classes.end(), isBase))
            relationshipClass->m_pBaseClass = nullptr;
    }
    m_classes.clear();
}

CKaClassIterator::CKaClassIterator(CKaSchema* schema) : m_pKaSchema(schema) {
    if (schema == nullptr)
        throw KAXMLRuntimeError(L"Called CKaClassIterator::CKaClassIterator with NULL pKaSchema");
}

CKaClass* CKaClassIterator::Begin() {
    m_position = 0;
    return m_pKaSchema->GetKaClassCount() > 0 ? m_pKaSchema->GetKaClassByIndex(0) : nullptr;
}

CKaClass* CKaClassIterator::Next() {
    if (m_position < m_pKaSchema->GetKaClassCount())
        ++m_position;
    return m_position < m_pKaSchema->GetKaClassCount() ? m_pKaSchema->GetKaClassByIndex(m_position) : nullptr;
}

} // namespace KAXML
