// Marks the allocations of the current thread as the test harness's own, so that AllocationCounter leaves
// them out: what a recorder allocates says nothing about the code under test.
#pragma once

namespace Corvanta::Testing {

class UncountedScope final {
public:
    UncountedScope() { ++depth_; }
    ~UncountedScope() { --depth_; }
    UncountedScope(const UncountedScope&) = delete;
    UncountedScope& operator=(const UncountedScope&) = delete;

    [[nodiscard]] static bool IsActive() { return depth_ > 0; }

private:
    static inline thread_local int depth_ = 0;
};

}  // namespace Corvanta::Testing
