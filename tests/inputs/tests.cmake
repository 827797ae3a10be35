# The input controls once more under AddressSanitizer: their sources, the shared helpers
# and the harness compiled instrumented into each test program, so that a timer or a
# callback that reaches a freed control record (an input destroyed while its button is
# held, a field destroyed while focused) stops the test with a use-after-free report.
if(NOT XC_SANITIZE)
  set(XC_INPUTS_DIR ${CMAKE_CURRENT_SOURCE_DIR}/inputs)
  set(XC_LIB_DIR ${PROJECT_SOURCE_DIR}/library/xcontrols)
  set(XC_ASAN_FLAGS -fsanitize=address -fno-omit-frame-pointer)

  add_library(xcinputs_asan STATIC
    ${XC_LIB_DIR}/guicommon.cpp
    ${XC_LIB_DIR}/guiinputkit.cpp
    ${XC_LIB_DIR}/guisetupdown.cpp
    ${XC_LIB_DIR}/guinuminput.cpp
    ${XC_LIB_DIR}/guiservertime.cpp
    ${XC_LIB_DIR}/guidateinput.cpp
    ${XC_LIB_DIR}/guitimeinput.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/harness/xharness.cpp)
  target_include_directories(xcinputs_asan PUBLIC
    ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/include/xcontrols ${MOTIF_INCLUDE}
    ${CMAKE_CURRENT_SOURCE_DIR}/harness ${XC_LIB_DIR})
  target_compile_options(xcinputs_asan PUBLIC ${XC_ASAN_FLAGS})
  target_link_options(xcinputs_asan PUBLIC -fsanitize=address)
  target_link_libraries(xcinputs_asan PUBLIC kx xcsnapshot ${MOTIF_LIB} PkgConfig::XLIBS
    PkgConfig::XTST GTest::gtest)

  foreach(name test_numinput test_datetime)
    add_executable(${name}_asan ${XC_INPUTS_DIR}/${name}.cpp)
    target_link_libraries(${name}_asan PRIVATE xcinputs_asan GTest::gtest_main)
    add_test(NAME ${name}_asan COMMAND ${name}_asan)
    # The X libraries keep memory until exit by design: leaks are the pools' business.
    set_tests_properties(${name}_asan PROPERTIES TIMEOUT 600
      ENVIRONMENT "KX_HOME=${XC_BUILD_HOME};KX_TRACE=off;ASAN_OPTIONS=detect_leaks=0:abort_on_error=1")
  endforeach()
endif()
