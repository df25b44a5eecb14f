#include "allocation/failing_memory.h"

#include <cerrno>
#include <cstdlib>
#include <new>

#ifdef KAXML_TEST_REPLACES_MALLOC
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* block, std::size_t size);
extern "C" void __libc_free(void* block);
#define KAXML_TEST_SYSTEM_FREE __libc_free
#else
#define KAXML_TEST_SYSTEM_FREE std::free
#endif

constinit KAXML::Test::AllocationState KAXML::Test::g_allocations{};

namespace {

using KAXML::Test::g_allocations;
using Alignment = std::align_val_t;
using Nothrow = const std::nothrow_t&;

template <typename Call> void* Try(Call call) noexcept {
    const long number = ++g_allocations.count;
    const bool fails = number == g_allocations.failure || (g_allocations.goesOn && number > g_allocations.failure);
    void* const block = fails ? nullptr : call();
    if (block == nullptr)
        errno = ENOMEM;
    g_allocations.liveBlocks += block != nullptr ? 1 : 0;
    return block;
}

void* Allocate(std::size_t size, Alignment alignment = Alignment{__STDCPP_DEFAULT_NEW_ALIGNMENT__}) noexcept {
    return Try([size, alignment] {
        void* block = nullptr;
        return posix_memalign(&block, static_cast<std::size_t>(alignment), size) == 0 ? block : nullptr;
    });
}

void Free(void* block) noexcept {
    g_allocations.liveBlocks -= block != nullptr ? 1 : 0;
    KAXML_TEST_SYSTEM_FREE(block);
}

void* Require(void* block) { return block != nullptr ? block : throw std::bad_alloc(); }

} // namespace

// Those of arrays are the standard library's own, which lead here.
void* operator new(std::size_t size) { return Require(Allocate(size)); }
void* operator new(std::size_t size, Nothrow) noexcept { return Allocate(size); }
void* operator new(std::size_t size, Alignment alignment) { return Require(Allocate(size, alignment)); }
void* operator new(std::size_t size, Alignment alignment, Nothrow) noexcept { return Allocate(size, alignment); }
void operator delete(void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete(void* block, Nothrow) noexcept { Free(block); }
void operator delete(void* block, Alignment) noexcept { Free(block); }
void operator delete(void* block, std::size_t, Alignment) noexcept { Free(block); }
void operator delete(void* block, Alignment, Nothrow) noexcept { Free(block); }

#ifdef KAXML_TEST_REPLACES_MALLOC
extern "C" void* malloc(std::size_t size) noexcept { return Allocate(size); }
extern "C" void* calloc(std::size_t count, std::size_t size) noexcept {
    return Try([count, size] { return __libc_calloc(count, size); });
}
extern "C" void* realloc(void* block, std::size_t size) noexcept {
    void* const result = Try([block, size] { return __libc_realloc(block, size); });
    g_allocations.liveBlocks -= block != nullptr && result != nullptr ? 1 : 0; // it stays one block
    return result;
}
extern "C" void free(void* block) noexcept { Free(block); }
#endif
