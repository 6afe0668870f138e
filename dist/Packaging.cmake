# Install rules and the Debian package (tools/package: cpack -G DEB).
#
# Two install components: "program" is what `cmake --install` puts under
# its prefix; "system_config", the commented example of the settings for
# all users of a machine, has the absolute destination /etc/xdg/Laborix,
# where Qt's system scope looks, so it stays out of a plain install (which
# must not write into /etc of the machine it runs on) and only goes into
# the package, where dpkg keeps it as a conffile.

include(GNUInstallDirs)
set(LABQUIZ_APP_ID de.laborix.LabQuiz)
set(LABQUIZ_DEB_NAME laborix-test)
set(LABQUIZ_DEB_MAINTAINER "Laborix <laborix-test@example.org>"
    CACHE STRING "Maintainer field of the Debian package")
set(LABQUIZ_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/${LABQUIZ_DEB_NAME})
set(LABQUIZ_SYSTEM_CONFIG_DIR /etc/xdg/Laborix)

# Debian wants the man page and the Debian changelog gzip-compressed, at
# the strongest level and without a time stamp (-n), so that two builds of
# the same sources give the same package.
find_program(LABQUIZ_GZIP gzip REQUIRED)
set(dist ${PROJECT_SOURCE_DIR}/dist)
set(packed ${PROJECT_BINARY_DIR}/dist)
set(gz_files)
foreach(pair IN ITEMS "labquiz.1|labquiz.1" "debian/changelog|changelog.Debian")
    string(REPLACE "|" ";" pair "${pair}")
    list(GET pair 0 from)
    list(GET pair 1 to)
    add_custom_command(
        OUTPUT ${packed}/${to}.gz
        COMMAND ${CMAKE_COMMAND} -E make_directory ${packed}
        COMMAND ${CMAKE_COMMAND} -E copy ${dist}/${from} ${packed}/${to}
        COMMAND ${LABQUIZ_GZIP} -9nf ${packed}/${to}
        DEPENDS ${dist}/${from}
        VERBATIM)
    list(APPEND gz_files ${packed}/${to}.gz)
endforeach()
add_custom_target(labquiz_dist_files ALL DEPENDS ${gz_files})

install(TARGETS labquiz RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
install(FILES ${dist}/${LABQUIZ_APP_ID}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT program)
install(FILES ${dist}/${LABQUIZ_APP_ID}.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT program)
install(FILES ${dist}/${LABQUIZ_APP_ID}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT program)
install(FILES ${packed}/labquiz.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
install(FILES ${dist}/debian/copyright ${packed}/changelog.Debian.gz
        DESTINATION ${LABQUIZ_DOC_DIR} COMPONENT program)
install(FILES ${dist}/LabQuiz.conf DESTINATION ${LABQUIZ_SYSTEM_CONFIG_DIR}
        COMPONENT system_config EXCLUDE_FROM_ALL)

# Every file under /etc that the package ships is a conffile: dpkg keeps an
# administrator's changes on upgrade and remove, and only purge deletes it.
set(conffiles ${packed}/conffiles)
file(WRITE ${conffiles} "${LABQUIZ_SYSTEM_CONFIG_DIR}/LabQuiz.conf\n")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${LABQUIZ_DEB_NAME})
set(CPACK_PACKAGE_VENDOR Laborix)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "Selbsttest Chemie für die Klassen 8 bis 10 / chemistry self-test")
set(CPACK_PACKAGE_DESCRIPTION_FILE ${dist}/debian/description)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL program system_config)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_NAME ${LABQUIZ_DEB_NAME})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${LABQUIZ_DEB_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION education)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The dependencies are what the program links against, found by
# dpkg-shlibdeps; Qt's plug-ins are pulled in by those libraries' packages.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${conffiles})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
include(CPack)
