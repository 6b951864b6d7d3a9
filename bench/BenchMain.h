// The command line of the benchmarks that tick a room: --rounds N, or --count-instructions frame|steady for
// callgrind.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

#include "bench/Turns.h"

namespace Corvanta::Bench {

// Runs one of the two functions and returns the program's exit status. A failure is one line on the standard
// error stream.
template <typename MeasureAll, typename CountInstructions>
[[nodiscard]] int RunBench(int argumentCount, char** arguments, const char* program, int rounds,
                           MeasureAll&& measureAll, CountInstructions&& countInstructions) {
    // What a host without a graphics card chooses.
    setenv("SDL_RENDER_DRIVER", "software", 0);
    setenv("SDL_FRAMEBUFFER_ACCELERATION", "0", 0);
    try {
        for (int i = 1; i + 1 < argumentCount; ++i) {
            const std::string_view name = arguments[i];
            if (name == "--rounds") {
                rounds = std::atoi(arguments[++i]);
            } else if (name == "--count-instructions") {
                countInstructions(std::string_view(arguments[i + 1]) == "frame" ? Arrival::Frame
                                                                                : Arrival::None);
                return 0;
            }
        }
        measureAll(rounds);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", program, error.what());
        return 1;
    }
    return 0;
}

}  // namespace Corvanta::Bench
