# The wall of tiles and the view of its own window.
set(wall_dir ${PROJECT_SOURCE_DIR}/tests/video)

add_executable(video_wall_test
    ${PROJECT_SOURCE_DIR}/tests/ui/WorkingFolder.cpp
    ${wall_dir}/StripSlideTest.cpp
    ${wall_dir}/ThumbnailLayoutTest.cpp
    ${wall_dir}/ThumbnailsViewTest.cpp
    ${wall_dir}/TileListTest.cpp
    ${wall_dir}/VideoThumbnailsTest.cpp
    ${wall_dir}/WallClickTest.cpp
    ${wall_dir}/WallDragTest.cpp
    ${wall_dir}/WallDrawingTest.cpp
    ${wall_dir}/WallHoverTest.cpp
    ${wall_dir}/WallScrollTest.cpp
    ${wall_dir}/WallTest.cpp
    ${wall_dir}/WallThreadsTest.cpp)
target_compile_definitions(video_wall_test PRIVATE CORVANTA_TEST_FONTS="${PROJECT_SOURCE_DIR}/fonts")
target_sources(video_wall_test PRIVATE
    $<TARGET_OBJECTS:corvanta-floor-ui> $<TARGET_OBJECTS:corvanta-hdrsdl-published>)
target_link_libraries(video_wall_test PRIVATE
    corvanta-floor-ui corvanta-floor-drawing corvanta-floor-connectivity corvanta-floor-video
    corvanta-sdl-recorder corvanta-pixel-reader corvanta-allocation-counter
    GTest::gtest GTest::gmock GTest::gtest_main ${CMAKE_DL_LIBS})
gtest_discover_tests(video_wall_test TEST_PREFIX video.wall. DISCOVERY_MODE PRE_TEST)
