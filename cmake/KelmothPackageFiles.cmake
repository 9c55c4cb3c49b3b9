# Run by cpack on what it is about to pack: what Debian's policy asks for beyond the installed files.

set(usr ${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX})
set(source ${CMAKE_CURRENT_LIST_DIR}/..)
set(doc ${usr}/share/doc/${CPACK_PACKAGE_NAME})

configure_file(${source}/CHANGELOG.md ${doc}/changelog COPYONLY)
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${doc}/changelog.Debian
    "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium\n\n"
    "  * What is new stands in changelog.gz.\n\n"
    " -- ${CPACK_PACKAGE_CONTACT}  ${now}\n")

file(GLOB pages ${usr}/share/man/man1/*.1)
execute_process(COMMAND gzip -9n ${pages} ${doc}/changelog ${doc}/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE files ${doc}/* ${usr}/share/man/*)
file(CHMOD ${files} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
