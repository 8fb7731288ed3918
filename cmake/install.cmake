# What `cmake --install` installs, in two components: kestrova, the window, and kestrova-cli, the command line.
include(GNUInstallDirs)
set(resources ${PROJECT_SOURCE_DIR}/src/resources)
set(application_id example.kestrova.Kestrova) # the site's host, backwards

install(TARGETS kestrova-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT kestrova-cli)
install(FILES ${resources}/manual/kestrova-cli.1
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT kestrova-cli)
function(install_completion shell folder name)
  install(FILES ${resources}/completion/kestrova-cli.${shell} DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder}
    RENAME ${name} COMPONENT kestrova-cli)
endfunction()
install_completion(bash bash-completion/completions kestrova-cli)
install_completion(zsh zsh/site-functions _kestrova-cli)
install_completion(fish fish/vendor_completions.d kestrova-cli.fish)

if(TARGET kestrova)
  install(TARGETS kestrova
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT kestrova
    BUNDLE DESTINATION . COMPONENT kestrova)
  install(FILES ${resources}/manual/kestrova.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT kestrova)
endif()

# What a freedesktop.org desktop reads about the program.
if(TARGET kestrova AND NOT APPLE)
  set(metainfo ${application_id}.metainfo.xml)
  configure_file(${resources}/desktop/${metainfo}.in ${PROJECT_BINARY_DIR}/${metainfo} @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${metainfo} DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT kestrova)
  install(FILES ${resources}/desktop/${application_id}.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT kestrova)

  set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
  install(FILES ${resources}/icons/kestrova.svg
    DESTINATION ${icons}/scalable/apps RENAME ${application_id}.svg COMPONENT kestrova)
  foreach(size 16 24 32 48 64 128 256 512)
    install(FILES ${resources}/icons/kestrova-${size}.png
      DESTINATION ${icons}/${size}x${size}/apps RENAME ${application_id}.png COMPONENT kestrova)
  endforeach()
endif()
