#pragma once

#include <cstddef>
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

    /// What instances and arrays do with the values they drop: gives primitive ones to the pool, those
    /// in arrays and structs among them, and deletes the others and what the pool cannot take. The
    /// list is then empty.
    static void DropAll(std::vector<std::unique_ptr<KaValueBase>>& values) noexcept;

  private:
    friend class ValueStock;

    static void Take(std::vector<std::unique_ptr<CKaValue>>& values, std::size_t count);
    static void PutBack(std::vector<std::unique_ptr<CKaValue>>& values) noexcept;
    static void Renew(CKaValue& value, CKaProperty* property);
    static void TakeOverAll(std::vector<std::unique_ptr<CKaValue>>& pooled,
                            std::vector<std::unique_ptr<KaValueBase>>& values);
};

/// Values that a parse takes from the pool ahead of need, so that one lock serves many of them. The last
/// one taken is the first handed out, and what is left goes back in the end.
class ValueStock {
  public:
    ValueStock();
    ValueStock(const ValueStock&) = delete;
    ValueStock& operator=(const ValueStock&) = delete;
    ~ValueStock();

    /// What CKaSchema::GetRecycledKaValue would return, and throws as that.
    std::unique_ptr<CKaValue> Get(CKaProperty* property);
    /// To be called when the values of an instance have gone back to the pool: takes as many as the
    /// instance needed. Then they are still in this processor's cache. Does nothing when there is no
    /// memory for the list.
    void Refill() noexcept;

  private:
    static constexpr std::size_t kMost = 1024;

    std::vector<std::unique_ptr<CKaValue>> m_values;
    std::size_t m_used = 0; // since the last Refill
};

} // namespace KAXML
