# The popup menus once more under valgrind: a menu goes with its widgets from a timer or
# with its parent, and only valgrind sees Motif read what went (Motif is not instrumented).
xc_add_valgrind_test(test_popup)
