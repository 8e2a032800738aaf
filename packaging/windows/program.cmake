# What makes the executables programs of Windows: no console for the one with windows, a picture, the facts of their version,
# a manifest.
set_target_properties(quellbox PROPERTIES WIN32_EXECUTABLE ON)
set(QUELLBOX_ICON "" CACHE FILEPATH "The program's icon file")
function(add_facts QUELLBOX_NAME QUELLBOX_DESCRIPTION)
  set(facts ${CMAKE_BINARY_DIR}/${QUELLBOX_NAME}.rc)
  configure_file(packaging/windows/quellbox.rc.in ${facts} @ONLY)
  set_source_files_properties(${facts} PROPERTIES OBJECT_DEPENDS
    "${QUELLBOX_ICON};${CMAKE_SOURCE_DIR}/packaging/windows/quellbox.manifest")
  target_sources(${QUELLBOX_NAME} PRIVATE ${facts})
endfunction()
if(QUELLBOX_ICON)
  enable_language(RC)
  add_facts(quellbox "Spam archive manager")
  cmake_language(DEFER CALL add_facts quellboxctl "Spam archive manager without a window") # which comes later
endif()
