#pragma once

#include <kaxml/kaschemaxml/schema/class.h>

#include <cstddef>

namespace KAXML {

/// Walks a class and its base classes, nearest first:
///
///     for (BaseChain chain(kaClass); chain.Current() != nullptr; chain.Next()) ...
///
/// The walk ends even where unchecked changes of names made the bases a ring: it remembers one
/// class it has passed, at distances that double, and stops when it meets that class again. Until
/// then some classes of a ring may come twice.
class BaseChain {
  public:
    explicit BaseChain(const CKaClass* start) noexcept : m_current(start), m_passed(start) {}

    const CKaClass* Current() const noexcept { return m_current; }

    /// @throws what CKaClass::GetBaseKaClass throws.
    void Next() { MoveTo(m_current->GetBaseKaClass()); }

  private:
    void MoveTo(const CKaClass* next) noexcept {
        m_current = next == m_passed ? nullptr : next;
        if (++m_steps == m_distance) {
            m_passed = m_current;
            m_distance *= 2;
            m_steps = 0;
        }
    }

    const CKaClass* m_current;
    const CKaClass* m_passed;
    std::size_t m_steps = 0;
    std::size_t m_distance = 2;
};

} // namespace KAXML
