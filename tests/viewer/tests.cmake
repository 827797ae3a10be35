# The screen file tests link the loader; the viewer test also runs the built viewer
# program on the example screens.
file(GLOB XCV_TESTS CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/test_*.cpp)
foreach(src ${XCV_TESTS})
  get_filename_component(name ${src} NAME_WE)
  target_link_libraries(${name} PRIVATE xcscreenfile)
endforeach()
if(TARGET test_viewer)
  target_compile_definitions(test_viewer PRIVATE
    XCV_VIEWER="$<TARGET_FILE:xcontrols-view>"
    XCV_EXAMPLES="${PROJECT_SOURCE_DIR}/examples/screens")
  add_dependencies(test_viewer xcontrols-view)
endif()
