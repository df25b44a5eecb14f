#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>

namespace KAXML {

class CKaClass;
class CKaRelationshipClass;
class CKaSchema;

/// Adds the classes of a schema file to their schema. It keeps all names that the schema's lists hold,
/// so that most classes need no look at each class listed: their names are new, and nobody names them
/// as a base class yet.
///
/// When somebody else adds classes meanwhile, it looks at the lists themselves from then on. Nobody else
/// may rename any.
class ClassAdder {
  public:
    explicit ClassAdder(CKaSchema& schema);

    /// CKaSchema::AddKaClass; null is not allowed.
    void Add(CKaClass* kaClass);
    /// CKaSchema::AddKaRelationshipClass; null is not allowed.
    void Add(CKaRelationshipClass* relationshipClass);

  private:
    bool IsNew(const CKaClass& kaClass) const;
    void Note(const CKaClass& kaClass) noexcept;
    std::size_t ListedCount() const noexcept;

    CKaSchema& m_schema;
    std::unordered_set<std::wstring> m_names; // of classes and of their base classes
    std::size_t m_notedCount = 0;
    bool m_knowsAllNames = true;
};

} // namespace KAXML
