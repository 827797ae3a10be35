# The tab holder destroyed from its own callback and with its widgets: Motif is not
# instrumented, so only valgrind sees a return into a freed holder. Labelled like the
# other valgrind runs.
find_program(XC_VALGRIND valgrind)
if(XC_VALGRIND AND NOT XC_SANITIZE)
  add_test(NAME test_tabs_valgrind
           COMMAND ${XC_VALGRIND} -q --error-exitcode=9 --num-callers=40 $<TARGET_FILE:test_tabs>)
  set_tests_properties(test_tabs_valgrind PROPERTIES LABELS valgrind TIMEOUT 600
    ENVIRONMENT "KX_HOME=${XC_BUILD_HOME};KX_TRACE=off")
endif()
