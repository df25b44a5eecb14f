#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace KAXML {

/// Memory for many small objects that go all at once, cut from blocks front to back. The blocks are of
/// a size that allocators keep for the next one. No destructors run.
class Arena {
  public:
    template <typename T, typename... Arguments> T* Make(Arguments&&... arguments) {
        static_assert(std::is_trivially_destructible_v<T> && alignof(T) <= kAlignment);
        return new (Take(sizeof(T))) T(std::forward<Arguments>(arguments)...);
    }

    /// Room for objects to be made there.
    template <typename T> T* MakeRoom(std::size_t count) {
        static_assert(std::is_trivially_destructible_v<T> && alignof(T) <= kAlignment);
        return static_cast<T*>(Take(count * sizeof(T)));
    }

    /// A copy of the text, followed by a null character.
    std::wstring_view Copy(std::wstring_view text) {
        if (text.empty())
            return L"";
        wchar_t* const copy = MakeRoom<wchar_t>(text.size() + 1);
        *std::copy(text.begin(), text.end(), copy) = L'\0';
        return {copy, text.size()};
    }

    /// How many bytes the blocks take.
    std::size_t Size() const noexcept { return m_size; }

    /// Frees everything.
    void Clear() noexcept {
        m_blocks.clear();
        m_left = 0;
        m_size = 0;
    }

  private:
    static constexpr std::size_t kBlock = 65536;
    static constexpr std::size_t kAlignment = alignof(void*);

    void* Take(std::size_t size) {
        size = (size + kAlignment - 1) / kAlignment * kAlignment;
        if (size > m_left)
            return TakeFromNewBlock(size);
        m_left -= size;
        return std::exchange(m_next, m_next + size);
    }

    void* TakeFromNewBlock(std::size_t size) {
        const std::size_t room = std::max(size, kBlock);
        std::unique_ptr<std::byte[]> block(new std::byte[room]);
        m_blocks.push_back(std::move(block));
        m_size += room;
        // The rest of whichever block has more.
        if (room - size > m_left) {
            m_next = m_blocks.back().get() + size;
            m_left = room - size;
        }
        return m_blocks.back().get();
    }

    std::vector<std::unique_ptr<std::byte[]>> m_blocks;
    std::byte* m_next = nullptr;
    std::size_t m_left = 0;
    std::size_t m_size = 0;
};

} // namespace KAXML
