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
  target_compile_definitions(test_viewer_e2e PRIVATE XCV_VIEWER="$<TARGET_FILE:xcontrols-view>")
  add_dependencies(test_viewer_e2e xcontrols-view)
endif()
# The loader once more under AddressSanitizer and UndefinedBehaviorSanitizer, with its
# own sources compiled in: damaged files must never read or write out of bounds.
if(NOT XC_SANITIZE)
  find_package(nlohmann_json 3 REQUIRED)
  get_target_property(XCV_LOADER_SOURCES xcscreenfile SOURCES)
  list(TRANSFORM XCV_LOADER_SOURCES PREPEND ${PROJECT_SOURCE_DIR}/tools/xcontrols-view/)
  add_executable(test_screenfile_asan ${CMAKE_CURRENT_LIST_DIR}/test_screenfile.cpp
    ${XCV_LOADER_SOURCES}
    ${PROJECT_SOURCE_DIR}/tools/screenkit/screens.cpp)
  target_include_directories(test_screenfile_asan PRIVATE
    ${PROJECT_SOURCE_DIR}/tools/xcontrols-view ${PROJECT_SOURCE_DIR}/tools/screenkit
    ${PROJECT_SOURCE_DIR}/include/xcontrols ${MOTIF_INCLUDE})
  target_compile_definitions(test_screenfile_asan PRIVATE XCV_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  target_compile_options(test_screenfile_asan PRIVATE -fsanitize=address,undefined
    -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  target_link_options(test_screenfile_asan PRIVATE -fsanitize=address,undefined)
  target_link_libraries(test_screenfile_asan PRIVATE kx nlohmann_json::nlohmann_json
    PkgConfig::XLIBS GTest::gtest_main)
  add_test(NAME test_screenfile_asan COMMAND test_screenfile_asan)
  set_tests_properties(test_screenfile_asan PROPERTIES TIMEOUT 600
    ENVIRONMENT "KX_TRACE=off;ASAN_OPTIONS=abort_on_error=1")
endif()
