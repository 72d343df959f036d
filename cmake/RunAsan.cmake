# Builds and runs, in build/asan, the tests that carry the label asan; a test has the name of its target.
# Run from the checkout: cmake -D CTEST=ctest -P cmake/RunAsan.cmake
function(step)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
  if(result)
    message(FATAL_ERROR "failed (${result}): ${ARGN}")
  endif()
endfunction()

step(${CMAKE_COMMAND} --preset asan)

execute_process(COMMAND ${CTEST} --preset asan -L asan --show-only=json-v1 OUTPUT_VARIABLE listed RESULT_VARIABLE result)
string(JSON count ERROR_VARIABLE error LENGTH "${listed}" tests)
if(result OR error OR count EQUAL 0)
  message(FATAL_ERROR "no test carries the label asan")
endif()
math(EXPR last "${count} - 1")
foreach(i RANGE ${last})
  string(JSON name GET "${listed}" tests ${i} name)
  list(APPEND targets ${name})
endforeach()

step(${CMAKE_COMMAND} --build --preset asan --target ${targets})
set(ENV{ASAN_OPTIONS} "detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1")
set(ENV{UBSAN_OPTIONS} "print_stacktrace=1:halt_on_error=1")
step(${CTEST} --preset asan -L asan --no-tests=error)
