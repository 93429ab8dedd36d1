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

# dnc_add_engine_runs(NAME): a test whose cases run on both tool database engines is two CTest
# tests: NAME on SQLite files, NAME_pg on the PostgreSQL test server (label postgres; one such
# test at a time, since they share its one table).
function(dnc_add_engine_runs name)
  get_test_property(${name} ENVIRONMENT env)
  get_test_property(${name} LABELS labels)
  get_test_property(${name} TIMEOUT timeout)
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "${env};DNC_TOOL_ENGINES=sqlite")
  add_test(NAME ${name}_pg COMMAND ${name})
  set_tests_properties(${name}_pg PROPERTIES
    LABELS "${labels};postgres"
    TIMEOUT ${timeout}
    RESOURCE_LOCK postgres
    ENVIRONMENT "${env};DNC_TOOL_ENGINES=postgres")
endfunction()
