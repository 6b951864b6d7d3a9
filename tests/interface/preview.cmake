# The own camera's picture in a window of its own.
add_executable(interface_preview_test
    ${PROJECT_SOURCE_DIR}/tests/interface/LocalPreviewTest.cpp
    ${PROJECT_SOURCE_DIR}/tests/interface/RoomTest.cpp
    $<TARGET_OBJECTS:corvanta-hdrsdl-published>)
target_link_libraries(interface_preview_test PRIVATE
    corvanta-library corvanta-sdl-recorder corvanta-pixel-reader corvanta-fake-platform
    GTest::gtest GTest::gmock GTest::gtest_main)
gtest_discover_tests(interface_preview_test TEST_PREFIX interface.preview. DISCOVERY_MODE PRE_TEST)
