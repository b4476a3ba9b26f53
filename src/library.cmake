# What clients link: tarn::tarn, the C++ classes as one static library, and tarn::c, the C interface as a shared library
# that shows nothing of what is inside. The version of its interface grows when a client that was built before would
# break, which functions that are added do not do.
set(TARN_C_INTERFACE 1)

get_property(rooms GLOBAL PROPERTY TARN_ROOMS)
list(TRANSFORM rooms REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
add_library(tarn_cpp STATIC ${objects})
target_link_libraries(tarn_cpp INTERFACE SQLite::SQLite3 pugixml::static)
set_target_properties(tarn_cpp PROPERTIES EXPORT_NAME tarn LINKER_LANGUAGE CXX)
target_compile_features(tarn_cpp INTERFACE cxx_std_20)

set(exports ${CMAKE_CURRENT_SOURCE_DIR}/c/exports.map)
add_library(tarn_shared SHARED $<TARGET_OBJECTS:tarn_c>)
target_link_libraries(tarn_shared PRIVATE tarn_c tarn_settings)
target_link_options(tarn_shared PRIVATE -Wl,--version-script=${exports} -Wl,--gc-sections -s)
set_target_properties(tarn_shared PROPERTIES OUTPUT_NAME tarn EXPORT_NAME c LINK_DEPENDS ${exports}
  SOVERSION ${TARN_C_INTERFACE} VERSION ${TARN_C_INTERFACE}.${PROJECT_VERSION})

install(TARGETS tarn_cpp tarn_shared EXPORT tarn INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/tarn DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

include(CMakePackageConfigHelpers)
set(config ${CMAKE_INSTALL_LIBDIR}/cmake/tarn)
write_basic_package_version_file(tarn-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES tarn-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/tarn-config-version.cmake DESTINATION ${config})
install(EXPORT tarn NAMESPACE tarn:: FILE tarn-targets.cmake DESTINATION ${config})

# The folders stand relative to the file itself, so that an installed tree can be moved.
set(pkgconfig ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH to_prefix /${pkgconfig} /)
foreach(name tarn tarn-c)
  configure_file(${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${pkgconfig})
endforeach()
