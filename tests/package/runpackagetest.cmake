# cmake -P script run by ctest: install the build tree into a staging prefix,
# build the host of host/ against it and run that host once.
function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${what} failed (${result}):\n${out}")
  endif()
endfunction()

set(stage ${WORK_DIR}/stage)
set(host_build ${WORK_DIR}/build)
file(REMOVE_RECURSE ${stage})

run("Installing the package" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${stage})
set(configure_args -S ${HOST_SOURCE} -B ${host_build} -DCMAKE_BUILD_TYPE=Release
  -DCMAKE_PREFIX_PATH=${stage} -DQt5_DIR=${Qt5_DIR} -DCMAKE_CXX_COMPILER=${CXX_COMPILER})
if(CXX_LAUNCHER)
  list(APPEND configure_args -DCMAKE_CXX_COMPILER_LAUNCHER=${CXX_LAUNCHER})
endif()
run("Configuring the host against the package" ${CMAKE_COMMAND} ${configure_args})
run("Building the host" ${CMAKE_COMMAND} --build ${host_build})
run("Running the host" ${host_build}/ptz-package-host)
