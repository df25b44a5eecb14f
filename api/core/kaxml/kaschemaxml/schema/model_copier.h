#pragma once

#include <memory>
#include <unordered_map>

namespace KAXML {

class CKaClass;
class CKaCommon;
class CKaInstance;
class CKaProperty;
class CKaRelationshipClass;
class CKaSchema;
class KaValueBase;

/// Makes copies of a model independent of their originals.
///
/// Copy constructors duplicate what an object owns; the pointers inside the duplicates still lead
/// into the original. The copier is told which object stands for which (Register...), and then
/// turns every such pointer (class to schema, property to class, base class, instance to class,
/// value to property) to its counterpart (Relink...). Registering may fail, relinking cannot, so a
/// failed copy leaves its target alone.
class ModelCopier {
  public:
    /// `copy` stands for `original`.
    void Register(const void* original, void* copy);
    /// The copy of a class stands for it, and so do its properties.
    void RegisterClass(const CKaClass& original, CKaClass& copy);
    /// The same for everything a schema owns, referenced schemas included.
    void RegisterSchema(const CKaSchema& original, CKaSchema& copy);

    void RelinkCommon(CKaCommon& item) const noexcept;
    void RelinkClass(CKaClass& kaClass) const noexcept;
    void RelinkSchema(CKaSchema& schema) const noexcept;

    /// Duplicates of objects whose kind only the object knows. Objects of client classes become
    /// objects of the library's class that they derive from.
    static std::unique_ptr<CKaClass> Clone(const CKaClass& kaClass);
    static std::unique_ptr<KaValueBase> Clone(const KaValueBase& value);

    /// Exchange the fields of two objects.
    static void Swap(CKaCommon& a, CKaCommon& b) noexcept;
    static void Swap(CKaProperty& a, CKaProperty& b) noexcept;
    static void Swap(CKaClass& a, CKaClass& b) noexcept;
    static void Swap(CKaSchema& a, CKaSchema& b) noexcept;
    static void Swap(CKaInstance& a, CKaInstance& b) noexcept;

  private:
    template <typename T> void Turn(T*& pointer) const noexcept;
    void RelinkInstance(CKaInstance& instance) const noexcept;
    void RelinkValue(KaValueBase& value) const noexcept;
    void RelinkEnds(CKaRelationshipClass& relationshipClass) const noexcept;

    std::unordered_map<const void*, void*> m_copies;
};

} // namespace KAXML
