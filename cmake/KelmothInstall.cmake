# What is installed beside the programs. The prefix decides nothing of what is in the files.

set(resources ${PROJECT_SOURCE_DIR}/Resources)

# The system's own udev looks below lib, whatever the machine's libraries lie in.
set(KELMOTH_UDEV_RULES_DIR lib/udev/rules.d CACHE STRING "Where the udev rule is installed")
install(FILES ${resources}/70-kelmoth.rules DESTINATION ${KELMOTH_UDEV_RULES_DIR})

install(FILES ${resources}/com.kelmoth.app.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES ${resources}/icons/com.kelmoth.app.svg DESTINATION ${icons}/scalable/apps)
install(FILES ${resources}/icons/com.kelmoth.app-symbolic.svg DESTINATION ${icons}/symbolic/apps)
foreach(program kelmoth kelmothctl)
    install(FILES ${resources}/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES ${resources}/completions/${program}.bash
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME ${program})
endforeach()
# Debian keeps the place that zsh looks into by default for what is not packaged.
set(zsh_completions site-functions)
if(EXISTS /etc/debian_version)
    set(zsh_completions vendor-completions)
endif()
install(FILES ${resources}/completions/_kelmothctl DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${zsh_completions})
install(FILES ${resources}/completions/kelmothctl.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)

# The licence, and the notices of what is compiled in.
install(FILES ${resources}/debian/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/kelmoth)

# The metainfo: releases from the changelog, hardware from the catalogue of models.
set(changelog ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
set(catalogue ${PROJECT_SOURCE_DIR}/Core/Device/BasiliskProductID.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${changelog} ${catalogue})
set(KELMOTH_RELEASES "")
file(STRINGS ${changelog} rows REGEX "^## .[0-9.]+. - ")
foreach(row IN LISTS rows)
    string(REGEX REPLACE "^## .([0-9.]+). - (.*)$" "\\1;\\2" row "${row}")
    list(GET row 0 version)
    list(GET row 1 date)
    set(type stable)
    if(date STREQUAL "Unreleased")
        # It has no day yet. A packager's SOURCE_DATE_EPOCH is one; the clock would change the file.
        if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
            continue()
        endif()
        string(TIMESTAMP date "%Y-%m-%d" UTC)
        set(type development)
    endif()
    string(APPEND KELMOTH_RELEASES
        "    <release version=\"${version}\" date=\"${date}\" type=\"${type}\"/>\n")
endforeach()
if(KELMOTH_RELEASES)
    set(KELMOTH_RELEASES "  <releases>\n${KELMOTH_RELEASES}  </releases>\n")
endif()
set(KELMOTH_MODALIASES "")
file(STRINGS ${catalogue} rows REGEX "= 0x[0-9A-Fa-f]+,?")
foreach(row IN LISTS rows)
    string(REGEX REPLACE ".*= 0x([0-9A-Fa-f]+).*" "\\1" product "${row}")
    string(TOUPPER ${product} product)
    string(APPEND KELMOTH_MODALIASES "    <modalias>usb:v1532p${product}d*</modalias>\n")
endforeach()
configure_file(${resources}/com.kelmoth.app.metainfo.xml.in com.kelmoth.app.metainfo.xml @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/com.kelmoth.app.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
