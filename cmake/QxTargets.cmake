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
  # Optimising, g++ 12 suspects the assignment of a literal to std::string of overlapping itself.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  if(QX_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage -fprofile-abs-path)
    target_link_options(${target} PRIVATE --coverage)
  endif()
  if(QX_TIDY)
    set_target_properties(${target} PROPERTIES CXX_CLANG_TIDY "clang-tidy-14;--quiet;--warnings-as-errors=*")
  endif()
  # A test or program of a sanitizer build carries the runtime's options itself, whatever starts it.
  get_target_property(type ${target} TYPE)
  if(QX_SANITIZE AND type STREQUAL "EXECUTABLE")
    target_sources(${target} PRIVATE "${PROJECT_SOURCE_DIR}/cmake/QXSanitizerOptions.cpp")
  endif()
  if(QX_BUILD_FUZZERS)
    # Coverage feedback from the library too, not only from the fuzz target's own file.
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
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

# qx_add_plugin(NAME INI file [DATA dir ...] SOURCES ... [LIBRARIES ...])
# A module NAME (lib<NAME>.so) that hosts find through its configuration file INI. Module, configuration and the
# folders of DATA stand together in <libdir>/QxGraphics3D/plugins, in the build tree as when installed, because
# the configuration names the module relative to itself. Plug-ins link the shared library as any host does.
function(qx_add_plugin name)
  cmake_parse_arguments(ARG "" "INI" "DATA;SOURCES;LIBRARIES" ${ARGN})
  set(folder QxGraphics3D/plugins)
  add_library(${name} MODULE ${ARG_SOURCES})
  qx_configure_target(${name})
  target_link_libraries(${name} PRIVATE QxGraphics3D::QxGraphics3D ${ARG_LIBRARIES})
  if(NOT QX_SANITIZE)
    target_link_options(${name} PRIVATE LINKER:-z,defs)
  endif()
  set_target_properties(${name} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${folder}"
    INSTALL_RPATH "$ORIGIN/../..")
  install(TARGETS ${name} LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/${folder}")
  get_filename_component(ini_name "${ARG_INI}" NAME)
  configure_file("${ARG_INI}" "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${folder}/${ini_name}" COPYONLY)
  install(FILES "${ARG_INI}" DESTINATION "${CMAKE_INSTALL_LIBDIR}/${folder}")
  foreach(data IN LISTS ARG_DATA)
    file(COPY "${data}" DESTINATION "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${folder}")
    install(DIRECTORY "${data}" DESTINATION "${CMAKE_INSTALL_LIBDIR}/${folder}")
  endforeach()
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
  # Optimising, g++ 12 takes the growth of a vector that began with a literal for writing past its first block.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${name} PRIVATE -Wno-stringop-overflow -Wno-stringop-overread -Wno-array-bounds)
  endif()
  include(GoogleTest)
  # The value of a parameter is no part of a test's name: a structure prints as its bytes, addresses among them.
  gtest_discover_tests(${name} NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
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

# qx_add_fuzzer(NAME [OBJECTS] SOURCES ... [LIBRARIES ...] CORPUS dir [SECONDS n])
# A fuzz target NAME (fuzz_<subject>) that defines LLVMFuzzerTestOneInput and has no main. CORPUS is the folder
# of its inputs, relative to the calling list file; it holds at least one file. With QX_BUILD_FUZZERS it is a
# libFuzzer program and the test NAME runs it for QX_FUZZ_SECONDS, or for n if that is longer, finds going to the build
# tree; without, the test NAME runs the corpus through a plain main.
function(qx_add_fuzzer name)
  cmake_parse_arguments(ARG "OBJECTS" "CORPUS;SECONDS" "SOURCES;LIBRARIES" ${ARGN})
  set(seconds ${QX_FUZZ_SECONDS})
  if(ARG_SECONDS AND ARG_SECONDS GREATER seconds)
    set(seconds ${ARG_SECONDS})
  endif()
  get_filename_component(corpus "${ARG_CORPUS}" ABSOLUTE)
  if(NOT ARG_CORPUS OR NOT IS_DIRECTORY "${corpus}")
    message(FATAL_ERROR "${name}: the corpus folder '${ARG_CORPUS}' is missing")
  endif()
  add_executable(${name} ${ARG_SOURCES})
  qx_configure_target(${name})
  if(ARG_OBJECTS)
    target_link_libraries(${name} PRIVATE QxGraphics3D_objects)
  else()
    target_link_libraries(${name} PRIVATE QxGraphics3D::QxGraphics3D)
  endif()
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES})
  if(QX_BUILD_FUZZERS)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    set(found "${CMAKE_CURRENT_BINARY_DIR}/found/${name}")
    file(MAKE_DIRECTORY "${found}")
    # libFuzzer writes what it finds into the first folder; the corpus itself is only read. No leak check
    # after each input: the check at the end sees the same leaks and costs nothing a run.
    add_test(NAME ${name} COMMAND ${name} -max_total_time=${seconds} -timeout=10 -rss_limit_mb=2048
      -verbosity=1 -print_final_stats=1 "-artifact_prefix=${found}/" "${found}" "${corpus}")
    math(EXPR limit "${seconds} + 120")
    set_tests_properties(${name} PROPERTIES LABELS fuzz TIMEOUT ${limit})
  elseif(QX_BUILD_TESTS)
    target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/fuzz/QXCorpusMain.cpp")
    add_test(NAME ${name} COMMAND ${name} "${corpus}")
    set_tests_properties(${name} PROPERTIES LABELS corpus TIMEOUT 300)
  endif()
endfunction()
