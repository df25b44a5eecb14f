#include <kaxml/kaschemaxml/xml/write_warnings.h>

#include <kaxml/kaschemaxml/schema/base_chain.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaschemaxml/xml/instance_write_warnings.h>
#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/log_message.h>

#include <algorithm>
#include <map>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

std::wstring ItemName(const CKaClass& kaClass) {
    const bool isRelationshipClass = dynamic_cast<const CKaRelationshipClass*>(&kaClass) != nullptr;
    return Concat(isRelationshipClass ? L"KaRelationshipClass '" : L"KaClass '", kaClass.TypeName(), L"'");
}

std::wstring ItemName(const CKaClass& kaClass, const CKaProperty& property) {
    return Concat(L"KaProperty '", property.GetPropertyName(), L"' of ", ItemName(kaClass));
}

using Classes = std::vector<const CKaClass*>;

// The classes of a schema in the order in which the writer puts them into the file, and so in the
// order in which a reader meets them.
class FileOrder {
  public:
    explicit FileOrder(const CKaSchema& schema) {
        for (const bool isCustomAttributeClass : {true, false}) {
            for (unsigned int i = 0; i < schema.GetKaClassCount(); ++i)
                Append(*schema.GetKaClassByIndex(i), isCustomAttributeClass);
            for (unsigned int i = 0; i < schema.GetKaRelationshipClassCount(); ++i)
                Append(*schema.GetKaRelationshipClass(i), isCustomAttributeClass);
        }
    }

    const Classes& All() const noexcept { return m_classes; }

    bool IsBefore(const CKaClass& first, const CKaClass& second) const {
        const auto firstPosition = m_positions.find(&first);
        const auto secondPosition = m_positions.find(&second);
        return firstPosition != m_positions.end() && secondPosition != m_positions.end() &&
               firstPosition->second < secondPosition->second;
    }

    // The class that a reader finds where the model finds this one: of several classes of a name, the
    // first in the file keeps it.
    const CKaClass* Find(const CKaClass& found) const {
        return m_positions.contains(&found) ? m_firsts.at(KindAndName(found)) : &found;
    }

  private:
    void Append(const CKaClass& kaClass, bool isCustomAttributeClass) {
        if ((kaClass.IsCustomAttributeClass() != 0) != isCustomAttributeClass)
            return;
        m_positions.emplace(&kaClass, m_classes.size());
        m_firsts.emplace(KindAndName(kaClass), &kaClass);
        m_classes.push_back(&kaClass);
    }

    static std::pair<bool, std::wstring_view> KindAndName(const CKaClass& kaClass) {
        return {dynamic_cast<const CKaRelationshipClass*>(&kaClass) != nullptr, kaClass.TypeName()};
    }

    Classes m_classes;
    std::map<const CKaClass*, std::size_t> m_positions;
    std::map<std::pair<bool, std::wstring_view>, const CKaClass*> m_firsts;
};

// The class of a full name as a reader would find it; null also for a malformed name or an unknown
// prefix.
CKaClass* FindQuietly(const CKaSchema& schema, std::wstring_view fullName, bool isRelationshipClass) {
    const std::size_t colon = fullName.find(L':');
    const std::wstring name(colon == std::wstring_view::npos ? fullName : fullName.substr(colon + 1));
    const CKaSchema* searched = &schema;
    if (colon != std::wstring_view::npos)
        searched = schema.FindReferencedSchemaByPrefix(std::wstring(fullName.substr(0, colon)).c_str());
    if (searched == nullptr)
        return nullptr;
    if (isRelationshipClass)
        if (CKaClass* const found = searched->FindKaRelationshipClass(name.c_str(), KA_ANY_CLASS_TYPE))
            return found;
    return searched->FindKaClass(name.c_str(), KA_ANY_CLASS_TYPE);
}

void CheckName(const std::wstring& item, const wchar_t* name, std::wstring_view kind) {
    if (NameIsValid(name, 0, kind) == 0)
        WarnOfWrite(item, L"its name is not valid, so the file cannot be read");
}

void CheckBounds(const std::wstring& item, const CKaProperty& property) {
    const std::wstring_view minOccurs = property.GetMinOccurs();
    const std::wstring_view maxOccurs = property.GetMaxOccurs();
    const auto makesArray = [](std::wstring_view bound) { return !bound.empty() && bound != L"1"sv; };
    const bool readsAsArray = makesArray(minOccurs) || makesArray(maxOccurs);
    if (minOccurs.empty() && !maxOccurs.empty())
        WarnOfWrite(item, L"it has an upper bound only and is read back as an array with minOccurs '0'");
    else if (readsAsArray != (property.IsArray() != 0))
        WarnOfWrite(item, readsAsArray ? L"it is read back as an array" : L"it is read back as a single value");
}

void CheckType(const CKaSchema& schema, const std::wstring& item, const CKaProperty& property) {
    const bool isStruct = CKaSchema::IsPrimitiveType(property.GetTypeName()) == 0;
    if (*property.GetTypeName() == L'\0')
        WarnOfWrite(item, L"it has no type, so the file cannot be read");
    else if (isStruct && schema.FindKaClass(property.GetTypeName(), KA_ANY_CLASS_TYPE) == nullptr)
        WarnOfWrite(item, L"no class has the name of its type, so the file cannot be read");
    else if (isStruct != (property.IsStruct() != 0))
        WarnOfWrite(item, L"whether it is a struct follows from its type when it is read back");
}

bool HasOwnProperty(const CKaClass& kaClass, unsigned int count, std::wstring_view name) {
    for (unsigned int i = 0; i < count; ++i)
        if (kaClass.GetKaProperty(i)->GetPropertyName() == name)
            return true;
    return false;
}

// Whether a reader has met a property of this name before the one at the index.
bool IsRepeated(const CKaSchema& schema, const CKaClass& kaClass, unsigned int index, const Classes& bases) {
    const wchar_t* const name = kaClass.GetKaProperty(index)->GetPropertyName();
    return HasOwnProperty(kaClass, index, name) ||
           std::any_of(bases.begin(), bases.end(), [&schema, name](const CKaClass* base) {
               return base->GetKaSchema() == &schema ? HasOwnProperty(*base, base->GetKaPropertyCount(), name)
                                                     : base->HasProperty(name);
           });
}

void CheckProperty(const CKaSchema& schema, const CKaClass& kaClass, unsigned int index, const Classes& bases,
                   const KnownWhenRead& known) {
    const CKaProperty& property = *kaClass.GetKaProperty(index);
    const std::wstring item = ItemName(kaClass, property);
    CheckName(item, property.GetPropertyName(), kClassNameKind);
    CheckType(schema, item, property);
    if (IsRepeated(schema, kaClass, index, bases))
        WarnOfWrite(item, L"the class or a base class has a property of the same name, so the file cannot be read");
    CheckBounds(item, property);
    CheckCustomAttributes(schema, item, property, known);
}

// The base class that a reader of the file finds; null when there is none, and for classes of other
// schemas.
const CKaClass* BaseWhenRead(const CKaSchema& schema, const CKaClass& kaClass, const FileOrder& order) {
    if (*kaClass.GetBaseClass() == L'\0' || kaClass.GetKaSchema() != &schema)
        return nullptr;
    const bool isRelationshipClass = dynamic_cast<const CKaRelationshipClass*>(&kaClass) != nullptr;
    const CKaClass* const named = FindQuietly(schema, kaClass.GetBaseClass(), isRelationshipClass);
    return named == nullptr ? nullptr : order.Find(*named);
}

// The class's bases when it is read, up to the first of another schema, or to the class itself.
Classes BasesWhenRead(const CKaSchema& schema, const CKaClass& kaClass, const FileOrder& order) {
    Classes bases;
    const CKaClass* base = BaseWhenRead(schema, kaClass, order);
    while (base != nullptr && bases.size() <= order.All().size()) {
        bases.push_back(base);
        base = base == &kaClass ? nullptr : BaseWhenRead(schema, *base, order);
    }
    return bases;
}

// The base class in the model; null when it does not find it.
const CKaClass* BaseInModel(const CKaClass& kaClass) {
    try {
        return kaClass.GetBaseKaClass();
    } catch (const KAXMLLogicError&) {
        return nullptr;
    }
}

void CheckBaseClass(const CKaSchema& schema, const CKaClass& kaClass, const Classes& bases, const FileOrder& order) {
    if (*kaClass.GetBaseClass() == L'\0')
        return;
    const std::wstring item = ItemName(kaClass);
    if (bases.empty()) {
        WarnOfWrite(item, L"its base class is not found by its name, so the file cannot be read");
        return;
    }
    const bool isInFile = bases.front()->GetKaSchema() == &schema;
    const bool isRelationshipClass = dynamic_cast<const CKaRelationshipClass*>(&kaClass) != nullptr;
    const CKaClass* const base = BaseInModel(kaClass);
    if (bases.back() == &kaClass)
        WarnOfWrite(item, L"the name of its base class leads back to itself, so the file cannot be read");
    else if (isRelationshipClass && isInFile && !order.IsBefore(*bases.front(), kaClass))
        WarnOfWrite(item, L"its base class stands later in the file, so the file cannot be read");
    else if (base == nullptr)
        WarnOfWrite(item, L"its base classes cannot be followed");
    else if (bases.front() != base)
        WarnOfWrite(item, L"the name of its base class is another class's, which the file is read back with");
}

// Ends are written with their classes' names relative to the schema.
void CheckClassOfEnd(const CKaSchema& schema, const std::wstring& item, const std::wstring& className) {
    CKaClass* const found = FindQuietly(schema, className, false);
    if (found != nullptr && schema.GetRelativeClassName(found) != className)
        WarnOfWrite(item, Concat(L"the class '", className, L"' of an end is written and read back as '",
                                 schema.GetRelativeClassName(found), L"'")
                              .c_str());
}

void CheckEnd(const CKaSchema& schema, const std::wstring& item, const CKaCommon& end, const KnownWhenRead& known) {
    if (*end.GetDescription() != L'\0')
        WarnOfWrite(item, L"its description is not written");
    CheckCustomAttributes(schema, item, end, known);
}

void CheckEnds(const CKaSchema& schema, const CKaRelationshipClass& relationshipClass, const KnownWhenRead& known) {
    const std::wstring item = ItemName(relationshipClass);
    const CKaSource& source = relationshipClass.m_source;
    CheckClassOfEnd(schema, item, source.m_className);
    for (const std::wstring& className : relationshipClass.m_targets.m_classNames)
        CheckClassOfEnd(schema, item, className);
    if (source.m_className == KAXML_ANY_CLASS)
        WarnOfWrite(item, L"its source class 'KaObject' is not written");
    if (!source.m_keyVector.empty() && (source.m_className.empty() || source.m_className == KAXML_ANY_CLASS))
        WarnOfWrite(item, L"the keys of its source are not written, because no class is");
    const std::vector<std::wstring>& names = relationshipClass.m_targets.m_classNames;
    if (std::any_of(names.begin(), names.end(), [](const std::wstring& name) { return name.empty(); }))
        WarnOfWrite(item, L"a target without a class name is not written");
    CheckEnd(schema, L"Source of " + item, source, known);
    CheckEnd(schema, L"Target of " + item, relationshipClass.m_targets, known);
}

void CheckClass(const CKaSchema& schema, const CKaClass& kaClass, const FileOrder& order) {
    const std::wstring item = ItemName(kaClass);
    // All classes have their names by the time their contents are read, in the order of the file.
    const KnownWhenRead known = {
        [&order](const CKaClass& named) { return order.Find(named); },
        [&](const CKaClass& other) { return other.GetKaSchema() != &schema || order.IsBefore(other, kaClass); }};
    CheckName(item, kaClass.GetTypeName(), kClassNameKind);
    const Classes bases = BasesWhenRead(schema, kaClass, order);
    CheckBaseClass(schema, kaClass, bases, order);
    CheckCustomAttributes(schema, item, kaClass, known);
    for (unsigned int i = 0; i < kaClass.GetKaPropertyCount(); ++i)
        CheckProperty(schema, kaClass, i, bases, known);
    const auto* const relationshipClass = dynamic_cast<const CKaRelationshipClass*>(&kaClass);
    if (relationshipClass == nullptr)
        return;
    if (kaClass.IsStruct() != 0)
        WarnOfWrite(item, L"its struct flag is not written");
    CheckEnds(schema, *relationshipClass, known);
}

// That the bases of a class, or of one that it names, cannot be followed is no reason not to write.
void CheckClassQuietly(const CKaSchema& schema, const CKaClass& kaClass, const FileOrder& order) {
    try {
        CheckClass(schema, kaClass, order);
    } catch (const KAXMLLogicError&) {
        WarnOfWrite(ItemName(kaClass), L"its base classes cannot be followed");
    }
}

// Two classes of one list under one name, and lists whose order the file does not keep.
template <typename GetClass> void CheckList(const std::wstring& schemaItem, unsigned int count, GetClass getClass) {
    std::map<std::wstring_view, int> names;
    bool ordinarySeen = false;
    bool orderChanges = false;
    for (unsigned int i = 0; i < count; ++i) {
        const CKaClass& kaClass = *getClass(i);
        if (names[kaClass.TypeName()]++ == 1)
            WarnOfWrite(ItemName(kaClass), L"another class has the same name, so one is read back under a new one");
        orderChanges = orderChanges || (ordinarySeen && kaClass.IsCustomAttributeClass() != 0);
        ordinarySeen = ordinarySeen || kaClass.IsCustomAttributeClass() == 0;
    }
    if (orderChanges)
        WarnOfWrite(schemaItem, L"custom attribute classes are written first, so the order of its classes changes");
}

void CheckOwnNames(const CKaSchema& schema, const std::wstring& item) {
    CheckName(item, schema.GetSchemaName(), kSchemaNameKind);
    CheckName(L"Prefix of " + item, schema.GetSchemaPrefix(), kSchemaNameKind);
    for (const std::wstring_view name : {schema.GetSchemaName(), schema.GetSchemaPrefix()})
        if (name == L"temporary"sv)
            WarnOfWrite(item, L"'temporary' counts as a missing name or prefix, so the file cannot be read");
}

void CheckVersion(const std::wstring& item, const std::wstring& version) {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::wstring canonical;
    CKaSchema::ParseVersionString(version.c_str(), &major, &minor);
    CKaSchema::FormatVersionString(canonical, major, minor);
    if (version != canonical)
        WarnOfWrite(item, Concat(L"its version '", version, L"' is read back as '", canonical, L"'").c_str());
}

void CheckReferences(const CKaSchema& schema) {
    std::vector<const CKaSchemaReference*> earlier;
    CKaReferencedSchemaIterator references(const_cast<CKaSchema*>(&schema));
    for (const CKaSchemaReference* entry = references.Begin(); entry != nullptr; entry = references.Next()) {
        const std::wstring item = Concat(L"KaSchemaReference '", entry->m_schemaName, L"'");
        CheckName(item, entry->m_schemaName.c_str(), kSchemaNameKind);
        CheckName(L"Prefix of " + item, entry->m_schemaPrefix.c_str(), kSchemaNameKind);
        const bool isRepeated = std::any_of(earlier.begin(), earlier.end(), [entry](const CKaSchemaReference* other) {
            return other->m_schemaName == entry->m_schemaName && other->m_versionString >= entry->m_versionString;
        });
        if (isRepeated || entry->m_schemaName == schema.GetSchemaName())
            WarnOfWrite(item, L"the schema is known by then when the file is read, so the reference is not added");
        earlier.push_back(entry);
        CheckVersion(item, entry->m_versionString);
    }
}

} // namespace

void LogWriteWarnings(const CKaSchema& schema) {
    if (!IsLogging())
        return;
    const std::wstring item = Concat(L"KaSchema '", schema.GetSchemaName(), L"'");
    CheckOwnNames(schema, item);
    CheckReferences(schema);
    // The schema's own custom attributes are read before any of its classes.
    const auto isForeign = [&schema](const CKaClass& kaClass) { return kaClass.GetKaSchema() != &schema; };
    const auto findForeign = [&](const CKaClass& named) { return isForeign(named) ? &named : nullptr; };
    CheckCustomAttributes(schema, item, schema, {findForeign, isForeign});
    CheckList(item, schema.GetKaClassCount(), [&](unsigned int i) { return schema.GetKaClassByIndex(i); });
    CheckList(item, schema.GetKaRelationshipClassCount(),
              [&](unsigned int i) { return schema.GetKaRelationshipClass(i); });
    const FileOrder order(schema);
    for (const CKaClass* const kaClass : order.All())
        CheckClassQuietly(schema, *kaClass, order);
}

} // namespace KAXML
