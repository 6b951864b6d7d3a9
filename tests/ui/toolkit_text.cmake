# Texts and the controls that are made of them, drawn with the shipped icons and fonts.
add_executable(ui_text_test
    ${CMAKE_CURRENT_LIST_DIR}/ArithmeticTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/BadSizesTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ButtonGeometryTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ButtonTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ButtonWithStateTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/InitialsAvatarTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/InitialsTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SystemFontProviderTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TextButtonTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TextCalls.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TextEllipsisTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TextTextureExtentTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TextTextureTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TextTextureWildTextTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ToggleButtonTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ToolkitTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TooltipTest.cpp
    $<TARGET_OBJECTS:corvanta-floor-ui>
    $<TARGET_OBJECTS:corvanta-hdrsdl-published>)
target_compile_definitions(ui_text_test PRIVATE CORVANTA_FONT_SOURCES="${PROJECT_SOURCE_DIR}/fonts")
target_link_libraries(ui_text_test PRIVATE
    corvanta-floor-ui corvanta-sdl-recorder corvanta-pixel-reader corvanta-allocation-counter
    GTest::gtest GTest::gmock GTest::gtest_main)
add_dependencies(ui_text_test corvanta-icons)
gtest_discover_tests(ui_text_test
    TEST_PREFIX ui.text. DISCOVERY_MODE PRE_TEST WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
