# The password items' answers are read back through the screen file loader.
target_link_libraries(test_password PRIVATE xcscreenfile)
