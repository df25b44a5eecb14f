#include <kaxml/kaschemaxml/instance/recycled_values.h>

#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/instance/value.h>
#include <kaxml/kaschemaxml/instance/value_kind.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/scoped_resource.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <typeinfo>
#include <utility>
#include <vector>

namespace KAXML {

namespace {

constexpr std::size_t kLargestKept = 16384;

struct Pool {
    ThreadLock lock;
    std::vector<std::unique_ptr<CKaValue>> s_recycledValues;
    bool isClosed = false;
};

// Never destroyed: objects of the client that die after the library's statics still come here.
Pool& ThePool() {
    alignas(Pool) static unsigned char storage[sizeof(Pool)];
    static Pool* const pool = new (storage) Pool;
    return *pool;
}

void Empty(Pool& pool) {
    // Out of the list first: a value's end must not find a list that is changing.
    const std::vector<std::unique_ptr<CKaValue>> values = std::move(pool.s_recycledValues);
    pool.s_recycledValues.clear();
}

// Made when the library is loaded, destroyed when it is unloaded.
struct PoolLifetime {
    PoolLifetime() { ThePool(); }
    PoolLifetime(const PoolLifetime&) = delete;
    PoolLifetime& operator=(const PoolLifetime&) = delete;
    ~PoolLifetime() {
        Pool& pool = ThePool();
        const ScopedThreadLock lock(&pool.lock);
        pool.isClosed = true;
        Empty(pool);
    }
};

const PoolLifetime s_poolLifetime;

// Whatever fails inside an operation, which has left its lock by then, is reported as a failure of
// the operation.
template <typename Operation> auto Reported(Operation operation, const wchar_t* name) {
    try {
        return operation();
    } catch (...) {
        throw KAXMLRuntimeError(std::wstring(L"Unknown exception in CKaSchema::") + name);
    }
}

} // namespace

CKaValue* RecycledValues::Get(CKaProperty* property) {
    // Before the lock: the failure is logged, and the callback may use the pool.
    KaValueBase::RequireProperty(property);
    Pool& pool = ThePool();
    const ScopedThreadLock lock(&pool.lock);
    if (pool.s_recycledValues.empty())
        return new CKaValue(property, nullptr);
    Renew(*pool.s_recycledValues.back(), property);
    CKaValue* const value = pool.s_recycledValues.back().release();
    pool.s_recycledValues.pop_back();
    return value;
}

void RecycledValues::Renew(CKaValue& value, CKaProperty* property) {
    value.Reinitialize(property);
    value.InitializeValue();
    value.m_isHeld = false;
}

// Moves the last values of the pool to the end of a list, in the pool's order.
void RecycledValues::Take(std::vector<std::unique_ptr<CKaValue>>& values, std::size_t count) {
    values.reserve(values.size() + count); // before the lock
    Pool& pool = ThePool();
    const ScopedThreadLock lock(&pool.lock);
    count = std::min(count, pool.s_recycledValues.size());
    const auto first = pool.s_recycledValues.end() - static_cast<std::ptrdiff_t>(count);
    values.insert(values.end(), std::make_move_iterator(first), std::make_move_iterator(pool.s_recycledValues.end()));
    pool.s_recycledValues.resize(pool.s_recycledValues.size() - count);
}

// What Take took. The list is then empty.
void RecycledValues::PutBack(std::vector<std::unique_ptr<CKaValue>>& values) noexcept {
    if (values.empty())
        return;
    try {
        Pool& pool = ThePool();
        const ScopedThreadLock lock(&pool.lock);
        if (!pool.isClosed)
            pool.s_recycledValues.insert(pool.s_recycledValues.end(), std::make_move_iterator(values.begin()),
                                         std::make_move_iterator(values.end()));
    } catch (...) { // NOLINT(bugprone-empty-catch): no memory for the pool's list, so the values go
    }
    values.clear();
}

void RecycledValues::Recycle(CKaValue* value) {
    // Before the lock, as above.
    if (value != nullptr && value->m_isHeld)
        throw KAXMLLogicError(L"Attempted to recycle a value that an array, an instance or the pool holds");
    if (value == nullptr)
        return;
    Pool& pool = ThePool();
    const ScopedThreadLock lock(&pool.lock);
    if (pool.isClosed) {
        delete value;
        return;
    }
    pool.s_recycledValues.emplace_back(value);
    value->m_isHeld = true;
}

// An instance takes the pool's lock once for all that it holds: a list of which nothing is left is
// emptied, so that its end asks for no lock. When the call throws, what was not taken over is still in
// the lists.
void RecycledValues::TakeOverAll(std::vector<std::unique_ptr<CKaValue>>& taken,
                                 std::vector<std::unique_ptr<KaValueBase>>& values) {
    bool isAnyLeft = false;
    for (std::unique_ptr<KaValueBase>& value : values) {
        if (CKaValue* const primitive = AsPrimitive(value.get())) {
            // The pool would hold the room of every large text that ever passed through an instance.
            if (primitive->m_value.capacity() > kLargestKept)
                std::wstring().swap(primitive->m_value);
            taken.emplace_back(primitive);
            static_cast<void>(value.release());
            continue;
        }
        isAnyLeft = isAnyLeft || value != nullptr;
        if (auto* const array = dynamic_cast<KaArrayValue*>(value.get())) {
            TakeOverAll(taken, array->m_members);
        } else if (auto* const structure = dynamic_cast<KaStructValue*>(value.get())) {
            if (structure->m_pInstance)
                TakeOverAll(taken, structure->m_pInstance->m_values);
        }
    }
    if (!isAnyLeft)
        values.clear();
}

// Takes over what an instance holds; the rest goes.
void RecycledValues::Strip(std::vector<std::unique_ptr<CKaValue>>& taken, CKaInstance& instance) {
    TakeOverAll(taken, instance.m_values);
    instance.m_values.clear();
}

void RecycledValues::DropAll(std::vector<std::unique_ptr<KaValueBase>>& values) noexcept {
    if (values.empty())
        return;
    try {
        Pool& pool = ThePool();
        const ScopedThreadLock lock(&pool.lock);
        if (!pool.isClosed)
            TakeOverAll(pool.s_recycledValues, values);
    } catch (...) { // NOLINT(bugprone-empty-catch): no memory for the pool's list, so the values go
    }
    // Without the lock: arrays and structs drop values of their own.
    values.clear();
}

void RecycledValues::Free() {
    Pool& pool = ThePool();
    const ScopedThreadLock lock(&pool.lock);
    Empty(pool);
}

ValueStock::ValueStock() = default;
ValueStock::~ValueStock() { RecycledValues::PutBack(m_values); }

std::unique_ptr<CKaValue> ValueStock::Get(CKaProperty* property) {
    return Reported(
        [this, property] {
            if (m_values.empty())
                RecycledValues::Take(m_values, std::clamp(std::max(m_used, m_wanted), std::size_t{1}, kMost));
            if (m_values.empty())
                m_values.push_back(std::make_unique<CKaValue>(property, nullptr));
            RecycledValues::Renew(*m_values.back(), property);
            std::unique_ptr<CKaValue> value = std::move(m_values.back());
            m_values.pop_back();
            ++m_used;
            return value;
        },
        L"GetRecycledKaValue");
}

void ValueStock::TakeBack(CKaInstance& instance) noexcept {
    m_wanted = std::min(std::max(m_wanted, m_used), kMost);
    try {
        const std::type_info& type = typeid(instance);
        if (m_used <= kMost && (type == typeid(CKaInstance) || type == typeid(KaRelationshipInstance)))
            RecycledValues::Strip(m_values, instance);
        m_used = 0;
        if (m_values.size() > m_wanted)
            GiveExcess();
    } catch (...) { // NOLINT(bugprone-empty-catch): no memory for a list, so the values take the usual way
        m_used = 0;
    }
}

void ValueStock::GiveExcess() {
    const auto first = m_values.begin() + static_cast<std::ptrdiff_t>(m_wanted);
    std::vector<std::unique_ptr<CKaValue>> excess(std::make_move_iterator(first),
                                                  std::make_move_iterator(m_values.end()));
    m_values.resize(m_wanted);
    RecycledValues::PutBack(excess);
}

CKaValue* CKaSchema::GetRecycledKaValue(CKaProperty* property) {
    return Reported([property] { return RecycledValues::Get(property); }, L"GetRecycledKaValue");
}

void CKaSchema::RecycleKaValue(CKaValue* value) {
    Reported([value] { RecycledValues::Recycle(value); }, L"RecycleKaValue");
}

void CKaSchema::FreeRecycledValues() { Reported(&RecycledValues::Free, L"FreeRecycledValues"); }

} // namespace KAXML
