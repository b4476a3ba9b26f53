# find_package(tarn 0.2): link tarn::tarn for the C++ classes, tarn::c for the C interface.
include(CMakeFindDependencyMacro)
find_dependency(SQLite3)
find_dependency(pugixml)
include(${CMAKE_CURRENT_LIST_DIR}/tarn-targets.cmake)
