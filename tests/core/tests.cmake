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

# The base runtime's tests once more against an AddressSanitizer and
# UndefinedBehaviorSanitizer build of the runtime: it is small, and a use after free in
# a walk or a release shows only there. (A build with XC_SANITIZE has this already.)
if(NOT XC_SANITIZE)
  set(KX_SANITIZE_FLAGS -fsanitize=address,undefined -fno-omit-frame-pointer
      -fno-sanitize-recover=undefined)
  file(GLOB KX_CORE_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/library/core/*.cpp)
  add_library(kx_sanitized STATIC ${KX_CORE_SOURCES})
  target_include_directories(kx_sanitized PUBLIC ${PROJECT_SOURCE_DIR}/include/core)
  target_compile_definitions(kx_sanitized PRIVATE KX_HOME_FROM_LIBDIR="${XC_HOME_FROM_LIBDIR}")
  target_compile_options(kx_sanitized PUBLIC ${KX_SANITIZE_FLAGS})
  target_link_options(kx_sanitized PUBLIC ${KX_SANITIZE_FLAGS})
  target_link_libraries(kx_sanitized PRIVATE PkgConfig::SODIUM ${CMAKE_DL_LIBS})

  file(GLOB KX_CORE_TESTS CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/test_kx_*.cpp)
  foreach(src ${KX_CORE_TESTS})
    get_filename_component(name ${src} NAME_WE)
    add_executable(${name}_sanitized ${src})
    target_link_libraries(${name}_sanitized PRIVATE kx_sanitized GTest::gtest GTest::gtest_main)
    add_test(NAME ${name}_sanitized COMMAND ${name}_sanitized)
    # An undefined-behaviour report stops the program (non-zero exit) with its stack.
    set_tests_properties(${name}_sanitized PROPERTIES TIMEOUT 600
      ENVIRONMENT "KX_HOME=${XC_BUILD_HOME};KX_TRACE=off;UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1")
  endforeach()
endif()

# A small pool block comes from the runtime's own chunks, which valgrind sees only
# through the runtime's requests: it must still report the block read after it went.
if(XC_VALGRIND AND NOT XC_SANITIZE)
  add_executable(kx_slab_freed_read ${CMAKE_CURRENT_LIST_DIR}/slab_freed_read.cpp)
  target_link_libraries(kx_slab_freed_read PRIVATE kx)
  add_test(NAME kx_slab_freed_read_valgrind
           COMMAND ${XC_VALGRIND} -q $<TARGET_FILE:kx_slab_freed_read>)
  set_tests_properties(kx_slab_freed_read_valgrind PROPERTIES LABELS valgrind TIMEOUT 120
    PASS_REGULAR_EXPRESSION "Invalid read of size 1")
endif()
