# The addon for Linux that is published: the same objects, linked statically to what is small, so that it
# needs little of the system that it comes to. GLib keeps one list of types for the whole process, and so
# cannot be there twice; of xkbcommon Debian has no static library.
deskhand_add_node_addon(deskhand_published $<TARGET_OBJECTS:deskhand> $<TARGET_OBJECTS:deskhand_logic>
                        $<TARGET_OBJECTS:deskhand_platform>)
set_target_properties(
  deskhand_published PROPERTIES OUTPUT_NAME deskhand EXCLUDE_FROM_ALL ON
                                LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/published)
target_link_options(deskhand_published PRIVATE -Wl,--strip-all)

# Those that XCB itself needs come last. They are looked for when they are linked: nothing else needs them.
foreach(_name IN LISTS DESKHAND_SMALL_LIBRARIES ITEMS Xau Xdmcp)
  string(REGEX REPLACE "^lib" "" _name ${_name})
  target_link_libraries(deskhand_published PRIVATE -l:lib${_name}.a)
endforeach()
target_link_libraries(deskhand_published PRIVATE PkgConfig::LARGE)
