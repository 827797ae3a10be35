# The combo box on a PseudoColor server (the arrow picture is allocated from a colormap
# there), and the gallery's combo section rendered once as a smoke test.
add_test(NAME test_combo_depth8
  COMMAND xvfb-run -a -s "-screen 0 1024x768x8" $<TARGET_FILE:test_combo>
          --gtest_filter=*Label*:*Pointer*:*Fifty*)
add_test(NAME xcontrols_gallery_png
  COMMAND xvfb-run -a -s "-screen 0 1024x768x24" $<TARGET_FILE:xcontrols-gallery>
          --png ${CMAKE_CURRENT_BINARY_DIR}/gallery.png)
# The lock keeps two private servers from starting at the same moment (xvfb-run races on
# the display number).
set_tests_properties(test_combo_depth8 xcontrols_gallery_png PROPERTIES
  TIMEOUT 600 RESOURCE_LOCK xvfb-run ENVIRONMENT "KX_HOME=${XC_BUILD_HOME};KX_TRACE=off")
# A combo destroyed from its own callback in the middle of a program call: Motif is not
# instrumented, so only valgrind sees it return into a freed list.
xc_add_valgrind_test(test_combo ARGS --gtest_filter=*InATimer*)
