# The overlays of a tile, their geometry and the controls on it.
set(tile_dir ${PROJECT_SOURCE_DIR}/tests/video)
set(tile_ui_dir ${PROJECT_SOURCE_DIR}/tests/ui)

add_executable(video_tile_test
    ${tile_ui_dir}/ControlSurroundings.cpp
    ${tile_ui_dir}/TextCalls.cpp
    ${tile_ui_dir}/WorkingFolder.cpp
    ${tile_dir}/BoxBlurTest.cpp
    ${tile_dir}/MenuMetricsTest.cpp
    ${tile_dir}/NameCutTest.cpp
    ${tile_dir}/NamePlateTest.cpp
    ${tile_dir}/OverlayGradientTest.cpp
    ${tile_dir}/TileControlsTest.cpp
    ${tile_dir}/TileMetricsTest.cpp
    ${tile_dir}/TileOverlaysTest.cpp
    ${tile_dir}/TilePointerTest.cpp
    ${tile_dir}/TileRoleTest.cpp)
target_compile_definitions(video_tile_test PRIVATE CORVANTA_TEST_FONTS="${PROJECT_SOURCE_DIR}/fonts")
target_sources(video_tile_test PRIVATE
    $<TARGET_OBJECTS:corvanta-floor-ui> $<TARGET_OBJECTS:corvanta-hdrsdl-published>)
target_link_libraries(video_tile_test PRIVATE
    corvanta-floor-ui corvanta-floor-drawing corvanta-floor-connectivity corvanta-floor-video
    corvanta-sdl-recorder corvanta-pixel-reader corvanta-allocation-counter
    GTest::gtest GTest::gmock GTest::gtest_main ${CMAKE_DL_LIBS})
gtest_discover_tests(video_tile_test TEST_PREFIX video.tile. DISCOVERY_MODE PRE_TEST)
