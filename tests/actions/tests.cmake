# The tests in which the client ends a screen from inside the screen's own callbacks, or
# destroys a screen's widgets before the screen, once more under AddressSanitizer: the
# library, the screen kit and the harness compiled instrumented into the test programs,
# so that a handler that goes on with a record the close freed, or a teardown that
# reaches a widget already gone, stops the test with a use-after-free report.
if(NOT XC_SANITIZE)
  set(XC_ACTIONS_ASAN_FLAGS -fsanitize=address -fno-omit-frame-pointer)
  file(GLOB XC_ACTIONS_LIBRARY CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/library/xcontrols/*.cpp)
  pkg_check_modules(XC_ACTIONS_XCB REQUIRED IMPORTED_TARGET x11-xcb xcb)

  add_library(xcactions_asan STATIC ${XC_ACTIONS_LIBRARY}
    ${PROJECT_SOURCE_DIR}/tools/screenkit/screens.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/harness/xharness.cpp)
  target_include_directories(xcactions_asan PUBLIC
    ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/include/xcontrols ${MOTIF_INCLUDE}
    ${PROJECT_SOURCE_DIR}/library/xcontrols ${PROJECT_SOURCE_DIR}/tools/screenkit
    ${PROJECT_SOURCE_DIR}/tools/xcontrols-view ${CMAKE_CURRENT_SOURCE_DIR}/harness)
  target_compile_definitions(xcactions_asan PRIVATE XC_BUILDING)
  target_compile_options(xcactions_asan PUBLIC ${XC_ACTIONS_ASAN_FLAGS})
  target_link_options(xcactions_asan PUBLIC -fsanitize=address)
  target_link_libraries(xcactions_asan PUBLIC kx xcsnapshot ${MOTIF_LIB} PkgConfig::XLIBS
    PkgConfig::XTST PkgConfig::XC_ACTIONS_XCB GTest::gtest)

  foreach(test actions/test_actions_closing actions/test_actions_buttons
               screenitems/test_items_lifecycle)
    get_filename_component(name ${test} NAME)
    add_executable(${name}_asan ${CMAKE_CURRENT_SOURCE_DIR}/${test}.cpp)
    target_link_libraries(${name}_asan PRIVATE xcactions_asan GTest::gtest_main)
    add_test(NAME ${name}_asan COMMAND ${name}_asan)
    # The X libraries keep memory until exit by design: leaks are the pools' business.
    set_tests_properties(${name}_asan PROPERTIES TIMEOUT 600
      ENVIRONMENT "KX_HOME=${XC_BUILD_HOME};KX_TRACE=off;ASAN_OPTIONS=detect_leaks=0:abort_on_error=1")
  endforeach()
endif()
