# What makes the executable a program of Windows: no console, a picture, the facts of its version, a manifest.
set_target_properties(quellbox PROPERTIES WIN32_EXECUTABLE ON)
set(QUELLBOX_ICON "" CACHE FILEPATH "The program's icon file")
if(QUELLBOX_ICON)
  enable_language(RC)
  configure_file(packaging/windows/quellbox.rc.in ${CMAKE_BINARY_DIR}/quellbox.rc @ONLY)
  set_source_files_properties(${CMAKE_BINARY_DIR}/quellbox.rc PROPERTIES OBJECT_DEPENDS
    "${QUELLBOX_ICON};${CMAKE_SOURCE_DIR}/packaging/windows/quellbox.manifest")
  target_sources(quellbox PRIVATE ${CMAKE_BINARY_DIR}/quellbox.rc)
endif()
