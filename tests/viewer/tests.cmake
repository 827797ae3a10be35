# The screen file tests link the loader and read the example screens and the format's
# documentation; the viewer test also runs the built viewer program.
file(GLOB XCV_TESTS CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/test_*.cpp)
foreach(src ${XCV_TESTS})
  get_filename_component(name ${src} NAME_WE)
  target_link_libraries(${name} PRIVATE xcscreenfile)
  target_compile_definitions(${name} PRIVATE XCV_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
endforeach()
if(TARGET test_viewer)
  target_compile_definitions(test_viewer PRIVATE XCV_VIEWER="$<TARGET_FILE:xcontrols-view>")
  add_dependencies(test_viewer xcontrols-view)
endif()
# The end-to-end test drives the built viewer through its window.
if(TARGET test_viewer_e2e)
  target_compile_definitions(test_viewer_e2e PRIVATE XCV_VIEWER="$<TARGET_FILE:xcontrols-view>"
    XCV_E2E_SCREENS="${PROJECT_SOURCE_DIR}/examples/screens")
  add_dependencies(test_viewer_e2e xcontrols-view)
endif()
# The end-to-end test drives the built viewer through its window.
if(TARGET test_viewer_e2e)
  target_compile_definitions(test_viewer_e2e PRIVATE XCV_VIEWER="$<TARGET_FILE:xcontrols-view>"
    XCV_E2E_SCREENS="${PROJECT_SOURCE_DIR}/examples/screens")
  add_dependencies(test_viewer_e2e xcontrols-view)
endif()
