# Input injection: what hosts push, and what becomes of it.
set(input_tests ${PROJECT_SOURCE_DIR}/tests)

add_executable(interface_input_test
    ${input_tests}/interface/InputInjectionTest.cpp
    ${input_tests}/interface/RoomTest.cpp
    ${input_tests}/ui/WorkingFolder.cpp
    $<TARGET_OBJECTS:corvanta-hdrsdl-published>)
target_link_libraries(interface_input_test PRIVATE
    corvanta-library corvanta-sdl-recorder corvanta-fake-platform
    GTest::gtest GTest::gmock GTest::gtest_main)
gtest_discover_tests(interface_input_test TEST_PREFIX interface.input. DISCOVERY_MODE PRE_TEST)
