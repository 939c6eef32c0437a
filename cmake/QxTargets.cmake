# The one place that knows how a target of this project is compiled. Targets carry their own properties;
# nothing is set for a whole directory.

find_program(QX_CCACHE ccache)

function(qx_configure_target target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  if(QX_CCACHE)
    set_target_properties(${target} PROPERTIES CXX_COMPILER_LAUNCHER "${QX_CCACHE}")
  endif()
  # Results must be equal on every compiler, so no fused multiply-add unless it is written down.
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow -ffp-contract=off
    $<$<BOOL:${QX_WARNINGS_AS_ERRORS}>:-Werror>)
  if(QX_SANITIZE STREQUAL "address")
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  elseif(QX_SANITIZE STREQUAL "thread")
    target_compile_options(${target} PRIVATE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=thread)
  elseif(QX_SANITIZE)
    message(FATAL_ERROR "QX_SANITIZE is '${QX_SANITIZE}': use address, thread or leave it empty")
  endif()
endfunction()

# qx_add_test(NAME [OBJECTS] SOURCES ... [LIBRARIES ...])
# A GoogleTest program NAME. It links the shared library as a host does; with OBJECTS it links the library's
# object files instead, which is how tests reach the private cores in detail/.
function(qx_add_test name)
  cmake_parse_arguments(ARG "OBJECTS" "" "SOURCES;LIBRARIES" ${ARGN})
  find_package(GTest REQUIRED)
  add_executable(${name} ${ARG_SOURCES})
  qx_configure_target(${name})
  if(ARG_OBJECTS)
    target_link_libraries(${name} PRIVATE QxGraphics3D_objects)
  else()
    target_link_libraries(${name} PRIVATE QxGraphics3D::QxGraphics3D)
  endif()
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gmock GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE QX_SOURCE_DIR="${PROJECT_SOURCE_DIR}" QX_BINARY_DIR="${PROJECT_BINARY_DIR}")
  include(GoogleTest)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()

# qx_add_benchmark(NAME [OBJECTS] SOURCES ... [LIBRARIES ...]): a Google Benchmark program with its own main.
function(qx_add_benchmark name)
  cmake_parse_arguments(ARG "OBJECTS" "" "SOURCES;LIBRARIES" ${ARGN})
  find_package(benchmark REQUIRED)
  add_executable(${name} ${ARG_SOURCES})
  qx_configure_target(${name})
  if(ARG_OBJECTS)
    target_link_libraries(${name} PRIVATE QxGraphics3D_objects)
  else()
    target_link_libraries(${name} PRIVATE QxGraphics3D::QxGraphics3D)
  endif()
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} benchmark::benchmark benchmark::benchmark_main)
endfunction()
