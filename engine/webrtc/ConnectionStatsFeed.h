// The way of the local user's connection figures to whoever set the callback for them. Any thread; calls that
// callback, so no lock may be held.
#pragma once

namespace Corvanta::Engine {

struct LocalConnectionFigures {
    // Bits a second.
    double uploadRate = 0;
    double downloadRate = 0;
    double jitterMs = 0;
    double roundTripMs = 0;
};

void FeedConnectionStats(const LocalConnectionFigures& figures);

}  // namespace Corvanta::Engine
