// Runs the tests in a network of their own.
#include <gtest/gtest.h>

#include "tests/engine/janus/OwnNetwork.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    Corvanta::Engine::EnterOwnNetwork();
    return RUN_ALL_TESTS();
}
