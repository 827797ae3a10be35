# The popup menus once more under valgrind: a menu goes with its widgets from a timer or
# with its parent, and only valgrind sees Motif read what went (Motif is not instrumented).
find_program(XC_VALGRIND valgrind)
if(XC_VALGRIND AND NOT XC_SANITIZE)
  add_test(NAME test_popup_valgrind
           COMMAND ${XC_VALGRIND} -q --error-exitcode=9 --num-callers=40 $<TARGET_FILE:test_popup>)
  set_tests_properties(test_popup_valgrind PROPERTIES LABELS valgrind TIMEOUT 600
    ENVIRONMENT "KX_HOME=${XC_BUILD_HOME};KX_TRACE=off")
endif()
