# The update tests also drive the viewer's feed of update lines, linked in from its source.
target_sources(test_updates PRIVATE ${PROJECT_SOURCE_DIR}/tools/xcontrols-view/liveupdates.cpp)
target_link_libraries(test_updates PRIVATE xcscreenfile)
target_include_directories(test_updates PRIVATE ${PROJECT_SOURCE_DIR}/tests/viewer)
# Once more under valgrind, with fewer update cycles: the entry records that the shown tree
# takes from an update's tree must outlive that tree, which only valgrind sees being read
# inside Motif's callbacks.
find_program(XC_VALGRIND valgrind)
if(XC_VALGRIND AND NOT XC_SANITIZE)
  add_test(NAME test_updates_valgrind
           COMMAND ${XC_VALGRIND} -q --error-exitcode=9 --num-callers=40 $<TARGET_FILE:test_updates>)
  set_tests_properties(test_updates_valgrind PROPERTIES LABELS valgrind TIMEOUT 1200
    ENVIRONMENT "KX_HOME=${XC_BUILD_HOME};KX_TRACE=off;XC_UPDATE_CYCLES=40")
endif()
# One case runs the built viewer with its --updates option.
target_compile_definitions(test_updates PRIVATE XCV_VIEWER="$<TARGET_FILE:xcontrols-view>")
add_dependencies(test_updates xcontrols-view)
