// Runs the tests in a network of their own.
#include <gtest/gtest.h>

#include "tests/engine/janus/OwnNetwork.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!Corvanta::Engine::EnterOwnNetwork()) ADD_FAILURE() << "no network of its own can be had here";
    return RUN_ALL_TESTS();
}
