# The package, which packaging/make-deb makes.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${KALDE2_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Drives a video scaler or switcher of the KALDE2 family over an RS-232 line:
detection of the product, direct controls, every parameter in one list,
copies of a set-up, and the unit's table of output resolutions.
.
With it come kalde2ctl, which does the same from the command line, and
kalde2-unit, a simulated unit for training.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

configure_file(debian/lintian-overrides.in debian/lintian-overrides @ONLY)
install(FILES ${built}/debian/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME ${PROJECT_NAME})

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Qt loads the plug-ins for the windowing system at run time, where shlibs does not see them.
set(CPACK_DEBIAN_PACKAGE_DEPENDS qt6-qpa-plugins)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-wayland)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
