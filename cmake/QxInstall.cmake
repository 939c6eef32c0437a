# What a package of this project holds beside the plug-ins (qx_add_plugin installs those): library, headers,
# CMake package and pkg-config file. detail/ folders are private and stay out.
include(CMakePackageConfigHelpers)

set(QX_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/QxGraphics3D")

install(TARGETS QxGraphics3D EXPORT QxGraphics3DTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
if(TARGET QxGraphics3D_testing)
  install(TARGETS QxGraphics3D_testing EXPORT QxGraphics3DTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
endif()

file(GLOB_RECURSE headers RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/QxGraphics3D/*.h")
list(FILTER headers EXCLUDE REGEX "/detail/")
foreach(header IN LISTS headers)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}")
endforeach()

install(EXPORT QxGraphics3DTargets NAMESPACE QxGraphics3D:: DESTINATION "${QX_PACKAGE_DIR}")
set(QX_PLUGIN_DIR "${CMAKE_INSTALL_LIBDIR}/QxGraphics3D/plugins")
install(DIRECTORY DESTINATION "${QX_PLUGIN_DIR}")
configure_package_config_file(cmake/QxGraphics3DConfig.cmake.in "${PROJECT_BINARY_DIR}/QxGraphics3DConfig.cmake"
  INSTALL_DESTINATION "${QX_PACKAGE_DIR}" PATH_VARS QX_PLUGIN_DIR)
# Slots may be appended with a major version only, so hosts may ask for any version of the same major one.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/QxGraphics3DConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/QxGraphics3DConfig.cmake" "${PROJECT_BINARY_DIR}/QxGraphics3DConfigVersion.cmake"
  DESTINATION "${QX_PACKAGE_DIR}")

# The prefix is told relative to the file itself, so that an installed tree may be moved.
file(RELATIVE_PATH QX_PC_TO_PREFIX "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file(cmake/QxGraphics3D.pc.in "${PROJECT_BINARY_DIR}/QxGraphics3D.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/QxGraphics3D.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
