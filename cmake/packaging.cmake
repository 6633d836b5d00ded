# The installed program, and the Debian package that cpack makes of it.
include(GNUInstallDirs)

set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(metainfo ${packaging}/invalid.twinstep.twinstep.metainfo.xml)

# One version, written by hand in two histories.
file(STRINGS ${packaging}/debian/changelog changelog_head LIMIT_COUNT 1)
if(NOT changelog_head MATCHES "^twinstep \\(${PROJECT_VERSION}\\)")
    message(FATAL_ERROR "packaging/debian/changelog does not begin with version ${PROJECT_VERSION}.")
endif()
file(READ ${metainfo} metainfo_text)
if(NOT metainfo_text MATCHES "<release version=\"${PROJECT_VERSION}\" date=\"([-0-9]+)\"")
    message(FATAL_ERROR "${metainfo} does not know the release ${PROJECT_VERSION}.")
endif()
set(TWINSTEP_RELEASE_DATE ${CMAKE_MATCH_1})

# The programs.
install(TARGETS twinstep)
install(TARGETS twinstep-watchdog DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/twinstep)

# What the program reads: in the folders it has in the sources.
set(data ${CMAKE_INSTALL_DATADIR}/twinstep)
install(DIRECTORY docs DESTINATION ${data})
install(DIRECTORY assets/sounds DESTINATION ${data}/assets)

# What the desktop and the system read.
install(FILES ${packaging}/twinstep.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${metainfo} DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${packaging}/70-twinstep.rules DESTINATION lib/udev/rules.d)
install(FILES ${packaging}/twinstep.conf DESTINATION lib/modprobe.d)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES assets/twinstep.svg DESTINATION ${icons}/scalable/apps)
find_program(TWINSTEP_RSVG_CONVERT rsvg-convert REQUIRED)
foreach(size 16 22 24 32 48 64 128 256)
    set(png ${PROJECT_BINARY_DIR}/icons/${size}/twinstep.png)
    add_custom_command(OUTPUT ${png}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/icons/${size}
        COMMAND ${TWINSTEP_RSVG_CONVERT} --width ${size} --height ${size} --output ${png}
            ${PROJECT_SOURCE_DIR}/assets/twinstep.svg
        DEPENDS ${PROJECT_SOURCE_DIR}/assets/twinstep.svg VERBATIM)
    list(APPEND made ${png})
    install(FILES ${png} DESTINATION ${icons}/${size}x${size}/apps)
endforeach()

# What people read. The links of the README lead to what stands beside it in the sources; Debian has one copy of the
# licence for all packages.
set(doc ${CMAKE_INSTALL_DATADIR}/doc/twinstep)
install(FILES README.md CONTRIBUTING.md ${packaging}/debian/copyright DESTINATION ${doc})
file(CREATE_LINK ../../twinstep/docs ${PROJECT_BINARY_DIR}/docs SYMBOLIC)
file(CREATE_LINK ../../common-licenses/GPL-3 ${PROJECT_BINARY_DIR}/LICENSE SYMBOLIC)
install(FILES ${PROJECT_BINARY_DIR}/docs ${PROJECT_BINARY_DIR}/LICENSE DESTINATION ${doc})
# The pages of the help link to the README beside their folder.
file(CREATE_LINK ../doc/twinstep/README.md ${PROJECT_BINARY_DIR}/README.md SYMBOLIC)
install(FILES ${PROJECT_BINARY_DIR}/README.md DESTINATION ${data})
set(changelog ${PROJECT_BINARY_DIR}/changelog.gz)
add_custom_command(OUTPUT ${changelog}
    COMMAND gzip -9n < ${packaging}/debian/changelog > ${changelog}
    DEPENDS ${packaging}/debian/changelog VERBATIM)
install(FILES ${changelog} DESTINATION ${doc})

configure_file(${packaging}/twinstep.1.in ${PROJECT_BINARY_DIR}/twinstep.1.template @ONLY)
set(man_page ${PROJECT_BINARY_DIR}/twinstep.1)
add_custom_command(OUTPUT ${man_page}.gz
    COMMAND ${packaging}/man_page.sh $<TARGET_FILE:twinstep> ${man_page}.template > ${man_page}
    COMMAND gzip -9n < ${man_page} > ${man_page}.gz
    DEPENDS twinstep ${packaging}/man_page.sh ${man_page}.template VERBATIM)
install(FILES ${man_page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

add_custom_target(twinstep_package_files ALL DEPENDS ${made} ${changelog} ${man_page}.gz)

file(READ ${packaging}/debian/description CPACK_PACKAGE_DESCRIPTION)
string(STRIP "${CPACK_PACKAGE_DESCRIPTION}" CPACK_DEBIAN_PACKAGE_DESCRIPTION)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME twinstep)
set(CPACK_PACKAGE_VENDOR "The Twinstep developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "control of the two stepper motors of an antenna tuner or rotor")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# Nobody's address: names below "invalid" are kept free (RFC 2606).
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Twinstep developers <developers@twinstep.invalid>")
set(CPACK_DEBIAN_PACKAGE_SECTION hamradio)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Opens the help page; asks for real-time scheduling.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS xdg-utils)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS rtkit)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The kernel's driver is loaded, with its options, by the initial file system that starts the computer.
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${packaging}/debian/postinst ${packaging}/debian/triggers)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
