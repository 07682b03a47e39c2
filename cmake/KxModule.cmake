# Helpers that every folder of the tree uses: one call makes the folder's target, another its tests.

# Warnings, sanitizers and fuzzing belong to our own build, never to a consumer's.
add_library(kx_build_options INTERFACE)
target_compile_features(kx_build_options INTERFACE cxx_std_20)
if(KX_WARNINGS_AS_ERRORS)
  target_compile_options(kx_build_options INTERFACE -Werror)
endif()
target_compile_options(
  kx_build_options
  INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Wnon-virtual-dtor
            -Wimplicit-fallthrough)
# GCC 12 sees overlapping copies in std::string's operator+ that are not there (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(kx_build_options INTERFACE -Wno-restrict)
endif()
if(KX_SANITIZE)
  target_compile_options(kx_build_options INTERFACE -fsanitize=${KX_SANITIZE}
                                                    -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kx_build_options INTERFACE -fsanitize=${KX_SANITIZE})
endif()
if(KX_FUZZ)
  target_compile_options(kx_build_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# kx_add_module(NAME SOURCES a.cc... DEPENDS kx_text...)
# A folder of src/ as one static target; DEPENDS lists only tiers below it. The library is made of
# all modules but those that are marked FOR_TESTS.
function(kx_add_module name)
  cmake_parse_arguments(ARG "FOR_TESTS" "" "SOURCES;DEPENDS" ${ARGN})
  if(NOT ARG_FOR_TESTS)
    set_property(GLOBAL APPEND PROPERTY KX_MODULES ${name})
  endif()
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden
                                           VISIBILITY_INLINES_HIDDEN ON)
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE kx_build_options)
  target_compile_features(${name} PUBLIC cxx_std_20)
  if(WIN32)
    target_compile_definitions(${name} PRIVATE KX_BUILDING_SHARED)
  endif()
endfunction()

# kx_add_test(NAME SOURCES a_test.cc... DEPENDS kx_text... LABEL unit)
# One GoogleTest program; every test of it becomes a ctest entry under LABEL.
function(kx_add_test name)
  cmake_parse_arguments(ARG "" "LABEL;TIMEOUT" "SOURCES;DEPENDS;DEFINES" ${ARGN})
  if(NOT ARG_LABEL)
    set(ARG_LABEL unit)
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE KX_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ${ARG_DEFINES})
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} GTest::gmock GTest::gtest_main kx_build_options)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 120 PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT})
endfunction()

# kx_add_fuzzer(NAME SOURCES a_fuzz.cc... DEPENDS kx_dom...)
# The target's LLVMFuzzerTestOneInput as a libFuzzer program where the fuzz preset builds it, and
# always as a replay program that runs the inputs it is given, so that ctest can replay them.
function(kx_add_fuzzer name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  if(KX_FUZZ)
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} kx_build_options -fsanitize=fuzzer)
  else()
    add_executable(${name} ${ARG_SOURCES} ${PROJECT_SOURCE_DIR}/fuzz/replay_main.cc)
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} kx_build_options)
    add_test(NAME fuzz.replay.${name}
             COMMAND ${name} ${PROJECT_SOURCE_DIR}/fuzz/inputs/${name}
                     ${PROJECT_SOURCE_DIR}/fuzz/crashes)
    set_tests_properties(fuzz.replay.${name} PROPERTIES LABELS fuzz TIMEOUT 120)
  endif()
endfunction()
