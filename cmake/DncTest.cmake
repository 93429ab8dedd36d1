# dnc_add_test(NAME SOURCES a.cpp ... LIBS lib ... LABELS unit|integration|gui [TIMEOUT s])
# Every test runs offscreen so that a test box needs no display.
function(dnc_add_test name)
  cmake_parse_arguments(T "" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} dnc_test_support Qt6::Test)
  add_test(NAME ${name} COMMAND ${name})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 60)
  endif()
  set(env "QT_QPA_PLATFORM=offscreen")
  if(TARGET vcontrol)
    list(APPEND env "DNC_VCONTROL=$<TARGET_FILE:vcontrol>")
  endif()
  set_tests_properties(${name} PROPERTIES
    LABELS "${T_LABELS}"
    TIMEOUT ${T_TIMEOUT}
    ENVIRONMENT "${env}")
endfunction()
