# Button bar, menu, scrollbar and key names.
set(controls_dir ${PROJECT_SOURCE_DIR}/tests/ui)

add_executable(ui_controls_test
    ${controls_dir}/BarSlideTest.cpp
    ${controls_dir}/ButtonBarClickTest.cpp
    ${controls_dir}/ButtonBarLayoutTest.cpp
    ${controls_dir}/ButtonBarTest.cpp
    ${controls_dir}/ButtonBarTitleTest.cpp
    ${controls_dir}/ButtonBarVisibilityTest.cpp
    ${controls_dir}/ControlSurroundings.cpp
    ${controls_dir}/ControlsSteadyStateTest.cpp
    ${controls_dir}/KeyNamesTest.cpp
    ${controls_dir}/MenuLayoutTest.cpp
    ${controls_dir}/MenuScrollTest.cpp
    ${controls_dir}/MenuTest.cpp
    ${controls_dir}/TextCalls.cpp
    ${controls_dir}/VideoScrollbarTest.cpp
    ${controls_dir}/WorkingFolder.cpp)
target_compile_definitions(ui_controls_test PRIVATE CORVANTA_TEST_FONTS="${PROJECT_SOURCE_DIR}/fonts")
target_sources(ui_controls_test PRIVATE
    $<TARGET_OBJECTS:corvanta-floor-ui> $<TARGET_OBJECTS:corvanta-hdrsdl-published>)
target_link_libraries(ui_controls_test PRIVATE
    corvanta-floor-ui corvanta-sdl-recorder corvanta-allocation-counter corvanta-pixel-reader
    GTest::gtest GTest::gmock GTest::gtest_main)
gtest_discover_tests(ui_controls_test TEST_PREFIX ui.controls. DISCOVERY_MODE PRE_TEST)
