#include "tests/fake_platform/AllocationCounter.h"

#include <cstdlib>
#include <new>

#include "tests/fake_platform/UncountedScope.h"

namespace {

thread_local bool isCounting = false;
thread_local size_t allocationCount = 0;
thread_local size_t allocatedBytes = 0;

void Count(size_t size) {
    if (isCounting && !Corvanta::Testing::UncountedScope::IsActive()) {
        ++allocationCount;
        allocatedBytes += size;
    }
}

void* Allocate(size_t size) noexcept {
    Count(size);
    return std::malloc(size == 0 ? 1 : size);
}

void* Allocate(size_t size, std::align_val_t alignment) noexcept {
    Count(size);
    const auto align = static_cast<size_t>(alignment);
    // aligned_alloc wants a multiple of the alignment.
    return std::aligned_alloc(align, (size + align - 1) / align * align + (size == 0 ? align : 0));
}

void* OrThrow(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

namespace Corvanta::Testing {

void AllocationCounter::Start() {
    allocationCount = 0;
    allocatedBytes = 0;
    isCounting = true;
}

size_t AllocationCounter::Stop() {
    isCounting = false;
    return allocationCount;
}

size_t AllocationCounter::Bytes() {
    return allocatedBytes;
}

}  // namespace Corvanta::Testing

void* operator new(size_t size) {
    return OrThrow(Allocate(size));
}
void* operator new[](size_t size) {
    return OrThrow(Allocate(size));
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new(size_t size, std::align_val_t alignment) {
    return OrThrow(Allocate(size, alignment));
}
void* operator new[](size_t size, std::align_val_t alignment) {
    return OrThrow(Allocate(size, alignment));
}
void* operator new(size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return Allocate(size, alignment);
}
void* operator new[](size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return Allocate(size, alignment);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, size_t, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(memory);
}
