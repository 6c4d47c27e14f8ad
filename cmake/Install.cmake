# cmake --install: the shared library, the public headers, the program, and what find_package and pkg-config need.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/alidade")

install(TARGETS alidade EXPORT alidadeTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(ALIDADE_PROGRAM)
    install(TARGETS alidade_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/alidade" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    FILES_MATCHING PATTERN "*.h")

install(EXPORT alidadeTargets NAMESPACE alidade:: DESTINATION "${package_dir}")
configure_package_config_file(cmake/alidadeConfig.cmake.in "${PROJECT_BINARY_DIR}/alidadeConfig.cmake"
    INSTALL_DESTINATION "${package_dir}" NO_SET_AND_CHECK_MACRO)
# while the major version is 0, a minor version may change the interface
write_basic_package_version_file("${PROJECT_BINARY_DIR}/alidadeConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/alidadeConfig.cmake" "${PROJECT_BINARY_DIR}/alidadeConfigVersion.cmake"
    DESTINATION "${package_dir}")

# the installed tree may be moved, so the prefix is told from where the .pc file lies
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH ALIDADE_PC_PREFIX "/p/${pkgconfig_dir}" "/p")
configure_file(cmake/alidade.pc.in "${PROJECT_BINARY_DIR}/alidade.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/alidade.pc" DESTINATION "${pkgconfig_dir}")
