# Drawing, as the host and the other participants see it.
set(drawing_tests ${PROJECT_SOURCE_DIR}/tests)

add_executable(interface_drawing_test
    ${drawing_tests}/drawing/LocalUser.cpp
    ${drawing_tests}/interface/DrawingCommandsTest.cpp
    ${drawing_tests}/interface/DrawingThreadsTest.cpp
    ${drawing_tests}/interface/RoomTest.cpp
    $<TARGET_OBJECTS:corvanta-hdrsdl-published>)
target_link_libraries(interface_drawing_test PRIVATE
    corvanta-library corvanta-sdl-recorder corvanta-pixel-reader corvanta-fake-platform
    GTest::gtest GTest::gmock GTest::gtest_main)
gtest_discover_tests(interface_drawing_test TEST_PREFIX interface.drawing. DISCOVERY_MODE PRE_TEST)
