# The installed tree links a client through pkg-config and through find_package.
add_test(NAME install_and_link_client
         COMMAND ${CMAKE_CURRENT_LIST_DIR}/check-install.sh ${CMAKE_BINARY_DIR} ${PROJECT_SOURCE_DIR})
