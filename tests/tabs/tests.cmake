# The tab holder destroyed from its own callback and with its widgets: Motif is not
# instrumented, so only valgrind sees a return into a freed holder.
xc_add_valgrind_test(test_tabs)
