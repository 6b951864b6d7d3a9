// What the fuzzers of drawings share: reading that may throw what it promises, and no memory of the calls.
#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Drawing {

// Whether the reading came to its end.
template <typename Function>
bool Reads(Function&& function) {
    bool done = false;
    try {
        std::forward<Function>(function)();
        done = true;
    } catch (const nlohmann::json::exception&) {
    } catch (const std::invalid_argument&) {
    } catch (const std::out_of_range&) {
    } catch (const std::length_error&) {
    }
    // Each of the four says that the input is no drawing. The lines of the log would fill the memory.
    Corvanta::Testing::Fake().ClearLogs();
    Corvanta::Testing::Calls().Clear();
    return done;
}

}  // namespace Corvanta::Drawing
