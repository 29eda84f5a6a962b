#include "bench/Allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> count;
std::atomic<std::size_t> bytes;

} // namespace

void* operator new(std::size_t size) {
    count.fetch_add(1, std::memory_order_relaxed);
    bytes.fetch_add(size, std::memory_order_relaxed);
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace menubar::bench {

Allocations allocationsSoFar() {
    return {.count = count.load(std::memory_order_relaxed), .bytes = bytes.load(std::memory_order_relaxed)};
}

} // namespace menubar::bench
