# What every target shares: warnings, sanitizers and the shape of a floor.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
pkg_check_modules(SDL2 REQUIRED IMPORTED_TARGET sdl2)
pkg_check_modules(SDL2_IMAGE REQUIRED IMPORTED_TARGET SDL2_image)
pkg_check_modules(SDL2_TTF REQUIRED IMPORTED_TARGET SDL2_ttf)
pkg_check_modules(SDL2_GFX REQUIRED IMPORTED_TARGET SDL2_gfx)
find_package(nlohmann_json REQUIRED)

add_library(corvanta-options INTERFACE)
target_include_directories(corvanta-options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(corvanta-options INTERFACE SDL_MAIN_HANDLED)
target_compile_options(corvanta-options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
target_link_libraries(corvanta-options INTERFACE Threads::Threads)
if(CORVANTA_LOCK_CHECK)
    target_compile_definitions(corvanta-options INTERFACE CORVANTA_LOCK_CHECK)
endif()
if(CORVANTA_SANITIZE)
    target_compile_options(corvanta-options INTERFACE
        -fsanitize=${CORVANTA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all -O1)
    target_link_options(corvanta-options INTERFACE -fsanitize=${CORVANTA_SANITIZE})
endif()

# One floor of the library: an object library, so that the shared library and the tests link the same objects.
function(corvanta_floor name)
    add_library(corvanta-floor-${name} OBJECT ${ARGN})
    target_link_libraries(corvanta-floor-${name} PUBLIC corvanta-options)
endfunction()

# A program that works with GLib and GStreamer, whose ways the sanitizers have to be told of.
function(corvanta_engine_program name)
    add_executable(${name} ${ARGN})
    if(CORVANTA_SANITIZE)
        target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/engine/SanitizerOptions.cpp)
    endif()
endfunction()
