#pragma once

namespace KAXML {

class CKaProperty;
class CKaValue;

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

    /// What containers do with a value they drop: gives it to the pool, or deletes it when the pool
    /// cannot take it.
    static void Drop(CKaValue* value) noexcept;

  private:
    static void TakeOver(CKaValue* value);
};

} // namespace KAXML
