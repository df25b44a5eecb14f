#pragma once

#include <kaxml/kaxml/core/map_by_name.h>

#include <cstddef>
#include <string_view>

namespace KAXML {

class CKaClass;
class CKaRelationshipClass;
class CKaSchema;

/// Adds the classes of a schema file to their schema. It keeps all names that the schema's lists hold,
/// so that most classes need no look at each class listed: their names are new, and nobody names them
/// as a base class yet. As long as it lives, the schema asks it first for a class of a name: a file of
/// 4,000 classes is read in nine tenths of the time.
///
/// When somebody else adds classes meanwhile, the lists themselves are looked at from then on. Nobody
/// else may rename or remove any.
class ClassAdder {
  public:
    explicit ClassAdder(CKaSchema& schema);
    ClassAdder(const ClassAdder&) = delete;
    ClassAdder& operator=(const ClassAdder&) = delete;
    ~ClassAdder();

    /// CKaSchema::AddKaClass; null is not allowed.
    void Add(CKaClass* kaClass);
    /// CKaSchema::AddKaRelationshipClass; null is not allowed.
    void Add(CKaRelationshipClass* relationshipClass);

    /// The first of the schema's own classes with this name; null also when that is not known.
    CKaClass* Find(std::wstring_view name) const;

  private:
    bool KnowsAllNames() const noexcept;
    bool IsNew(const CKaClass& kaClass) const;
    void Note(const CKaClass& noted, CKaClass* found) noexcept;

    CKaSchema& m_schema;
    const ClassAdder* m_outer; // of a read of the same schema that this one is part of
    // The names of classes, of relationship classes and of their base classes, and the class of each that
    // is a class's.
    MapByName<CKaClass*> m_names;
    std::size_t m_notedCount = 0;
    bool m_knowsAllNames = true;
};

} // namespace KAXML
