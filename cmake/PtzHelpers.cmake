# ptz_add_test(<name> SOURCES <files...> LIBS <targets...> [SUPPORT])
# One Qt Test program, run by ctest on the offscreen platform. SUPPORT links the shared
# test fixtures of tests/support (include them as "support/....h").
function(ptz_add_test name)
  cmake_parse_arguments(ARG "SUPPORT" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE Qt5::Test ${ARG_LIBS})
  if(ARG_SUPPORT)
    target_link_libraries(${name} PRIVATE ptz_test_support)
  endif()
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_LOGGING_RULES=ZephClientInfo.debug=false"
    TIMEOUT 300)
endfunction()

# ptz_add_bench(<name> SOURCES <files...> LIBS <targets...>)
function(ptz_add_bench name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
endfunction()
