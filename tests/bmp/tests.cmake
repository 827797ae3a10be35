# The BMP reader's and shared drawing resources' tests: white-box sources, the exported
# colour-allocation spy, runs on servers of depth 16 and 8, a server of its own for the
# font fallback, the regression corpus, and the check that the committed button
# pictures are the ones tools/mkbmps draws.
foreach(t test_bmp_reader test_bmp_fill)
  target_include_directories(${t} PRIVATE ${PROJECT_SOURCE_DIR}/tools/mkbmps
                                          ${PROJECT_SOURCE_DIR}/library/xcontrols)
  target_compile_definitions(${t} PRIVATE XC_BMP_CORPUS="${CMAKE_CURRENT_LIST_DIR}/corpus")
endforeach()

# The library's colour allocation replies reach the test program's own definition.
set_target_properties(test_bmp_reader PROPERTIES ENABLE_EXPORTS ON)
target_link_libraries(test_bmp_reader PRIVATE ${CMAKE_DL_LIBS})

# The fuzz target's checks run over the corpus on the library's private functions.
target_sources(test_bmp_fill PRIVATE ${CMAKE_CURRENT_LIST_DIR}/fuzz/bmp_fuzz.cpp
  ${PROJECT_SOURCE_DIR}/library/xcontrols/bmpdecode.cpp
  ${PROJECT_SOURCE_DIR}/library/xcontrols/bmpfill.cpp)

# Private servers: xvfb-run -a picks a free display and sets DISPLAY for the program.
# The lock keeps two of them from starting at the same moment (xvfb-run races on the
# display number).
set(XC_BMP_TEST_ENV "KX_HOME=${XC_BUILD_HOME};KX_TRACE=off")
# The sweeps over broken files do not depend on the depth: they run once, at 24.
foreach(depth 16 8)
  add_test(NAME test_bmp_reader_depth${depth}
    COMMAND xvfb-run -a -s "-screen 0 1024x768x${depth}" $<TARGET_FILE:test_bmp_reader>
            --gtest_filter=-*BrokenFiles*)
  set_tests_properties(test_bmp_reader_depth${depth} PROPERTIES
    TIMEOUT 600 RESOURCE_LOCK xvfb-run ENVIRONMENT "${XC_BMP_TEST_ENV}")
endforeach()
add_test(NAME test_bmp_reader_fontfallback
  COMMAND xvfb-run -a -s "-screen 0 1024x768x24" $<TARGET_FILE:test_bmp_reader>
          --gtest_filter=*WithoutAMatchingFont*)
set_tests_properties(test_bmp_reader_fontfallback PROPERTIES
  TIMEOUT 600 RESOURCE_LOCK xvfb-run ENVIRONMENT "${XC_BMP_TEST_ENV};XC_TEST_OWN_SERVER=1")

# The button pictures are drawn by a program of the project; they must not drift.
add_executable(mkbmps ${PROJECT_SOURCE_DIR}/tools/mkbmps/mkbmps.cpp)
add_test(NAME test_bmp_pictures_up_to_date
  COMMAND mkbmps --check ${PROJECT_SOURCE_DIR}/data/gui/bmps)
