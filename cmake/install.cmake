# SPDX-License-Identifier: MIT
# Where the program and all that belongs to it goes, and the Debian package (cpack). Nothing that is installed
# knows its own place, so the tree may be moved as a whole.
include(GNUInstallDirs)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)

install(TARGETS kelvora RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(KELVORA_VALIDATE)
  install(TARGETS kelvora_validate RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(FILES ${packaging}/kelvora.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${packaging}/kelvora.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
        RENAME org.example.kelvora.metainfo.xml)
install(FILES ${packaging}/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
        FILES_MATCHING PATTERN "*.dat")
# Laid out as in the sources, so that the links between them hold.
foreach(document README CHANGELOG CONTRIBUTING)
  install(FILES ${PROJECT_SOURCE_DIR}/${document}.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${CMAKE_INSTALL_DOCDIR}
        FILES_MATCHING PATTERN "*.md" PATTERN "*.png")

set(hicolor ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES ${PROJECT_SOURCE_DIR}/images/kelvora.svg DESTINATION ${hicolor}/scalable/apps)
install(FILES ${PROJECT_SOURCE_DIR}/images/kelvora.png DESTINATION ${hicolor}/256x256/apps)
foreach(size 16 24 32 48 64 128 512)
  install(FILES ${PROJECT_SOURCE_DIR}/images/kelvora_${size}.png
          DESTINATION ${hicolor}/${size}x${size}/apps RENAME kelvora.png)
endforeach()

# Manual pages and changelog are installed compressed, without name and time, so that each build gives the same.
find_program(GZIP_PROGRAM gzip REQUIRED)
function(kelvora_install_compressed file destination)
  set(compressed ${CMAKE_CURRENT_BINARY_DIR}/${file}.gz)
  add_custom_command(OUTPUT ${compressed}
                     COMMAND ${GZIP_PROGRAM} -9nc ${packaging}/${file} > ${compressed}
                     DEPENDS ${packaging}/${file} VERBATIM)
  add_custom_target(kelvora_${file}_gz ALL DEPENDS ${compressed})
  install(FILES ${compressed} DESTINATION ${destination})
endfunction()
kelvora_install_compressed(kelvora.1 ${CMAKE_INSTALL_MANDIR}/man1)
if(KELVORA_VALIDATE)
  kelvora_install_compressed(kelvora-validate.1 ${CMAKE_INSTALL_MANDIR}/man1)
endif()
kelvora_install_compressed(changelog ${CMAKE_INSTALL_DOCDIR})

if(NOT PROJECT_IS_TOP_LEVEL)
  return()
endif()
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "the Kelvora authors <kelvora@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://example.org/kelvora/)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The driver of the database is a plug-in, found when the program runs: no tool can tell that it is needed.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt5sql5-sqlite, hicolor-icon-theme")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Kelvora is for people who check coordinate measuring machines with a ball
bar, two precision spheres on a rod. It reads the measured positions of the
bar from a file, lists their lengths and deviations, judges the spread
against a tolerance that may depend on the length, draws a histogram and
shows every bar in a 3-D view of the volume of the machine.

Measurement sets are kept in a local SQLite database, which can be backed
up to a text file and exported as a summary. The command kelvora-validate shows
that the numbers are right on the computer where it is installed.")
include(CPack)
