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

# ptz_install_library(<target> EXPORT_NAME <name> [DESTINATION <include subdir>]
#                     HEADERS <files...> [GENERATED <files...>])
# Installs a library and its public headers into the package's export set, known
# as PreviewPTZControl::<EXPORT_NAME> (an ALIAS of that name serves the tree).
# HEADERS are relative to the current source folder, GENERATED ones absolute in
# the current binary folder; both keep their sub-folders under
# include/<DESTINATION>. Private headers (*_p.h) stay behind.
function(ptz_install_library target)
  cmake_parse_arguments(ARG "" "EXPORT_NAME;DESTINATION" "HEADERS;GENERATED" ${ARGN})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${ARG_EXPORT_NAME})
  add_library(PreviewPTZControl::${ARG_EXPORT_NAME} ALIAS ${target})
  set(include_dir ${CMAKE_INSTALL_INCLUDEDIR})
  if(ARG_DESTINATION)
    set(include_dir ${CMAKE_INSTALL_INCLUDEDIR}/${ARG_DESTINATION})
  endif()
  target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:${include_dir}>)
  install(TARGETS ${target} EXPORT PreviewPTZControlTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  foreach(header ${ARG_HEADERS} ${ARG_GENERATED})
    if(header MATCHES "_p\\.h$")
      continue()
    endif()
    if(IS_ABSOLUTE ${header})
      file(RELATIVE_PATH rel ${CMAKE_CURRENT_BINARY_DIR} ${header})
      set(file ${header})
    else()
      set(rel ${header})
      set(file ${CMAKE_CURRENT_SOURCE_DIR}/${header})
    endif()
    get_filename_component(sub ${rel} DIRECTORY)
    install(FILES ${file} DESTINATION ${include_dir}/${sub})
  endforeach()
endfunction()
