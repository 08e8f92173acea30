# Run with -P. Installs the build tree BUILD_DIR into WORK_DIR/prefix, then
# configures, builds and runs the consumer project SOURCE_DIR against it.
file(REMOVE_RECURSE ${WORK_DIR})
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE rc)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed (${rc}): ${ARGV}")
  endif()
endfunction()
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/prefix
    --config Release)
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/build
    -DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)

# The pkg-config file of the same prefix names the library.
find_program(PKG_CONFIG_EXECUTABLE pkg-config REQUIRED)
set(ENV{PKG_CONFIG_PATH} ${WORK_DIR}/prefix/lib/pkgconfig)
execute_process(COMMAND ${PKG_CONFIG_EXECUTABLE} --libs libzelmo
                OUTPUT_VARIABLE pc_libs RESULT_VARIABLE rc)
if(NOT rc EQUAL 0 OR NOT pc_libs MATCHES "-lzelmo")
  message(FATAL_ERROR "pkg-config libzelmo failed: ${pc_libs}")
endif()
