# The room as a whole: its bar, a meeting from beginning to end, and everybody at once.
set(live_tests ${PROJECT_SOURCE_DIR}/tests)

add_executable(interface_live_test
    ${live_tests}/interface/LiveRoomThreadsTest.cpp
    ${live_tests}/interface/MeetingTest.cpp
    ${live_tests}/interface/RoomTest.cpp
    ${live_tests}/interface/SoundDevicesTest.cpp
    ${live_tests}/interface/ToolbarCommandsTest.cpp
    ${live_tests}/ui/WorkingFolder.cpp
    $<TARGET_OBJECTS:corvanta-hdrsdl-published>)
target_compile_definitions(interface_live_test PRIVATE
    CORVANTA_TEST_FONT="${PROJECT_SOURCE_DIR}/fonts/Inter-Regular.ttf"
    CORVANTA_TEST_ICON_NAMES="${PROJECT_SOURCE_DIR}/icons/names.txt")
target_link_libraries(interface_live_test PRIVATE
    corvanta-library corvanta-sdl-recorder corvanta-fake-platform
    GTest::gtest GTest::gmock GTest::gtest_main)
gtest_discover_tests(interface_live_test TEST_PREFIX interface.live. DISCOVERY_MODE PRE_TEST)
