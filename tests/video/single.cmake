# The view of a single picture.
set(single_dir ${PROJECT_SOURCE_DIR}/tests/video)

add_executable(video_single_test
    ${single_dir}/SinglePictureTest.cpp
    ${single_dir}/SingleVideoViewTest.cpp)
target_sources(video_single_test PRIVATE
    $<TARGET_OBJECTS:corvanta-floor-ui> $<TARGET_OBJECTS:corvanta-hdrsdl-published>)
target_link_libraries(video_single_test PRIVATE
    corvanta-floor-ui corvanta-floor-drawing corvanta-floor-connectivity corvanta-floor-video
    corvanta-sdl-recorder corvanta-pixel-reader
    GTest::gtest GTest::gmock GTest::gtest_main ${CMAKE_DL_LIBS})
gtest_discover_tests(video_single_test TEST_PREFIX video.single. DISCOVERY_MODE PRE_TEST)
