# Shared build settings and helpers.

macro(tallyvane_setup_flags)
  add_compile_options(-Wall -Wextra -Wno-unused-parameter)
  if(TALLYVANE_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=address,undefined)
  endif()
  if(TALLYVANE_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
  endif()
  if(TALLYVANE_TSAN)
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
  endif()
endmacro()

# tallyvane_library(NAME DIR [QT] LIBS ...): a static library of every .cpp/.h
# under DIR (recursively).
function(tallyvane_library name)
  cmake_parse_arguments(ARG "" "" "DIRS;LIBS;EXCLUDE" ${ARGN})
  set(srcs)
  foreach(d ${ARG_DIRS})
    file(GLOB_RECURSE found CONFIGURE_DEPENDS ${d}/*.cpp ${d}/*.h ${d}/*.qrc)
    list(APPEND srcs ${found})
  endforeach()
  foreach(ex ${ARG_EXCLUDE})
    list(FILTER srcs EXCLUDE REGEX "${ex}")
  endforeach()
  if(NOT srcs)
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${name}_empty.cpp "// no sources yet\n")
    set(srcs ${CMAKE_CURRENT_BINARY_DIR}/${name}_empty.cpp)
  endif()
  add_library(${name} STATIC ${srcs})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LIBS})
endfunction()

# tallyvane_test(NAME DIR LIBS ...): one GoogleTest executable of every .cpp in
# DIR, registered with CTest test by test, run on the offscreen platform.
function(tallyvane_test name dir)
  cmake_parse_arguments(ARG "" "" "LIBS" ${ARGN})
  file(GLOB_RECURSE srcs CONFIGURE_DEPENDS ${dir}/*.cpp ${dir}/*.h)
  if(NOT srcs)
    return()
  endif()
  add_executable(${name} ${srcs})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} tv_testsupport GTest::gtest GTest::gmock)
  target_compile_definitions(${name} PRIVATE
    TV_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data"
    TV_BINARY_DIR="${PROJECT_BINARY_DIR}")
  gtest_discover_tests(${name}
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
    PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TV_TEST_DATA=${PROJECT_SOURCE_DIR}/tests/data"
    DISCOVERY_TIMEOUT 60)
endfunction()
