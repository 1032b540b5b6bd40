# What a host gets: the libraries, the public headers below include/tessarel12, a CMake package, a pkg-config file.
# Components: Runtime (libraries), Development, Testing; and Formats (the helper), Viewer.
include(CMakePackageConfigHelpers)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME Development)

install(TARGETS TessarelPlatform LTWrap12 Tessarel12 EXPORT Tessarel12Targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development)
if(NOT TESSAREL_INSTALL)
  return()
endif()
# A part of its own: find_package(Tessarel12 COMPONENTS Testing) asks for it.
install(TARGETS TessarelTesting EXPORT Tessarel12TestingTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Testing NAMELINK_COMPONENT Testing)

set(include_dir ${CMAKE_INSTALL_INCLUDEDIR}/tessarel12)
foreach(folder platform library viewing imagewindow controls thumbs frames print docview)
  install(DIRECTORY ${folder} DESTINATION ${include_dir} FILES_MATCHING
    PATTERN "*.h"
    PATTERN "detail" EXCLUDE)
endforeach()
install(FILES imaging/ltwrap.h DESTINATION ${include_dir}/imaging)
install(FILES imaging/core/exception.h imaging/core/export.h imaging/core/limits.h imaging/core/records.h DESTINATION ${include_dir}/imaging/core)
install(FILES tessarel12.h DESTINATION ${include_dir})
install(FILES tessarel12_testing.h DESTINATION ${include_dir} COMPONENT Testing)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Tessarel12)
install(EXPORT Tessarel12Targets NAMESPACE Tessarel12:: DESTINATION ${package_dir})
install(EXPORT Tessarel12TestingTargets NAMESPACE Tessarel12:: DESTINATION ${package_dir} COMPONENT Testing)
configure_package_config_file(tools/cmake/Tessarel12Config.cmake.in ${PROJECT_BINARY_DIR}/Tessarel12Config.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/Tessarel12ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/Tessarel12Config.cmake ${PROJECT_BINARY_DIR}/Tessarel12ConfigVersion.cmake
  DESTINATION ${package_dir})

# The prefix is found from the file's own place, so that an installed tree can be moved.
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(tools/cmake/tessarel12.pc.in ${PROJECT_BINARY_DIR}/tessarel12.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tessarel12.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
