# Commands about the wall, its streams and the devices behind them.
set(wall_tests ${PROJECT_SOURCE_DIR}/tests)

add_executable(interface_wall_test
    ${wall_tests}/interface/DeviceCommandsTest.cpp
    ${wall_tests}/interface/RoomTest.cpp
    ${wall_tests}/interface/StreamCommandsTest.cpp
    ${wall_tests}/interface/WallCommandsTest.cpp
    $<TARGET_OBJECTS:corvanta-hdrsdl-published>)
target_link_libraries(interface_wall_test PRIVATE
    corvanta-library corvanta-sdl-recorder corvanta-fake-platform
    GTest::gtest GTest::gmock GTest::gtest_main)
gtest_discover_tests(interface_wall_test TEST_PREFIX interface.wall. DISCOVERY_MODE PRE_TEST)
