#pragma once

#include <kaxml/kaxml.h>

#include <string>
#include <utility>
#include <vector>

namespace plant {

/// Tells the instance reader what an element is: it looks the element's name up in the schema whose
/// namespace the element is in ("Plant.02.01"). Elements of another namespace, or of none, may
/// belong to any of the schemas.
class Factory final : public KAXML::IKaInstanceFactory {
  public:
    /// @param schemas  must outlive the factory and the instances it makes.
    explicit Factory(const std::vector<KAXML::CKaSchema*>& schemas);

    KAXML::CKaInstance* CreateKaInstance(const wchar_t* namespaceUri, const wchar_t* className,
                                         int* isRelationship) override;

  private:
    void AddNamespaces(KAXML::CKaSchema* schema);

    std::vector<KAXML::CKaSchema*> m_schemas;
    std::vector<std::pair<std::wstring, KAXML::CKaSchema*>> m_namespaces;
};

} // namespace plant
