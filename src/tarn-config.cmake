# The C++ classes: find_package(tarn) and link tarn::c.
include(CMakeFindDependencyMacro)
find_dependency(SQLite3)
include(${CMAKE_CURRENT_LIST_DIR}/tarn-targets.cmake)
