# The checks that need no program of ours to run, as tests like any other: `ctest -L format`, `-L lint`, `-L arrow`, `-L asan`.

find_program(VELLORA_PYTHON NAMES python3 HINTS /usr/bin REQUIRED)
find_program(VELLORA_CLANG_FORMAT NAMES clang-format-14)
find_program(VELLORA_CLANG_TIDY NAMES clang-tidy-14)
find_program(VELLORA_SHELLCHECK NAMES shellcheck)

function(vellora_check name label)
  add_test(NAME ${name} COMMAND ${ARGN} WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
  set_tests_properties(${name} PROPERTIES LABELS ${label} TIMEOUT 1500)
endfunction()

vellora_check(flechas arrow ${VELLORA_PYTHON} tests/arquitectura/flechas.py .)
vellora_check(prueba_flechas arrow ${VELLORA_PYTHON} tests/arquitectura/prueba_flechas.py)

# A missing program makes its check fail by name, not vanish.
vellora_check(formato format ${VELLORA_PYTHON} tools/comprobar/formato.py ${VELLORA_CLANG_FORMAT})
vellora_check(lint_cpp lint ${VELLORA_PYTHON} tools/comprobar/lint.py ${VELLORA_CLANG_TIDY} ${CMAKE_BINARY_DIR})
set_tests_properties(lint_cpp PROPERTIES PROCESSORS 2)
vellora_check(lint_sh lint ${VELLORA_SHELLCHECK} -x .ci/run tests/support/en-casa-propia
  tools/bench tools/comun.sh tools/preparar tools/run tools/test)

# Builds and runs a tree of its own; in a sanitized tree it would only start itself again.
if(NOT VELLORA_SANITIZER)
  vellora_check(asan asan ${CMAKE_COMMAND} -D CTEST=${CMAKE_CTEST_COMMAND} -P cmake/RunAsan.cmake)
  set_tests_properties(asan PROPERTIES PROCESSORS 2 TIMEOUT 3000)
endif()

# Known only once every folder has been read.
function(vellora_late_checks)
  if(TARGET all_qmllint)
    vellora_check(lint_qml lint ${CMAKE_COMMAND} --build ${CMAKE_BINARY_DIR} --target all_qmllint -- -k 0)
  endif()
  vellora_check_listed_sources("${PROJECT_SOURCE_DIR}")
endfunction()

# No target may be built from code that stands outside the checkout and its build tree.
function(vellora_check_listed_sources folder)
  get_property(targets DIRECTORY "${folder}" PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
      cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${folder}" NORMALIZE OUTPUT_VARIABLE path)
      cmake_path(IS_PREFIX PROJECT_SOURCE_DIR "${path}" inside)
      cmake_path(IS_PREFIX CMAKE_BINARY_DIR "${path}" built)
      if(path MATCHES "\\.(cpp|h|qml|js)$" AND NOT inside AND NOT built)
        message(FATAL_ERROR "${target} lists ${path}, which is outside the project")
      endif()
    endforeach()
  endforeach()
  get_property(subfolders DIRECTORY "${folder}" PROPERTY SUBDIRECTORIES)
  foreach(subfolder IN LISTS subfolders)
    vellora_check_listed_sources("${subfolder}")
  endforeach()
endfunction()

cmake_language(DEFER DIRECTORY "${PROJECT_SOURCE_DIR}" CALL vellora_late_checks)
