# Installs BUILD below FOLDER, moves the result to PREFIX and checks what must not be in it.
file(REMOVE_RECURSE "${FOLDER}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${FOLDER}/installed"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(RENAME "${FOLDER}/installed" "${PREFIX}")

file(GLOB_RECURSE private "${PREFIX}/include/*")
list(FILTER private INCLUDE REGEX "/detail/|\\.cpp$")
if(private)
  message(FATAL_ERROR "private files were installed: ${private}")
endif()
# A folder of the build or source tree in an installed text would break it on the next machine.
file(GLOB_RECURSE texts "${PREFIX}/*.cmake" "${PREFIX}/*.pc" "${PREFIX}/*.ini")
foreach(text IN LISTS texts)
  file(READ "${text}" content)
  string(FIND "${content}" "${BUILD}" found)
  if(NOT found EQUAL -1)
    message(FATAL_ERROR "${text} names the build folder")
  endif()
endforeach()
