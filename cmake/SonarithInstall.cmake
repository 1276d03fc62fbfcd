# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the program's files and defines the Debian package. ./package builds the Debian package;
# tools/packages.sh lists the packages that must be installed for this.

include(GNUInstallDirs)

# Renders the icon from SVG drawings in the usual sizes. If rsvg-convert is missing, these sizes are
# not installed.
find_program(SONARITH_DRAW rsvg-convert)
set(iconTheme ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
set(made)
if(SONARITH_DRAW)
  foreach(side IN ITEMS 16 22 24 32 48 64 128 256)
    set(drawing ${PROJECT_SOURCE_DIR}/share/icons/sonarith.svg)
    if(side LESS 20)
      set(drawing ${PROJECT_SOURCE_DIR}/share/icons/sonarith-small.svg)
    endif()
    set(picture ${PROJECT_BINARY_DIR}/share/icons/${side}/sonarith.png)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/share/icons/${side})
    add_custom_command(OUTPUT ${picture} DEPENDS ${drawing} VERBATIM
                       COMMAND ${SONARITH_DRAW} -w ${side} -h ${side} ${drawing} -o ${picture})
    list(APPEND made ${picture})
    install(FILES ${picture} DESTINATION ${iconTheme}/${side}x${side}/apps)
  endforeach()
endif()
install(FILES share/icons/sonarith.svg DESTINATION ${iconTheme}/scalable/apps)

# Compresses a file without storing its time and name, so that the same text results in the same
# bytes.
function(sonarith_install_compressed source name destination)
  set(compressed ${PROJECT_BINARY_DIR}/share/${name}.gz)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/share)
  add_custom_command(OUTPUT ${compressed} DEPENDS ${PROJECT_SOURCE_DIR}/${source}
                     COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/${source} > ${compressed})
  set(made ${made} ${compressed} PARENT_SCOPE)
  install(FILES ${compressed} DESTINATION ${destination})
endfunction()
sonarith_install_compressed(share/sonarith.1 sonarith.1 ${CMAKE_INSTALL_MANDIR}/man1)
sonarith_install_compressed(share/debian/changelog changelog ${CMAKE_INSTALL_DOCDIR})
add_custom_target(share ALL DEPENDS ${made})

install(TARGETS sonarith)
install(FILES share/org.sonarith.sonarith.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES share/org.sonarith.sonarith.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(DIRECTORY share/help/ DESTINATION ${CMAKE_INSTALL_DATADIR}/sonarith/help
        FILES_MATCHING PATTERN *.html PATTERN *.css PATTERN *.png)
install(FILES share/debian/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})

# dpkg-shlibdeps does not find the libraries that are loaded late, since the executable does not
# list them. So the packages that contain these libraries are looked up here, in the package
# database of the machine that builds the program.
set(latePackages)
foreach(soname IN LISTS SONARITH_SONAMES)
  execute_process(COMMAND dpkg-query --search */${soname} OUTPUT_VARIABLE found
                  RESULT_VARIABLE failed ERROR_QUIET)
  string(REGEX MATCH "^[^:,]+" package "${found}")
  if(failed OR NOT package)
    # No installed package contains the library. The program can still be built, but
    # tools/make_package.sh fails.
    set(package unknown-package-of-${soname})
  endif()
  list(APPEND latePackages ${package})
endforeach()
list(REMOVE_DUPLICATES latePackages)
list(SORT latePackages)
list(JOIN latePackages ", " latePackages)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME sonarith)
set(CPACK_PACKAGE_VENDOR "Sonarith maintainers")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/package)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
                                                GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Sonarith maintainers <maintainers@sonarith.invalid>")
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "${latePackages}")
# The first package is for sound servers, the second for desktops that use Wayland.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libasound2-plugins, qt6-wayland")
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "audio CD extractor and MP3 decoder with a tree of tracks and files
Sonarith extracts the tracks of an audio CD to WAV files by recording the
disc while it plays: a stereo file has the samples of the disc, bit for
bit. It reads optical drives and disc images, decodes MP3 files on all
cores, plays audio CDs, keeps a playlist, edits tags, and finds audio files.")
include(CPack)
