# Compiler flags of the project's own code, and the functions that define its libraries and tests.

add_library(veskara_options INTERFACE)
target_compile_options(veskara_options INTERFACE
  $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<BOOL:${VESKARA_WERROR}>:-Werror>>)
# No fused multiply-add: layouts and deals must be the same on every machine.
target_compile_options(veskara_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-ffp-contract=off>)
# Bounds checks of the standard containers: an index out of range aborts, in release builds too.
target_compile_definitions(veskara_options INTERFACE _GLIBCXX_ASSERTIONS)

# Release builds are hardened as Debian's own packages are, and contain no path of the machine that built them.
# Sanitized builds have their own checks in the same places.
set(hardening -fstack-protector-strong -Wformat -Wformat-security -Wdate-time)
include(CheckCXXCompilerFlag)
foreach(flag -fstack-clash-protection -fcf-protection)  # not on every processor
  string(MAKE_C_IDENTIFIER "has${flag}" has_flag)
  check_cxx_compiler_flag(${flag} ${has_flag})
  if(${has_flag})
    list(APPEND hardening ${flag})
  endif()
endforeach()
# A packager may set a higher level; two different levels are an error.
if(NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
  list(APPEND hardening -D_FORTIFY_SOURCE=2)
endif()
# A compiler cache may have made the paths relative to the build's directory.
file(RELATIVE_PATH up ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR}/)
set(is_executable $<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>)
set(is_static $<STREQUAL:$<TARGET_PROPERTY:TYPE>,STATIC_LIBRARY>)
target_compile_options(veskara_options INTERFACE $<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:CXX>>:
  ${hardening} $<$<OR:${is_executable},${is_static}>:-fPIE>
  -ffile-prefix-map=${PROJECT_BINARY_DIR}/= -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${up}=>)
target_link_options(veskara_options INTERFACE $<$<CONFIG:Release>:
  -Wl,-z,relro -Wl,-z,now -Wl,--as-needed $<${is_executable}:-pie>>)

# veskara_library(NAME SOURCES ... LINKS ...): the library of one folder below src/.
function(veskara_library name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
  add_library(veskara_${name} STATIC ${arg_SOURCES})
  target_include_directories(veskara_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(veskara_${name} PUBLIC ${arg_LINKS} PRIVATE veskara_options)
endfunction()

# veskara_test(NAME SOURCES ... LINKS ... [MACHINE_FONTS] [PROPERTIES ...] [FILTER ...]): a test program. ctest runs
# each of its tests, or those that match FILTER, a GoogleTest filter. With MACHINE_FONTS it sees all fonts of the
# machine. Its files are compiled together, because most of what a compiler reads in one of them is GoogleTest. In ctest,
# sanitizers report addresses without names: to look up the names of all memory that libraries keep takes as long as a
# test. Run by hand, a test reports names and lines.
function(veskara_test name)
  cmake_parse_arguments(arg "MACHINE_FONTS" "FILTER" "SOURCES;LINKS;PROPERTIES" ${ARGN})
  add_executable(${name} ${arg_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/surroundings.cpp)
  target_compile_definitions(${name} PRIVATE
    VESKARA_LEAKS="${PROJECT_SOURCE_DIR}/tests/support/leaks.supp"
    $<$<NOT:$<BOOL:${arg_MACHINE_FONTS}>>:VESKARA_FONTS="${VESKARA_TEST_FONTS}">)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_options(${name} PRIVATE ${VESKARA_TEST_FLAGS})
  set_target_properties(${name} PROPERTIES UNITY_BUILD ON)
  target_link_libraries(${name} PRIVATE ${arg_LINKS} veskara_options GTest::gtest_main GTest::gmock)
  gtest_discover_tests(${name} TEST_PREFIX "${VESKARA_TEST_PREFIX}" TEST_FILTER "${arg_FILTER}"
    PROPERTIES ENVIRONMENT ASAN_OPTIONS=symbolize=0 ${arg_PROPERTIES} DISCOVERY_TIMEOUT 60)
endfunction()
