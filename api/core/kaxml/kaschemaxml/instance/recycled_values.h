#pragma once

#include <memory>
#include <vector>

namespace KAXML {

class CKaProperty;
class CKaValue;
class KaValueBase;

/// The pool of primitive values behind CKaSchema's operations, one for the process. The last value
/// given back is the first handed out again.
///
/// It outlives every object of a client, static ones included: when the library is unloaded the
/// values are freed and the pool is closed, and what comes back later is deleted at once.
class RecycledValues {
  public:
    static CKaValue* Get(CKaProperty* property);
    static void Recycle(CKaValue* value);
    static void Free();

    /// What instances and arrays do with the values they drop: gives primitive ones to the pool, and
    /// deletes the others and what the pool cannot take. The list is then empty.
    static void DropAll(std::vector<std::unique_ptr<KaValueBase>>& values) noexcept;

  private:
    static void TakeOver(CKaValue* value);
    static void TakeOverAll(std::vector<std::unique_ptr<KaValueBase>>& values);
};

} // namespace KAXML
