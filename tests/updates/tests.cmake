# The update tests also drive the viewer's feed of update lines, linked in from its source.
target_sources(test_updates PRIVATE ${PROJECT_SOURCE_DIR}/tools/xcontrols-view/liveupdates.cpp)
target_link_libraries(test_updates PRIVATE xcscreenfile)
target_include_directories(test_updates PRIVATE ${PROJECT_SOURCE_DIR}/tests/viewer)
# Once more under valgrind, with fewer update cycles: the entry records that the shown tree
# takes from an update's tree must outlive that tree, which only valgrind sees being read
# inside Motif's callbacks.
xc_add_valgrind_test(test_updates ENV XC_UPDATE_CYCLES=40)
# One case runs the built viewer with its --updates option.
target_compile_definitions(test_updates PRIVATE XCV_VIEWER="$<TARGET_FILE:xcontrols-view>")
add_dependencies(test_updates xcontrols-view)
