#include "allocations.h"

#include <cstdlib>
#include <cstring>
#include <libxml/xmlmemory.h>
#include <new>

namespace {

// For each thread, so that counting costs next to nothing.
thread_local std::uint64_t t_count = 0;

void* CountedMalloc(std::size_t size) {
    ++t_count;
    return std::malloc(size);
}

void* CountedRealloc(void* memory, std::size_t size) {
    ++t_count;
    return std::realloc(memory, size);
}

char* CountedStrdup(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    void* const copy = CountedMalloc(size);
    return copy != nullptr ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

} // namespace

// The standard library's other forms end up here. The one that does not throw would as well, but address
// sanitizers bring forms of their own, and what is freed below has to come from here.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++t_count;
    return std::malloc(size != 0 ? size : 1);
}

void* operator new(std::size_t size) {
    if (void* const memory = ::operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace bench {

std::uint64_t Allocations() noexcept { return t_count; }

void CountParserAllocations() { xmlMemSetup(std::free, CountedMalloc, CountedRealloc, CountedStrdup); }

} // namespace bench
