# Desktop entry, AppStream metainfo, icons, man pages, completion and the documents for users.
set(pages man/kalde2.1 man/kalde2ctl.1 man/kalde2-unit.1)
foreach(name kalde2.desktop kalde2.metainfo.xml ${pages} debian/changelog debian/copyright)
  configure_file(${name}.in ${name} @ONLY)
endforeach()

# Documents of Debian packages are compressed, without the time, which would make each build differ.
find_program(GZIP_PROGRAM gzip REQUIRED)
set(compressed)
foreach(name ${pages} debian/changelog)
  set(plain ${CMAKE_CURRENT_BINARY_DIR}/${name})
  add_custom_command(OUTPUT ${plain}.gz DEPENDS ${plain}
                     COMMAND ${GZIP_PROGRAM} -9nkf ${plain} VERBATIM)
  list(APPEND compressed ${plain}.gz)
endforeach()
add_custom_target(kalde2_packaging ALL DEPENDS ${compressed})

set(built ${CMAKE_CURRENT_BINARY_DIR})
install(FILES ${built}/kalde2.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${built}/kalde2.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(DIRECTORY icons/hicolor DESTINATION ${CMAKE_INSTALL_DATADIR}/icons)
list(TRANSFORM pages PREPEND ${built}/)
list(TRANSFORM pages APPEND .gz)
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES completion/kalde2ctl DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)

# The guide, what it links to, and its pictures.
set(docs ${PROJECT_SOURCE_DIR}/docs)
install(FILES ${docs}/guide.md ${docs}/clone-and-files.md ${docs}/protocol.md
        ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${built}/debian/changelog.gz ${built}/debian/copyright
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${docs}/pictures/closed.png ${docs}/pictures/compact.png ${docs}/pictures/aspect.png
        ${docs}/pictures/progress.png
        DESTINATION ${CMAKE_INSTALL_DOCDIR}/pictures)
