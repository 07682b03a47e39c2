# Installs the library into a folder of its own and builds programs against it.
#
#   cmake -D KIND=package|pkgconfig|subdirectory -D BUILD_FOLDER=... -D WORK_FOLDER=...
#         -D SOURCE_FOLDER=... -D COMPILER=... -D FLAGS=... [-D PKG_CONFIG=...] -P consume.cmake
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    list(JOIN ARGV " " line)
    message(FATAL_ERROR "${line}\n${output}\nended with ${result}")
  endif()
  set(OUTPUT "${output}" PARENT_SCOPE)
endfunction()

function(expect_works)
  run(${ARGV})
  if(NOT OUTPUT STREQUAL "consumer: works\n")
    message(FATAL_ERROR "${ARGV} printed: ${OUTPUT}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK_FOLDER})
file(MAKE_DIRECTORY ${WORK_FOLDER})
set(consumers ${SOURCE_FOLDER}/tests/consume)
# The programs keep their settings to themselves.
set(ENV{KX_SETTINGS} ${WORK_FOLDER}/settings.ini)

if(KIND STREQUAL "subdirectory")
  run(${CMAKE_COMMAND} -G Ninja -S ${consumers}/subdirectory -B ${WORK_FOLDER}/build
      -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_CXX_FLAGS=${FLAGS}
      -D KX_SOURCE_FOLDER=${SOURCE_FOLDER})
  # The whole library once more takes its time: by default the program is compiled, not linked.
  if("$ENV{KX_LARGE}" STREQUAL "1")
    run(${CMAKE_COMMAND} --build ${WORK_FOLDER}/build --target consumer)
    expect_works(${WORK_FOLDER}/build/consumer)
  else()
    run(${CMAKE_COMMAND} --build ${WORK_FOLDER}/build --target consumer_objects)
    run(${CMAKE_COMMAND} --build ${WORK_FOLDER}/build --target kx_text)
  endif()
  return()
endif()

set(root ${WORK_FOLDER}/root)
run(${CMAKE_COMMAND} --install ${BUILD_FOLDER} --prefix ${root})
# What was installed may be moved.
file(RENAME ${root} ${WORK_FOLDER}/moved)
set(root ${WORK_FOLDER}/moved)
file(GLOB_RECURSE pc ${root}/*/kxmessage.pc)
get_filename_component(pc_folder ${pc} DIRECTORY)
get_filename_component(lib_folder ${pc_folder} DIRECTORY)

if(KIND STREQUAL "package")
  foreach(file bin/kxmsg share/man/man1/kxmsg.1 include/kxmessage/kxmessage.h)
    if(NOT EXISTS ${root}/${file})
      message(FATAL_ERROR "${file} was not installed")
    endif()
  endforeach()
  run(${root}/bin/kxmsg --version)
  run(${CMAKE_COMMAND} -G Ninja -S ${consumers}/package -B ${WORK_FOLDER}/build
      -D CMAKE_PREFIX_PATH=${root} -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_CXX_FLAGS=${FLAGS})
  run(${CMAKE_COMMAND} --build ${WORK_FOLDER}/build)
  expect_works(${WORK_FOLDER}/build/consumer_shared)
  expect_works(${WORK_FOLDER}/build/consumer_static)
else()
  set(ENV{PKG_CONFIG_PATH} ${pc_folder})
  separate_arguments(flags UNIX_COMMAND "${FLAGS}")
  run(${PKG_CONFIG} --cflags --libs kxmessage)
  separate_arguments(shared UNIX_COMMAND "${OUTPUT}")
  run(${COMPILER} -std=c++20 ${flags} ${consumers}/main.cc ${shared} -Wl,-rpath,${lib_folder}
      -o ${WORK_FOLDER}/consumer_shared)
  expect_works(${WORK_FOLDER}/consumer_shared)
  run(${PKG_CONFIG} --static --cflags --libs kxmessage)
  separate_arguments(static UNIX_COMMAND "${OUTPUT}")
  list(TRANSFORM static REPLACE "^-lkxmessage$" "${lib_folder}/libkxmessage.a")
  run(${COMPILER} -std=c++20 ${flags} ${consumers}/main.cc ${static}
      -o ${WORK_FOLDER}/consumer_static)
  expect_works(${WORK_FOLDER}/consumer_static)
endif()
