# t0_add_program_test(name PROGRAM [ARGUMENT…]): a program, a target or a path, as a test, in the environment that the
# sanitizers need.
function(t0_add_program_test name program)
  if(T0_TSAN)
    set(launcher setarch -R)
  endif()
  if(TARGET ${program})
    set(program $<TARGET_FILE:${program}>)
  endif()
  add_test(NAME ${name} COMMAND ${launcher} ${program} ${ARGN})
  set_tests_properties(${name} PROPERTIES
    TIMEOUT 600
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/tsan/tsan.supp exitcode=66 second_deadlock_stack=1;ASAN_OPTIONS=detect_leaks=1;LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0")
endfunction()
