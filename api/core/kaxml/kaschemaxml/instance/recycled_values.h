#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace KAXML {

class CKaInstance;
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
    static void Strip(std::vector<std::unique_ptr<CKaValue>>& taken, CKaInstance& instance);
    static void TakeOverAll(std::vector<std::unique_ptr<CKaValue>>& taken,
                            std::vector<std::unique_ptr<KaValueBase>>& values);
};

/// The values that a parse fills its instances with. They come from the pool and go back to it in the end;
/// until then those of a finished instance serve the next one without a lock. The last one taken is the
/// first handed out.
class ValueStock {
  public:
    ValueStock();
    ValueStock(const ValueStock&) = delete;
    ValueStock& operator=(const ValueStock&) = delete;
    ~ValueStock();

    /// What CKaSchema::GetRecycledKaValue would return, and throws as that.
    std::unique_ptr<CKaValue> Get(CKaProperty* property);
    /// To be called when a parse is done with an instance: takes its values back, and then as many more
    /// from the pool as an instance of the parse may need, or gives so many to it. An instance of a
    /// class of the client's, which may look at its values when it goes, keeps them.
    void TakeBack(CKaInstance& instance) noexcept;

  private:
    static constexpr std::size_t kMost = 1024;

    void GiveExcess();

    std::vector<std::unique_ptr<CKaValue>> m_values;
    std::size_t m_used = 0;   // for this instance
    std::size_t m_wanted = 0; // for any instance so far, up to the limit
};

} // namespace KAXML
