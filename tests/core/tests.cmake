# Every public header must compile on its own as C and as C++ (twice in a row, to prove
# its include guard), and all of them together. The sources are generated here from the
# headers present at configure time; the test builds them, so a header that breaks
# fails the test rather than everyone's build.
file(GLOB KX_PUBLIC_HEADERS CONFIGURE_DEPENDS
  ${PROJECT_SOURCE_DIR}/include/core/*.h
  ${PROJECT_SOURCE_DIR}/include/xcontrols/*.h)
set(KX_HEADER_CHECK_DIR ${CMAKE_CURRENT_BINARY_DIR}/public_headers)
set(KX_HEADER_CHECK_SOURCES)
set(KX_ALL_HEADERS_INCLUDES)
# ISO C wants a declaration in every unit, and a header may declare nothing (macros).
set(KX_UNIT_NOT_EMPTY "typedef int header_check_unit_is_not_empty;\n")
foreach(header ${KX_PUBLIC_HEADERS})
  get_filename_component(name ${header} NAME_WE)
  get_filename_component(dir ${header} DIRECTORY)
  get_filename_component(area ${dir} NAME)
  set(include_line "#include \"${area}/${name}.h\"\n")
  string(APPEND KX_ALL_HEADERS_INCLUDES ${include_line})
  foreach(ext c cpp)
    set(source ${KX_HEADER_CHECK_DIR}/${area}_${name}.${ext})
    file(CONFIGURE OUTPUT ${source}
      CONTENT "/* Generated: ${area}/${name}.h on its own. */\n${include_line}${include_line}${KX_UNIT_NOT_EMPTY}")
    list(APPEND KX_HEADER_CHECK_SOURCES ${source})
  endforeach()
endforeach()
foreach(ext c cpp)
  set(source ${KX_HEADER_CHECK_DIR}/all_headers.${ext})
  file(CONFIGURE OUTPUT ${source}
    CONTENT "/* Generated: every public header in one unit. */\n${KX_ALL_HEADERS_INCLUDES}${KX_UNIT_NOT_EMPTY}")
  list(APPEND KX_HEADER_CHECK_SOURCES ${source})
endforeach()

add_library(kx_public_headers OBJECT EXCLUDE_FROM_ALL ${KX_HEADER_CHECK_SOURCES})
target_include_directories(kx_public_headers PRIVATE
  ${PROJECT_SOURCE_DIR}/include
  ${PROJECT_SOURCE_DIR}/include/core
  ${PROJECT_SOURCE_DIR}/include/xcontrols)
target_include_directories(kx_public_headers SYSTEM PRIVATE ${MOTIF_INCLUDE})
target_link_libraries(kx_public_headers PRIVATE PkgConfig::XLIBS)
set_target_properties(kx_public_headers PROPERTIES C_STANDARD 99 C_EXTENSIONS OFF
  CXX_STANDARD 17 CXX_EXTENSIONS OFF)
# A C declaration without a prototype, or a C++-only construct, is an error here.
target_compile_options(kx_public_headers PRIVATE -Werror
  $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes -Wmissing-prototypes -pedantic>
  $<$<COMPILE_LANGUAGE:CXX>:-pedantic>)

add_test(NAME public_headers_c_and_cpp
  COMMAND ${CMAKE_COMMAND} --build ${CMAKE_BINARY_DIR} --target kx_public_headers)
set_tests_properties(public_headers_c_and_cpp PROPERTIES TIMEOUT 600)
