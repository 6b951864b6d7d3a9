// Counts what the current thread asks of operator new between Start and Stop. Linking this library replaces
// the process's operator new and delete. What the harness allocates for itself (UncountedScope) is left out.
#pragma once

#include <cstddef>

namespace Corvanta::Testing {

class AllocationCounter final {
public:
    // Begins to count from nothing on this thread. Counting cannot be nested.
    static void Start();
    // Ends it and returns the number of allocations.
    static size_t Stop();
    // Bytes of the last count.
    [[nodiscard]] static size_t Bytes();
};

}  // namespace Corvanta::Testing
