# What `cmake --install` and CPack deliver: headers, library, and what find_package(zorvexSDK) and
# pkg-config need. The headers name no third-party header, so users need no -dev package of those.

include(CMakePackageConfigHelpers)

set(ZORVEX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zorvexSDK)

install(TARGETS zorvexSDK EXPORT zorvexSDKTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/zorvex_api DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h")
foreach(module zorvex60 zorvex_cha60 zorvex_cl60 zorvex_deprecated)
  install(DIRECTORY ${ZORVEX_GENERATED_INCLUDE}/${module} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
          FILES_MATCHING PATTERN "*.h")
endforeach()
if(TARGET zorvex)
  set_target_properties(zorvex PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS zorvex RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT zorvexSDKTargets NAMESPACE zorvexSDK:: DESTINATION ${ZORVEX_CMAKE_DIR})
configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/zorvexSDKConfig.cmake.in
  ${PROJECT_BINARY_DIR}/zorvexSDKConfig.cmake INSTALL_DESTINATION ${ZORVEX_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zorvexSDKConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zorvexSDKConfig.cmake
              ${PROJECT_BINARY_DIR}/zorvexSDKConfigVersion.cmake DESTINATION ${ZORVEX_CMAKE_DIR})

# pkg-config works out its own prefix, so that an installed copy can be moved.
file(RELATIVE_PATH ZORVEX_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" ZORVEX_PC_PREFIX "${ZORVEX_PC_PREFIX}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/zorvexSDK.pc.in ${PROJECT_BINARY_DIR}/zorvexSDK.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zorvexSDK.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(CPACK_PACKAGE_NAME zorvexsdk)
set(CPACK_PACKAGE_VENDOR "zorvexSDK developers")
set(CPACK_PACKAGE_CONTACT "zorvexSDK developers <developers@zorvex.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Read, edit and write product definition data")
set(CPACK_PACKAGE_DESCRIPTION
    "A C++ library for applications that exchange product structures, revisions, instances and\
 occurrences, geometry, annotations and processes as ZORVEX documents, and the command zorvex.")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_GENERATOR TGZ DEB)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
